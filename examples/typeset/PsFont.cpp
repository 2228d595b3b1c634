#include "PsFont.h"

#include "CIDFontCipher.h"
#include "Failure.h"
#include "FontFile.h"
#include "FontProgram.h"
#include "NumberText.h"

#include <KWCommon15/KWMemStream.h>

#include <vector>

namespace typeset {

using namespace KWFontService_NS;

namespace {

constexpr std::size_t kBytesInLine = 32;

/// A CMap of the CIDFont's own, in which codes are CIDs (Adobe Technical Note 5014).
std::string identityCMap(const std::string& name, const FS_CIDSystemInfo& system) {
    std::string out = "%%BeginResource: CMap (" + name +
                      ")\n"
                      "/CIDInit /ProcSet findresource begin\n"
                      "12 dict begin\n"
                      "begincmap\n"
                      "/CIDSystemInfo 3 dict dup begin\n"
                      "/Registry (" +
                      system.Registry + ") def\n/Ordering (" + system.Ordering +
                      ") def\n/Supplement " + std::to_string(system.Supplement) +
                      " def\nend def\n"
                      "/CMapName /" +
                      name +
                      " def\n/CMapType 1 def\n/WMode 0 def\n"
                      "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
    constexpr unsigned kRows = 256;
    constexpr unsigned kBlock = 64; // a block holds 100 at most
    for (unsigned row = 0; row < kRows; ++row) {
        if (row % kBlock == 0)
            out += std::to_string(kBlock) + " begincidrange\n";
        out += '<' + hexText(row, 1) + "00> <" + hexText(row, 1) + "FF> " +
               std::to_string(row << 8) + '\n';
        if (row % kBlock == kBlock - 1)
            out += "endcidrange\n";
    }
    return out + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n"
                 "%%EndResource\n";
}

PsFont makeComposite(const FontFile& font, const UsedGlyphs& glyphs, const std::string& name) {
    PsFont ps;
    ps.isComposite = true;
    ps.names[0] = name;
    std::vector<unsigned short> list;
    for (const auto& [gid, glyph] : glyphs) {
        if (gid == 0)
            continue; // always CID 0
        list.push_back(gid);
        ps.codes[gid] = static_cast<unsigned short>(list.size());
    }
    KWCommonNS::KWMemStream stream;
    icu::UnicodeString fontName;
    FS_CIDSystemInfo system;
    if (!font.writer().makePostScriptCIDFontType0(list, stream, fontName, system))
        throw Failure(ExitCode::font, font.path + ": PostScript takes fonts with CFF outlines "
                                                  "and Type 1 fonts only");
    const std::string cidFont = toUtf8(fontName);
    ps.definition = "%%BeginResource: CIDFont (" + cidFont + ")\n" +
                    withCipher(std::string(stream.data(), stream.size())) + "%%EndResource\n" +
                    identityCMap(cidFont + "-H", system) + '/' + name + " /" + cidFont + "-H [/" +
                    cidFont + "] composefont pop\n";
    return ps;
}

/// A font program as text, then a font of that program with names for the codes in use. Unique
/// identifiers would let an interpreter take glyphs of one of these fonts for another's.
std::string definitionOf(const SimpleFont& font, const std::string& program,
                         const std::string& name) {
    const std::size_t eexec = font.lengths[0];
    const std::size_t trailer = eexec + font.lengths[1];
    std::string out = "%%BeginResource: font " + program + '\n' + font.bytes.substr(0, eexec);
    out += '\n' + hexLines(font.bytes.substr(eexec, font.lengths[1]), kBytesInLine) + '\n' +
           font.bytes.substr(trailer);
    out += "\n%%EndResource\n/" + name + " /" + program +
           " findfont dup length dict begin\n"
           "{1 index dup /FID eq exch dup /UniqueID eq exch /XUID eq or or {pop pop} {def} "
           "ifelse} forall\n"
           "/Encoding Encoding 256 array copy def\n";
    for (const auto& [code, glyphName] : font.names)
        out += "Encoding " + std::to_string(code) + " /" + glyphName + " put\n";
    return out + "currentdict end definefont pop\n";
}

PsFont makeType1(const FontFile& font, const UsedGlyphs& glyphs, const std::string& name) {
    const FontProgram program = makeFontProgram(font, glyphs, true, false);
    PsFont ps;
    ps.codes = program.codes;
    for (const auto& [number, part] : program.parts) {
        ps.names[number] = name + "-" + std::to_string(number);
        ps.definition +=
            definitionOf(part, toUtf8(font.info.getPostScriptName(0)), ps.names[number]);
    }
    return ps;
}

} // namespace

unsigned short PsFont::codeOf(unsigned short gid) const {
    const auto found = codes.find(gid);
    return found == codes.end() ? static_cast<unsigned short>(0) : found->second;
}

const std::string& PsFont::nameFor(unsigned short code) const {
    return names.at(isComposite ? 0 : static_cast<unsigned char>(code >> 8));
}

PsFont makePsFont(const FontFile& font, const UsedGlyphs& glyphs, const std::string& name) {
    return font.info.isType1Font() ? makeType1(font, glyphs, name)
                                   : makeComposite(font, glyphs, name);
}

} // namespace typeset
