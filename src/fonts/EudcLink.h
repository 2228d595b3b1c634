#pragma once

#include <KWFontService17/FS_Types.h>

#include <atomic>
#include <cstdint>

namespace KWFontService_NS {

/// The font that has the end-user-defined characters of another. Set during start-up; only taking
/// the link away may meet readers.
class EudcLink {
public:
    void set(const FS_FontRef& ref) {
        face_.store(ref.face, std::memory_order_relaxed);
        font_.store(ref.font, std::memory_order_release);
    }
    /// Null when there is none.
    FS_FontRef get() const {
        FS_BaseFont* const font = font_.load(std::memory_order_acquire);
        return font != nullptr ? FS_FontRef{font, face_.load(std::memory_order_relaxed)}
                               : FS_FontRef();
    }

private:
    std::atomic<FS_BaseFont*> font_ = nullptr;
    std::atomic<std::int16_t> face_ = 0;
};

} // namespace KWFontService_NS
