#include "FontExercise.h"

#include "LayoutExercise.h"
#include "SampleArguments.h"
#include "cff/CharStringCopy.h"
#include "cff/CharStringFlatten.h"
#include "cff/Type1CMap.h"
#include "cff/Type2ToType1.h"
#include "common/TagText.h"
#include "fonts/FS_DFont.h"
#include "fonts/FS_OpenType.h"
#include "fonts/FS_TrueType.h"
#include "fonts/FS_TrueTypeCollection.h"
#include "fonts/FS_WOFF.h"
#include "registry/FS_FontPool.h"
#include "registry/FS_FontService.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_GlyphBMPStore.h>
#include <KWFontService17/FS_GlyphDrawInfo.h>

#include <KWCommon15/KWPtr.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>

namespace KWFuzz {

using namespace KWFontService_NS;
using KWCommonNS::KWPtr;
using KWCommonNS::sfntTag;

namespace {

/// The font under test, as the resource that its URI names.
class FontInMemory {
public:
    FontInMemory(const std::uint8_t* data, std::size_t size)
        : bytes_(reinterpret_cast<const char*>(data), size) {
        KWUri::setFetcher(
            [this](const KWUri&, KWUri::ContentInfo&, UnicodeString&) { return open(); });
    }
    ~FontInMemory() { KWUri::setFetcher({}); }
    FontInMemory(const FontInMemory&) = delete;
    FontInMemory& operator=(const FontInMemory&) = delete;

    KWUri uri() const { return KWUri(UnicodeString("fuzz:font"), KWCommonNS::URISTR_URI); }
    std::unique_ptr<std::istream> open() const {
        return std::make_unique<std::istringstream>(bytes_);
    }

private:
    std::string bytes_;
};

constexpr unsigned kFuzzGlyphs = 64;

/// What writers do with charstrings.
void exerciseCharStrings(CFFStream& table, const Type1CMap& cff, const CharStringSubrs& subrs) {
    CFFIndexHead head;
    const int at = cff.topDict.getNamedItem(cffKey(FS_Word::CharStrings)).getIntegerValue();
    if (!Type1CMap::readIndexAt(table, static_cast<std::uint32_t>(at), head))
        return;
    CharStringBudget budget(std::size_t{1} << 18);
    SubrEntries globals;
    SubrEntries locals;
    SubrWalker walker(subrs, budget, &globals, &locals);
    std::vector<CharStringTokens> type1Subrs = Type2ToType1::standardSubrs();
    Type2ToType1 translator(500, 600);
    KWMemStream output;
    for (unsigned gid = 0; gid < std::min<unsigned>(head.count(), kFuzzGlyphs); ++gid) {
        std::vector<std::uint8_t> bytes;
        if (!Type1CMap::readCharString(table, head, gid, bytes))
            continue;
        const ByteView charString(bytes.data(), bytes.size());
        CharStringCounts counts;
        walker.walk(charString, counts);
        CharStringTokens tokens;
        CharStringCounts tokenCounts;
        walkCharString(charString, tokens, subrs, tokenCounts, nullptr, nullptr, budget);
        copyCharString(output, charString, walker, {{0, 1}, {-107, 5000}}, {{-107, 3}}, {});
        CharStringTokens flat;
        FlatCounts flatCounts;
        flattenCharString(charString, subrs, flat, flatCounts, budget);
        CharStringTokens type1;
        translator.convert(flat, type1Subrs, type1);
    }
}

/// What a CFF font leaves in its file.
void readCffParts(const FontInMemory& file, FS_TrueTypeInfo& face) {
    const Type1CMap* const cff = face.getCFFInfo();
    const TTI_TableRecord* const record = face.getTableEntry(0x43464620); // 'CFF '
    if (cff == nullptr || record == nullptr)
        return;
    const auto stream = file.open();
    CFFStream table(*stream, record->offset, record->length);
    CFFIndex globals;
    Type1CMap::readGlobalSubrs(table, globals);
    CFFIndex locals;
    KWCommonNS::KWValue dict;
    cff->readLocalSubrs(table, dict, locals);
    exerciseCharStrings(table, *cff, {globals, locals});
    std::vector<CFFFontDict> fontDicts;
    if (cff->readFDArray(table, fontDicts) && !fontDicts.empty())
        exerciseCharStrings(table, *cff, {globals, *fontDicts.back().localSubrs});
    std::vector<FDRange> ranges;
    cff->readFDSelect(table, ranges);
    for (const std::uint16_t id : std::initializer_list<std::uint16_t>{0, 1, 2, 391, 0xFFFF}) {
        cff->getGlyphOfCID(id);
        cff->getStringOfSID(id);
        getFDOfGlyph(ranges, id, 255);
    }
}

void callEveryOperation(FS_BaseFont& font) {
#define FS_OPERATION(faces, wrapper, facade, result, name, parameters, arguments, qualifier,       \
                     missing)                                                                      \
    callVariants(font,                                                                             \
                 static_cast<result (FS_BaseFont::*)(FS_PARAMETERS parameters int) qualifier>(     \
                     &FS_BaseFont::name));
#include "fonts/FS_FaceOperations.inc"
}

template <class Font>
void scanAndLoad(const FontInMemory& file, bool embedded) {
    const KWPtr<Font> font(new Font(file.uri()));
    KWError error;
    const auto stream = file.open();
    if (embedded) {
        if (font->scanEmbeddedFont(error, *stream))
            font->loadEmbeddedFont(error, stream.get());
    } else if (font->scanFont(error, *stream)) {
        // Also after a load that failed: what was read stays usable.
        font->loadFont(error, 0, nullptr);
        callEveryOperation(*font);
        readCffParts(file, *font->face(0));
    }
}

/// Of a file with several faces the first two, and one that is not there.
template <class Font>
void useFaces(const FontInMemory& file) {
    const KWPtr<Font> font(new Font(file.uri()));
    KWError error;
    const auto stream = file.open();
    if (!font->scanFont(error, *stream))
        return;
    for (int face = 0; face < std::min(font->getFontCount(), 2); ++face) {
        font->loadFont(error, face, nullptr);
        readCffParts(file, *font->face(face));
        font->getFTFace(face);
        KWCommonNS::KWMemStream output;
        font->getEmbedFontStream(output, nullptr, face);
    }
    callEveryOperation(*font);
    FS_FontPool pool;
    font->registerFileName(pool, file.uri());
    font->registerFontNames(pool);
}

void useWoff(const FontInMemory& file) {
    const KWPtr<FS_WOFF> font(new FS_WOFF(file.uri()));
    KWError error;
    const auto stream = file.open();
    if (!font->scanNamedFont(error, *stream, UnicodeString("Declared"), 300, 1))
        return;
    font->loadFont(error, 0, nullptr);
    font->getFTFace(0);
    callEveryOperation(*font);
    FS_FontPool pool;
    font->registerFileName(pool, file.uri());
    font->registerFontNames(pool);
}

void draw(FS_FontInfo& font) {
    const FS_GlyphBMPSetting settings[] = {{},
                                           {.scaleVertically = true,
                                            .slantVertically = true,
                                            .slantAngle = 12.0F,
                                            .rotationAngle = 33.0F,
                                            .scale = 0.5F,
                                            .emboldenPixels = 1}};
    FS_GlyphBMPStore store;
    for (const unsigned short gid : std::initializer_list<unsigned short>{0, 1, 2, 6, 0xFFFF}) {
        for (const FS_GlyphBMPSetting& setting : settings)
            store.insertGlyph(gid, 12.0F, 72, &font, setting);
        for (const bool vertical : {false, true}) {
            FS_GlyphDrawInfo info;
            font.getGlyphDrawInfo(gid, info, vertical);
        }
    }
    font.isGlyphDrawInfoAvialable();
}

void shape(const FS_FontInfo& font) {
    for (const std::uint32_t script : {sfntTag("DFLT"), sfntTag("latn"), sfntTag("arab")}) {
        FS_GSUBGPOSInfo* const handle = font.getGSUBGPOSInfo(script, 0);
        exerciseLayout(handle);
        FS_FontInfo::deleteGSUBGPOSInfo(handle);
    }
}

void useThroughFacade(const FontInMemory& file) {
    FS_FontInfo font;
    if (font.createFont(file.uri())) {
        for (const int ch : {0x20, 0x41, 0x300C, 0xE000, 0x10FFFF}) {
            bool hasVertical = false;
            font.isNoVerticalGlyph(ch, &hasVertical);
            font.hasVerticalGlyph(ch);
            font.getTextWidth(ch, 12, true, nullptr);
            UnicodeString name;
            int weight = 0;
            bool italic = false;
            font.getEudcFontName(ch, name, weight, italic);
            font.getEudcGlyphID(ch);
        }
        for (const int size : {0, 12, -1000})
            font.getGlyphVertOriginY(2, size);
        draw(font);
        shape(font);
    }
    // Fonts made from files live as long as the service, which here is as long as the fuzzer.
    if (FS_FontService* const service = g_fontService.load())
        service->keptFonts.clear();
}

} // namespace

void exerciseFont(const std::uint8_t* data, std::size_t size) {
    const FontInMemory file(data, size);
    scanAndLoad<FS_TrueType>(file, false);
    scanAndLoad<FS_TrueType>(file, true);
    scanAndLoad<FS_OpenType>(file, false);
    useFaces<FS_TrueTypeCollection>(file);
    useFaces<FS_DFont>(file);
    useWoff(file);
    useThroughFacade(file);
}

} // namespace KWFuzz
