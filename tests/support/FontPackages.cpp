#include "FontPackages.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace KWTest {

namespace {

constexpr auto kFonts = std::to_array<PackagedFont>({
    {"DejaVuSans", "fonts-dejavu-core", "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"},
    {"DejaVuSans-Bold", "fonts-dejavu-core",
     "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"},
    {"DejaVuSansMono", "fonts-dejavu-core", "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"},
    {"DejaVuSerif", "fonts-dejavu-core", "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf"},
    {"DejaVuSerif-Bold", "fonts-dejavu-core",
     "/usr/share/fonts/truetype/dejavu/DejaVuSerif-Bold.ttf"},
    {"DejaVuSans-Oblique", "fonts-dejavu-extra",
     "/usr/share/fonts/truetype/dejavu/DejaVuSans-Oblique.ttf"},
    {"DejaVuSansCondensed", "fonts-dejavu-extra",
     "/usr/share/fonts/truetype/dejavu/DejaVuSansCondensed.ttf"},
    {"DejaVuSans-ExtraLight", "fonts-dejavu-extra",
     "/usr/share/fonts/truetype/dejavu/DejaVuSans-ExtraLight.ttf"},
    {"DejaVuSerif-Italic", "fonts-dejavu-extra",
     "/usr/share/fonts/truetype/dejavu/DejaVuSerif-Italic.ttf"},
    {"DejaVuMathTeXGyre", "fonts-dejavu-extra",
     "/usr/share/fonts/truetype/dejavu/DejaVuMathTeXGyre.ttf"},
    {"DejaVuSans-WOFF", "fonts-dejavu-web", "/usr/share/fonts/woff/dejavu/DejaVuSans.woff"},
    {"LiberationSans", "fonts-liberation2",
     "/usr/share/fonts/truetype/liberation2/LiberationSans-Regular.ttf"},
    {"LiberationSans-Bold", "fonts-liberation2",
     "/usr/share/fonts/truetype/liberation2/LiberationSans-Bold.ttf"},
    {"LiberationSans-Italic", "fonts-liberation2",
     "/usr/share/fonts/truetype/liberation2/LiberationSans-Italic.ttf"},
    {"LiberationSerif", "fonts-liberation2",
     "/usr/share/fonts/truetype/liberation2/LiberationSerif-Regular.ttf"},
    {"LiberationMono", "fonts-liberation2",
     "/usr/share/fonts/truetype/liberation2/LiberationMono-Regular.ttf"},
    {"IPAGothic", "fonts-ipafont-gothic", "/usr/share/fonts/opentype/ipafont-gothic/ipag.ttf"},
    {"IPAPGothic", "fonts-ipafont-gothic", "/usr/share/fonts/opentype/ipafont-gothic/ipagp.ttf"},
    {"IPAMincho", "fonts-ipafont-mincho", "/usr/share/fonts/opentype/ipafont-mincho/ipam.ttf"},
    {"IPAPMincho", "fonts-ipafont-mincho", "/usr/share/fonts/opentype/ipafont-mincho/ipamp.ttf"},
    {"NotoSansCJK", "fonts-noto-cjk", "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc"},
    {"NotoSerifCJK", "fonts-noto-cjk", "/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc"},
    {"UMing", "fonts-arphic-uming", "/usr/share/fonts/truetype/arphic/uming.ttc"},
    {"WenQuanYiZenHei", "fonts-wqy-zenhei", "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc"},
    {"ARPLSungtiL", "fonts-arphic-gbsn00lp",
     "/usr/share/fonts/truetype/arphic-gbsn00lp/gbsn00lp.ttf"},
    {"WineSymbol", "fonts-wine", "/usr/share/wine/fonts/symbol.ttf"},
    {"WineTahoma", "fonts-wine", "/usr/share/wine/fonts/tahoma.ttf"},
    {"WineWingdings", "fonts-wine", "/usr/share/wine/fonts/wingding.ttf"},
    {"WineMarlett", "fonts-wine", "/usr/share/wine/fonts/marlett.ttf"},
    {"LMRoman10", "fonts-lmodern",
     "/usr/share/texmf/fonts/opentype/public/lm/lmroman10-regular.otf"},
    {"LMMono10", "fonts-lmodern", "/usr/share/texmf/fonts/opentype/public/lm/lmmono10-regular.otf"},
    {"TeXGyreTermesMath", "fonts-texgyre-math",
     "/usr/share/texmf/fonts/opentype/public/tex-gyre-math/texgyretermes-math.otf"},
    {"C059-Roman", "fonts-urw-base35", "/usr/share/fonts/opentype/urw-base35/C059-Roman.otf"},
    {"NimbusSans", "fonts-urw-base35",
     "/usr/share/fonts/opentype/urw-base35/NimbusSans-Regular.otf"},
    {"D050000L", "fonts-urw-base35", "/usr/share/fonts/opentype/urw-base35/D050000L.otf"},
    {"NimbusSans-PFB", "fonts-urw-base35", "/usr/share/fonts/X11/Type1/NimbusSans-Regular.pfb"},
    {"C059-PFB", "fonts-urw-base35", "/usr/share/fonts/X11/Type1/C059-Roman.pfb"},
    {"NimbusSans-AFM", "fonts-urw-base35",
     "/usr/share/fonts/type1/urw-base35/NimbusSans-Regular.afm"},
    {"C059-AFM", "fonts-urw-base35", "/usr/share/fonts/type1/urw-base35/C059-Roman.afm"},
    {"LMRoman10-AFM", "lmodern", "/usr/share/texmf/fonts/afm/public/lm/lmr10.afm"},
    {"LMRoman10-PFB", "lmodern", "/usr/share/texmf/fonts/type1/public/lm/lmr10.pfb"},
    {"LMMono10-PFB", "lmodern", "/usr/share/texmf/fonts/type1/public/lm/lmtt10.pfb"},
    {"LinLibertine", "fonts-linuxlibertine",
     "/usr/share/fonts/opentype/linux-libertine/LinLibertine_R.otf"},
    {"FreeSerif", "fonts-freefont-otf", "/usr/share/fonts/opentype/freefont/FreeSerif.otf"},
    {"Unifont", "fonts-unifont", "/usr/share/fonts/opentype/unifont/unifont.otf"},
    {"Amiri", "fonts-hosny-amiri", "/usr/share/fonts/opentype/fonts-hosny-amiri/Amiri-Regular.ttf"},
    {"LohitDevanagari", "fonts-lohit-deva",
     "/usr/share/fonts/truetype/lohit-devanagari/Lohit-Devanagari.ttf"},
});

} // namespace

std::span<const PackagedFont> packagedFonts() {
    return kFonts;
}

std::filesystem::path packagedFont(std::string_view name) {
    const auto found = std::ranges::find(kFonts, name, &PackagedFont::name);
    if (found == kFonts.end())
        throw std::runtime_error("no such font in FontPackages.cpp: " + std::string(name));
    const std::filesystem::path path(found->path);
    if (!std::filesystem::is_regular_file(path)) {
        throw std::runtime_error("font not installed: apt-get install " +
                                 std::string(found->package) + " (" + path.string() + ")");
    }
    return path;
}

} // namespace KWTest
