#pragma once

#include "fonts/MetricFields.h"
#include "registry/FS_FontService.h"

#include <utility>

namespace KWTest {

/// The service with `otf-metrics-mode` as told, for as long as this lives.
class MetricsMode {
public:
    explicit MetricsMode(bool windows) : windows_(windows) { swap(); }
    ~MetricsMode() { swap(); }
    MetricsMode(const MetricsMode&) = delete;
    MetricsMode& operator=(const MetricsMode&) = delete;

private:
    void swap() {
        auto* const service = KWFontService_NS::getFontService(nullptr, nullptr, nullptr);
        std::swap(windows_, service->otfMetricsWindows);
    }

    bool windows_;
};

} // namespace KWTest
