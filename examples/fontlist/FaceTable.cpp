#include "FaceTable.h"

#include "shared/Utf8.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace fontlist {

using namespace KWFontService_NS;
using examples::toUtf8;

namespace {

using Row = std::array<std::string, 9>;

/// How many columns of a terminal a text takes.
std::size_t columnsOf(const std::string& text) {
    const icu::UnicodeString characters = icu::UnicodeString::fromUTF8(text);
    std::size_t columns = 0;
    for (std::int32_t i = 0; i < characters.length(); i = characters.moveIndex32(i, 1)) {
        const UChar32 ch = characters.char32At(i);
        const int width = u_getIntPropertyValue(ch, UCHAR_EAST_ASIAN_WIDTH);
        if (u_charType(ch) != U_NON_SPACING_MARK)
            columns += width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
    }
    return columns;
}

/// Without characters that a terminal acts on: names come out of fonts of any origin.
std::string shown(const icu::UnicodeString& name) {
    icu::UnicodeString out;
    for (std::int32_t i = 0; i < name.length(); i = name.moveIndex32(i, 1)) {
        const UChar32 ch = name.char32At(i);
        out.append(u_iscntrl(ch) != 0 || u_charType(ch) == U_FORMAT_CHAR ? UChar32{0xFFFD} : ch);
    }
    return toUtf8(out);
}

Row rowOf(const ListedFace& face) {
    return {shown(face.font.getFaceName()),
            styleOf(face),
            std::to_string(face.font.getWeight()),
            shown(face.font.getFullName()),
            sourceOf(face),
            fileTypeOf(face),
            embeddingOf(face),
            face.metric.isFixedPitch() ? "fixed" : "",
            scriptsOf(face)};
}

} // namespace

std::string sourceOf(const ListedFace& face) {
    switch (face.type) {
    case FS_RESOURCE_FONT: // in a list by name the flags alone tell
        if ((face.font.getFlags() & FS_FONTMARK_REGISTRY) != 0)
            return "system";
        return (face.font.getFlags() & FS_FONTMARK_EUDC) != 0 ? "own characters" : "folder";
    case FS_RESOURCE_ALIAS:
        return "alias";
    case FS_RESOURCE_EXTRA:
        return "document";
    case FS_RESOURCE_WOFF:
        return "web font";
    case FS_RESOURCE_EUDC:
        return "own characters";
    case FS_RESOURCE_REGISTRY:
        return "system";
    }
    return "";
}

std::string fileTypeOf(const ListedFace& face) {
    switch (face.font.getFileType()) {
    case FS_FILETYPE_AFM:
    case FS_FILETYPE_PFM:
    case FS_FILETYPE_PFA:
    case FS_FILETYPE_PFB:
        return "Type 1";
    case FS_FILETYPE_TRUETYPE:
        return "TrueType";
    case FS_FILETYPE_COLLECTION:
        return "collection";
    case FS_FILETYPE_OPENTYPE:
    case FS_FILETYPE_OPENTYPE_CID:
        return "OpenType";
    case FS_FILETYPE_DFONT:
        return "dfont";
    case FS_FILETYPE_WOFF:
        return "WOFF";
    case FS_FILETYPE_EXTRA:
    case FS_FILETYPE_LOCAL:
        return "wrapped";
    default:
        return "?";
    }
}

std::string embeddingOf(const ListedFace& face) {
    switch (face.font.getEmbedding()) {
    case FS_EMBED_OUTLINES:
        return "yes";
    case FS_EMBED_BITMAP_ONLY:
        return "bitmaps";
    case FS_EMBED_RESTRICTED:
        return "no";
    }
    return "";
}

std::string scriptsOf(const ListedFace& face) {
    using Metric = FS_NewTextMetricEx;
    // By the codes of ISO 15924.
    static constexpr std::pair<const char*, bool (Metric::*)() const> kScripts[] = {
        {"Latn", &Metric::isLatin1},       {"Grek", &Metric::isGreek},
        {"Cyrl", &Metric::isCyrillic},     {"Armn", &Metric::isArmenian},
        {"Hebr", &Metric::isHebrew},       {"Arab", &Metric::isArabic},
        {"Syrc", &Metric::isSyriac},       {"Deva", &Metric::isDevanagari},
        {"Beng", &Metric::isBengali},      {"Guru", &Metric::isGurmukhi},
        {"Gujr", &Metric::isGujarati},     {"Orya", &Metric::isOriya},
        {"Taml", &Metric::isTamil},        {"Telu", &Metric::isTelugu},
        {"Knda", &Metric::isKannada},      {"Mlym", &Metric::isMalayalam},
        {"Sinh", &Metric::isSinhala},      {"Thai", &Metric::isThai},
        {"Laoo", &Metric::isLao},          {"Tibt", &Metric::isTibetan},
        {"Mymr", &Metric::isMyanmar},      {"Geor", &Metric::isGeorgian},
        {"Ethi", &Metric::isEthiopic},     {"Khmr", &Metric::isKhmer},
        {"Jpan", &Metric::isJapanese},     {"Hans", &Metric::isChineseSimp},
        {"Hant", &Metric::isChineseTrad},  {"Kore", &Metric::isKorean},
        {"Zmth", &Metric::isMathOperator},
    };
    std::string scripts;
    const auto add = [&scripts](const char* name) {
        scripts += (scripts.empty() ? "" : " ") + std::string(name);
    };
    for (const auto& [name, test] : kScripts) {
        if ((face.metric.*test)())
            add(name);
    }
    if (face.metric.isSymbolFont())
        add("Zsym");
    return scripts;
}

std::string tableOf(const std::vector<ListedFace>& faces) {
    std::vector<Row> rows{
        {"Family", "Style", "Weight", "Full name", "From", "File", "Embed", "Pitch", "Scripts"}};
    std::transform(faces.begin(), faces.end(), std::back_inserter(rows), rowOf);
    std::array<std::size_t, std::tuple_size_v<Row>> widths{};
    for (const Row& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], columnsOf(row[column]));
    }
    std::string table;
    for (const Row& row : rows) {
        std::size_t blanks = 0; // none behind the last word of a line
        for (std::size_t column = 0; column < row.size(); ++column) {
            if (!row[column].empty()) {
                table.append(blanks, ' ').append(row[column]);
                blanks = 0;
            }
            blanks += widths[column] + 2 - columnsOf(row[column]);
        }
        table += '\n';
    }
    return table + std::to_string(faces.size()) + (faces.size() == 1 ? " face\n" : " faces\n");
}

} // namespace fontlist
