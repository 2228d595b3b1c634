#include "layout/GlyphMemo.h"

#include <atomic>
#include <memory>
#include <new>

namespace KWFontService_NS {

GlyphMemo::GlyphMemo(std::uint32_t tableNumber)
    : tableNumber_(tableNumber), entries_(tableNumber != 0 ? entriesOfThread() : nullptr) {}

std::uint32_t GlyphMemo::newTableNumber() {
    static std::atomic<std::uint32_t> last = 0;
    return last += 4;
}

GlyphMemo::Entry* GlyphMemo::entriesOfThread() {
    // Without memory for it a thread does well without.
    thread_local const std::unique_ptr<Entry[]> entries(new (std::nothrow) Entry[kEntries]);
    return entries.get();
}

} // namespace KWFontService_NS
