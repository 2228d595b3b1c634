// Two font programs that become one: the first byte says which operation, the next three how long
// the first input is; the rest is the second one.

#include "FuzzTarget.h"
#include "common/ByteView.h"
#include "common/KWLimits.h"

#include <KWFontService17/FS_MergeEmbeddedFonts.h>

#include <KWCommon15/KWMemStream.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>

namespace {

using KWFontService_NS::FS_MergeEmbeddedFonts;
using KWFontService_NS::KWMemStream;

/// What a merge makes of inputs of this size together at most; more would be a bomb.
std::size_t mostOutput(std::size_t size) {
    return (KWCommonNS::kCharStringReads + 8) * size + 2 * KWCommonNS::kFreeCharStringBytes + 4096;
}

bool merge(unsigned kind, KWMemStream& output, std::istream& a, std::istream& b) {
    if (kind < 2)
        return FS_MergeEmbeddedFonts::mergeCFF(output, &a, &b, kind == 1);
    return FS_MergeEmbeddedFonts::mergeTrueType(output, &a, &b, kind == 2);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kHead = 4;
    if (size < kHead)
        return 0;
    const unsigned kind = data[0] % 4;
    const std::size_t first =
        std::min<std::size_t>(KWCommonNS::ByteView::loadU24(data + 1), size - kHead);
    std::istringstream a(std::string(data + kHead, data + kHead + first));
    std::istringstream b(std::string(data + kHead + first, data + size));
    KWMemStream output;
    const bool ok = merge(kind, output, a, b);
    if (output.size() > mostOutput(size) || (!ok && kind < 2 && output.size() != 0))
        std::abort();
    KWMemStream again; // with itself, and what came out with an input
    merge(kind, again, a, a);
    if (ok) {
        KWMemStream third;
        merge(kind, third, output, b);
        if (third.size() > mostOutput(output.size() + size))
            std::abort();
    }
    return 0;
}
