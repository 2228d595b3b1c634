#pragma once

#include <KWFontService17/FS_Export.h>

#include <KWCommon15/KWError.h>

#include <cstddef>
#include <mutex>
#include <optional>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::KWError;

/// The problems that did not stop the service, in the order they arose. It only grows, up to
/// `kMaxRecordedErrors`; later ones are dropped. Thread-safe: a host may read it while another
/// thread adds a folder.
class FS_ErrorList {
public:
    void append(const KWError& error);
    std::size_t size() const;
    bool empty() const { return size() == 0; }
    /// Nothing when there is no such entry.
    std::optional<KWError> get(std::size_t index) const;

private:
    mutable std::mutex lock_;
    std::vector<KWError> errors_;
};

} // namespace KWFontService_NS
