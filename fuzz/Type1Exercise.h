#pragma once

#include "fonts/FS_Type1Printer.h"
#include "type1/Type1CharString.h"
#include "type1/Type1Cipher.h"
#include "type1/Type1Sections.h"

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWPtr.h>
#include <KWCommon15/KWUri.h>

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>

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
    if (font->loadFont(error, 0, nullptr)) {
        for (const Type1CharMetric& record : font->metrics().records()) {
            if (!record.name.empty() && font->metrics().findName(record.name) == nullptr)
                std::abort();
        }
        Type1CodeMap codes;
        codes.nextCode = 127;
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

} // namespace KWFuzz
