#include "SubsetJoin.h"

#include <KWFontService17/FS_MergeEmbeddedFonts.h>

#include <KWCommon15/KWMemStream.h>

#include <set>
#include <sstream>

namespace typeset {

using namespace KWFontService_NS;
using KWCommonNS::KWMemStream;

namespace {

std::string textOf(KWMemStream& stream) {
    return stream.data() == nullptr ? std::string() : std::string(stream.data(), stream.size());
}

std::optional<std::string> join(const std::string& first, const std::string& second,
                                SubsetFormat format) {
    std::istringstream a(first);
    std::istringstream b(second);
    KWMemStream output;
    const bool joined =
        format == SubsetFormat::trueType
            ? FS_MergeEmbeddedFonts::mergeTrueType(output, &a, &b, true)
            : FS_MergeEmbeddedFonts::mergeCFF(output, &a, &b, format == SubsetFormat::cffWithCids);
    if (!joined)
        return std::nullopt;
    return textOf(output);
}

/// A join of CIDs tells a run of more than this many wrong: its count is one byte.
constexpr std::size_t kLongestRun = 256;

bool hasLongRun(const std::vector<UsedGlyphs>& parts) {
    std::set<unsigned short> ids;
    for (const UsedGlyphs& part : parts) {
        for (const auto& [gid, glyph] : part)
            ids.insert(gid);
    }
    std::size_t length = 0;
    int next = -1;
    for (const unsigned short gid : ids) {
        length = gid == next ? length + 1 : 1;
        next = gid + 1;
        if (length > kLongestRun)
            return true;
    }
    return false;
}

} // namespace

std::optional<JoinedSubset> joinSubsets(const FS_FontInfo& font,
                                        const std::vector<UsedGlyphs>& parts, SubsetFormat format) {
    if (format == SubsetFormat::cffWithCids && hasLongRun(parts))
        return std::nullopt;
    JoinedSubset all;
    for (const UsedGlyphs& part : parts) {
        if (part.empty())
            continue;
        KWMemStream stream;
        if (!font.getEmbedFont(idsOf(part), stream))
            return std::nullopt;
        std::string subset = textOf(stream);
        all.parts.push_back(subset.size());
        if (all.parts.size() == 1) {
            all.bytes = std::move(subset);
        } else if (auto joined = join(all.bytes, subset, format)) {
            all.bytes = *std::move(joined);
        } else {
            return std::nullopt;
        }
    }
    if (all.parts.size() < 2)
        return std::nullopt;
    return all;
}

} // namespace typeset
