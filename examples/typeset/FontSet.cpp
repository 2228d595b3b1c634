#include "FontSet.h"

#include "Failure.h"
#include "shared/Service.h"

#include <KWCommon15/KWCommon.h>

#include <optional>
#include <stdexcept>
#include <utility>

namespace typeset {

using namespace KWFontService_NS;

namespace {

/// The index of a font that is in the set from now on.
std::size_t addOnce(FontSet& fonts, FontFile font) {
    for (std::size_t i = 0; i < fonts.size(); ++i) {
        if (fonts[i].info.getFont() == font.info.getFont())
            return i;
    }
    fonts.files.push_back(std::move(font));
    return fonts.size() - 1;
}

FontFile findOrExplain(const FontRequest& request, const std::string& config,
                       FS_ExtraFonts* extraFonts) {
    if (std::optional<FontFile> font = findFont(request, extraFonts))
        return std::move(*font);
    std::string text = "there is no font '" + request.name +
                       "'\nThe font service knows what the system lists, unless its configuration "
                       "switches that off,\nand what lies in the folders";
    std::vector<icu::UnicodeString> folders;
    FS_GetFontFoldPathVector(examples::configPath(config).c_str(), examples::homePath(), folders);
    for (const icu::UnicodeString& folder : folders)
        text += "\n  " + toUtf8(folder);
    throw Failure(ExitCode::font,
                  text + "\nA font goes by its family, by a name of its own, by the name of its "
                         "file, or by an alias of the\nconfiguration. 'fc-list : family' shows the "
                         "families that the system lists.");
}

} // namespace

std::vector<std::string> openService(const std::string& config) {
    try {
        return examples::openService(config);
    } catch (const std::runtime_error& failure) {
        throw Failure(ExitCode::font, failure.what());
    }
}

void addPrivateUseFonts(FontSet& fonts, const icu::UnicodeString& text) {
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 character = text.char32At(i);
        if (!FS_FontInfo::isEUDC(character))
            continue;
        for (const std::size_t asked : {std::size_t{0}, fonts.headings}) {
            FontRequest request;
            icu::UnicodeString name;
            if (fonts[asked].info.getGlyphID(character, false) != FS_NO_GLYPH ||
                !fonts[asked].info.getEudcFontName(character, name, request.weight, request.italic))
                continue;
            request.name = toUtf8(name);
            if (std::optional<FontFile> font = findFont(request))
                addOnce(fonts, std::move(*font));
        }
    }
}

FontSet openFonts(const FontChoice& choice) {
    FontSet fonts;
    const auto add = [&](FontFile font) { return addOnce(fonts, std::move(font)); };
    if (!choice.byName()) {
        add(openFont(choice.files.empty() ? std::string() : choice.files.front()));
        fonts.fallbacks = fonts.size();
        for (std::size_t i = 1; i < choice.files.size(); ++i)
            add(openFont(choice.files[i]));
        return fonts;
    }
    addFontFaces(fonts.faces, choice.faces);
    FS_ExtraFonts* const extraFonts = fonts.faces.getExtraFonts();
    add(findOrExplain(choice.text, choice.config, extraFonts));
    if (!choice.headings.name.empty())
        fonts.headings = add(findOrExplain(choice.headings, choice.config, extraFonts));
    fonts.fallbacks = fonts.size();
    for (const std::string& name : choice.fallbacks) {
        FontRequest request = choice.text;
        request.name = name;
        add(findOrExplain(request, choice.config, extraFonts));
    }
    return fonts;
}

} // namespace typeset
