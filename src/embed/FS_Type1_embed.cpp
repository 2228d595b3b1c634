#include "common/AsciiChars.h"
#include "embed/Type1Subset.h"
#include "fonts/FS_Type1.h"
#include "fonts/FontStream.h"
#include "type1/PfbSegment.h"
#include "type1/Type1Cipher.h"
#include "type1/Type1Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <span>

namespace KWFontService_NS {

namespace {

/// False when the segment is longer than a caller can be told, and when memory runs out.
bool writeSegment(std::uint8_t type, std::span<const std::uint8_t> bytes, KWMemStream& output,
                  int& length) {
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return false;
    length = static_cast<int>(bytes.size());
    const auto header = pfbHeader(type, static_cast<std::uint32_t>(bytes.size()));
    output.append(header.data(), header.size());
    output.append(bytes.data(), bytes.size());
    return !output.fail();
}

/// Whether a reader would take the section, in binary, for hexadecimal text. One that comes from
/// text may well look like it.
bool looksLikeText(std::span<const std::uint8_t> eexec) {
    const auto lead = eexec.first(std::min(eexec.size(), kType1LeadBytes));
    const auto isDigit = [](std::uint8_t byte) {
        return KWCommonNS::hexValue(static_cast<char>(byte)) >= 0;
    };
    return !lead.empty() && (isType1Separator(static_cast<char>(lead.front())) ||
                             std::ranges::all_of(lead, isDigit));
}

/// The encrypted section with the glyphs of some codes.
bool cutToCodes(std::vector<std::uint8_t>& eexec, std::string_view codes,
                const Type1CodeNames& names) {
    type1Decrypt(eexec, kEexecKey);
    KWMemStream subset(nullptr, eexec.size());
    if (!subsetEexecSection({reinterpret_cast<const char*>(eexec.data()), eexec.size()}, codes,
                            names, subset))
        return false;
    eexec.assign(subset.data(), subset.data() + subset.size());
    type1Encrypt(eexec, kEexecKey);
    return true;
}

/// The same section with lead bytes that no reader takes for text.
void giveBinaryLead(std::vector<std::uint8_t>& eexec) {
    type1Decrypt(eexec, kEexecKey);
    // A zero becomes a byte that is neither a digit nor white space.
    std::ranges::fill(std::span(eexec).first(std::min(eexec.size(), kType1LeadBytes)),
                      std::uint8_t{0});
    type1Encrypt(eexec, kEexecKey);
}

} // namespace

bool FS_Type1Printer::writeProgram(const std::optional<std::string_view>& codes,
                                   const Type1CodeNames& names, KWMemStream& output,
                                   const Type1SegmentLengths& lengths) const {
    const std::unique_ptr<std::istream> stream = openFontStream(getUri());
    Type1Sections sections;
    // Of a file that is cut short the sections that it has are told. Of a text it is told what the
    // file says, before the bytes come.
    const bool isRead = stream && readSections(*stream, sections);
    const auto tellAnnounced = [&sections](std::size_t part, int& length) {
        const std::uint64_t count = sections.announced[part];
        if (count > 0 && count <= std::uint64_t{std::numeric_limits<int>::max()})
            length = static_cast<int>(count);
    };
    tellAnnounced(0, lengths.length1);
    if (sections.clearText.empty() ||
        !writeSegment(kPfbText, sections.clearText, output, lengths.length1))
        return false;
    if (sections.eexec.empty() || (codes && !cutToCodes(sections.eexec, *codes, names)))
        return false;
    if (looksLikeText(sections.eexec))
        giveBinaryLead(sections.eexec);
    if (!writeSegment(kPfbBinary, sections.eexec, output, lengths.length2))
        return false;
    tellAnnounced(2, lengths.length3);
    if (!isRead || !sections.isWhole ||
        !writeSegment(kPfbText, sections.trailer, output, lengths.length3))
        return false;
    constexpr std::array<std::uint8_t, kPfbTypeSize> kEnd{kPfbMark, kPfbEnd};
    output.append(kEnd.data(), kEnd.size());
    return !output.fail();
}

bool FS_Type1::getType1EmbedFont(unsigned char fontNumber, const char* codes, int count,
                                 KWMemStream& output, int& length1, int& length2, int& length3,
                                 int) {
    if (!printerFont)
        return false;
    std::optional<std::string_view> selected;
    if (codes != nullptr)
        selected.emplace(codes, static_cast<std::size_t>(std::max(count, 0)));
    const bool hasOwnEncoding = !printerFont->head().isStandardEncoding;
    const Type1CodeNames names{.fontNumber = fontNumber,
                               .builtInNames =
                                   hasOwnEncoding ? &printerFont->builtInNames() : nullptr,
                               .codes = this,
                               .metrics = glyphs()};
    return printerFont->writeProgram(selected, names, output, {length1, length2, length3});
}

bool FS_Type1::getType1FontStream(KWMemStream& output, int& length1, int& length2, int& length3,
                                  int faceIndex) {
    return getType1EmbedFont(0, nullptr, 0, output, length1, length2, length3, faceIndex);
}

} // namespace KWFontService_NS
