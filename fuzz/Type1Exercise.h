#pragma once

#include "embed/Type1Subset.h"
#include "fonts/FS_FontFileOptions.h"
#include "fonts/FS_Type1.h"
#include "type1/Type1CharString.h"
#include "type1/Type1Cipher.h"
#include "type1/Type1Sections.h"

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWPtr.h>
#include <KWCommon15/KWUri.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace KWFuzz {

/// Cuts a program into its parts, which may not be more than the file, and takes the encrypted one
/// apart.
inline void exerciseSections(const std::string& file,
                             bool (*read)(std::istream&, KWFontService_NS::Type1Sections&)) {
    using namespace KWFontService_NS;
    std::istringstream stream(file);
    Type1Sections sections;
    read(stream, sections);
    if (sections.clearText.size() + sections.eexec.size() + sections.trailer.size() > file.size())
        std::abort();
    KWMemStream eexec;
    eexec.append(sections.eexec.data(), sections.eexec.size());
    eexecDecrypt(eexec);
    std::vector<KWCommonNS::KWValue> tokens;
    scanCharString(eexec, tokens, true);
    scanCharString(eexec, tokens, false);
    if (tokens.size() > 2 * sections.eexec.size())
        std::abort();
}

/// Writes a program whole, and with the glyphs of all codes. No output is much larger than the
/// file.
template <class Font>
void exerciseProgram(const Font& font, const std::string& file) {
    using namespace KWFontService_NS;
    std::string codes;
    for (int code = 0; code < 256; ++code)
        codes += static_cast<char>(code);
    const Type1CodeNames names{.builtInNames = &font.builtInNames(), .metrics = &font.metrics()};
    for (const std::optional<std::string_view>& selected :
         {std::optional<std::string_view>(), std::optional<std::string_view>(codes)}) {
        KWMemStream output;
        int length1 = 0;
        int length2 = 0;
        int length3 = 0;
        constexpr std::size_t kHeaders = 64; // of segments, and of the CharStrings
        if (font.writeProgram(selected, names, output, {length1, length2, length3}) &&
            output.size() > file.size() + kHeaders)
            std::abort();
    }
}

/// Scans a printer font, loads it and asks it all.
template <class Font>
void exercisePrinterFont(const std::string& file) {
    using namespace KWFontService_NS;
    KWUri::setFetcher([&file](const KWUri&, KWUri::ContentInfo&,
                              UnicodeString&) -> std::unique_ptr<std::istream> {
        return std::make_unique<std::istringstream>(file);
    });
    const KWCommonNS::KWPtr<Font> font(new Font(KWUri("http://fuzz/font")));
    KWError error;
    std::istringstream stream(file);
    if (!font->scanFont(error, stream) && !error.isError())
        std::abort();
    font->getSubFamilyName(0, 0);
    exerciseProgram(*font, file);
    if (font->loadFont(error, 0, nullptr)) {
        exerciseProgram(*font, file);
        for (const Type1CharMetric& record : font->metrics().records()) {
            if (!record.name.empty() && font->metrics().findName(record.name) == nullptr)
                std::abort();
        }
        Type1CodeMap codes;
        const Type1CodeSource source{.isSymbolic = font->isSymbolicFont(0),
                                     .metrics = &font->metrics(),
                                     .builtInNames = &font->builtInNames(),
                                     .scheme = encodingSchemeOf(font->head().encodingName)};
        for (int ch = 0; ch < 0x500; ++ch) {
            font->getGlyphID(ch, false, 0);
            const unsigned short code = findType1CharCode(codes, source, ch);
            if (code != 0 && (code & 0xFF) == 0)
                std::abort();
        }
        font->getPairKerningValue(1, 2, -1000, false, 0);
        font->getPostScriptName(0, 0);
    }
    KWUri::setFetcher({});
}

/// Scans the font of a metrics file without a printer font, loads it with the same file for its
/// list of glyph names, and asks it all.
template <class Font>
void exerciseMetricsFont(const std::string& file) {
    using namespace KWFontService_NS;
    KWUri::setFetcher([&file](const KWUri&, KWUri::ContentInfo&,
                              UnicodeString&) -> std::unique_ptr<std::istream> {
        return std::make_unique<std::istringstream>(file);
    });
    FS_FontFileOptions options;
    options.glyphList = KWUri("http://fuzz/list");
    options.skipGlyphNameMapping = file.size() % 2 == 0;
    const KWCommonNS::KWPtr<Font> font(new Font(KWUri("http://fuzz/font")));
    font->setFontEntrySettings(&options);
    KWError error;
    std::istringstream stream(file);
    if (font->scanFont(error, stream)) {
        if (error.isError() || !font->loadFont(error, 0, nullptr))
            std::abort();
        font->getSubFamilyName(0, 0);
        font->hasPairKerningInfo(false, 0);
        for (int ch = 0; ch < 0x500; ++ch) {
            int missing = 0;
            const UnicodeString text(static_cast<UChar32>(ch));
            const float width = font->getTextWidth(text, -1000, false, &missing, 0);
            if (!std::isfinite(width) || width < 0 || missing > 0)
                std::abort();
            font->getTextWidth(text, 10, false, nullptr, 0);
            const unsigned short code = font->getType1CharCode(ch, 0);
            if (code != 0 && (code & 0xFF) == 0)
                std::abort();
        }
    } else if (!error.isError()) {
        std::abort();
    }
    KWUri::setFetcher({});
}

} // namespace KWFuzz
