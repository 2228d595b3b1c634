#include "WebFont.h"

#include "Failure.h"
#include "FontFile.h"
#include "UsedGlyphs.h"
#include "shared/OutputFile.h"

#include <KWCommon15/KWMemStream.h>

#include <vector>

namespace typeset {

std::size_t writeWebFont(const std::string& path, const Layout& layout, std::size_t index,
                         const FontFile& font) {
    std::vector<unsigned short> glyphs;
    for (const auto& [gid, glyph] : usedGlyphs(layout, index))
        glyphs.push_back(gid);
    if (glyphs.empty())
        throw Failure(ExitCode::font, font.path + ": nothing is set in it for a web font");
    if (!font.maySubset)
        throw Failure(ExitCode::font,
                      font.path + ": its licence does not allow to cut it for a web font");
    KWCommonNS::KWMemStream output;
    if (!font.writer().makeWebFont(glyphs, output) || output.data() == nullptr)
        throw Failure(ExitCode::font, font.path + ": cannot make a web font of it");
    examples::writeFile(path, output.data(), output.size());
    return output.size();
}

} // namespace typeset
