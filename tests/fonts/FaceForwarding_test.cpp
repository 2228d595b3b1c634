// Every operation of the one list, asked of the faces of a collection and of a dfont, of the same
// faces as files of their own, and for faces that there are not.

#include "cff/Type1CMap.h"
#include "fonts/FaceFixture.h"
#include "fonts/FontTyping.h"
#include "layout/FS_GSUBGPOSInfo.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_LogFont.h>
#include <KWFontService17/FS_TTGlyphMap.h>
#include <KWFontService17/FS_WindowsRecords.h>

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWUtil.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <set>
#include <string_view>
#include <tuple>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;
using KWCommonNS::KWUtil;

constexpr std::size_t kVariants = 6;

// --- arguments ----------------------------------------------------------------------------------

template <class T, std::size_t N>
T pick(const T (&values)[N], std::size_t variant) {
    return values[variant % N];
}

/// An argument of a call: a value chosen by its type, or the room for an answer.
template <class T>
struct Argument {
    explicit Argument(std::size_t) {}
    T& get() { return value; }
    bool sameAs(const Argument& other) const { return value == other.value; }
    T value{};
};

template <>
struct Argument<bool> {
    explicit Argument(std::size_t variant) : value(variant % 2 != 0) {}
    bool get() const { return value; }
    bool sameAs(const Argument&) const { return true; }
    bool value;
};

/// Characters, sizes and selectors; an answer that was given is compared.
template <>
struct Argument<int> {
    explicit Argument(std::size_t variant)
        : value(pick({int{'A'}, -1000, 0x3042, 0xFE00, 0, 12}, variant)) {}
    int& get() { return value; }
    bool sameAs(const Argument& other) const { return value == other.value; }
    int value;
};

/// Glyphs and languages.
template <>
struct Argument<unsigned short> {
    explicit Argument(std::size_t variant)
        : value(pick<unsigned short>({0, 2, 3, 4, 0x0409, 1}, variant)) {}
    unsigned short get() const { return value; }
    bool sameAs(const Argument&) const { return true; }
    unsigned short value;
};

template <>
struct Argument<unsigned int> {
    explicit Argument(std::size_t variant)
        : value(variant % 2 != 0 ? tagValue("DFLT") : tagValue("latn")) {}
    unsigned int get() const { return value; }
    bool sameAs(const Argument&) const { return true; }
    unsigned int value;
};

template <>
struct Argument<FS_MATHConstants> {
    explicit Argument(std::size_t variant)
        : value(pick({FS_MATHConstants::axisHeight, FS_MATHConstants::scriptPercentScaleDown},
                     variant)) {}
    FS_MATHConstants get() const { return value; }
    bool sameAs(const Argument&) const { return true; }
    FS_MATHConstants value;
};

template <>
struct Argument<UnicodeString> {
    explicit Argument(std::size_t variant) : value(variant % 2 != 0 ? u"A C\u3042" : u"\u300C") {}
    UnicodeString& get() { return value; }
    bool sameAs(const Argument& other) const { return value == other.value; }
    UnicodeString value;
};

template <>
struct Argument<std::vector<unsigned short>> {
    explicit Argument(std::size_t) {}
    const std::vector<unsigned short>& get() const { return value; }
    bool sameAs(const Argument&) const { return true; }
    std::vector<unsigned short> value{2, 3};
};

template <>
struct Argument<FS_FontRef> {
    explicit Argument(std::size_t variant)
        : value{someFont(), static_cast<std::int16_t>(variant)} {}
    const FS_FontRef& get() const { return value; }
    bool sameAs(const Argument&) const { return true; }
    static FS_BaseFont* someFont() {
        static const KWPtr<FS_TrueType> font(new FS_TrueType(KWUri()));
        return font.get();
    }
    FS_FontRef value;
};

/// Glyphs and places that a call answers.
template <class T>
struct Argument<T*> {
    explicit Argument(std::size_t) {}
    T* get() { return values.data(); }
    bool sameAs(const Argument& other) const { return values == other.values; }
    std::array<T, 64> values{};
};

template <>
struct Argument<const unsigned int*> {
    explicit Argument(std::size_t) {}
    const unsigned int* get() const { return tags.data(); }
    bool sameAs(const Argument&) const { return true; }
    std::array<unsigned int, 3> tags{tagValue("cmap"), tagValue("head"), 0};
};

template <>
struct Argument<const char*> {
    explicit Argument(std::size_t) {}
    const char* get() const { return "Name"; }
    bool sameAs(const Argument&) const { return true; }
};

/// The font opens its own file.
template <>
struct Argument<std::istream*> {
    explicit Argument(std::size_t) {}
    std::istream* get() const { return nullptr; }
    bool sameAs(const Argument&) const { return true; }
};

bool sameBytes(KWMemStream& a, KWMemStream& b) {
    return a.size() == b.size() &&
           (a.size() == 0 || std::memcmp(a.data(), b.data(), a.size()) == 0);
}

template <>
struct Argument<KWMemStream> {
    explicit Argument(std::size_t) {}
    KWMemStream& get() { return stream; }
    bool sameAs(Argument& other) { return sameBytes(stream, other.stream); }
    KWMemStream stream;
};

template <>
struct Argument<FS_TTGlyphMap> {
    struct Map : FS_TTGlyphMap {
        KWMemStream* getGlyphStream(unsigned short gid) override { return &glyphs[gid]; }
        std::map<unsigned short, KWMemStream> glyphs;
    };
    explicit Argument(std::size_t) {}
    FS_TTGlyphMap& get() { return map; }
    bool sameAs(Argument& other) {
        if (map.glyphs.size() != other.map.glyphs.size())
            return false;
        for (auto& [gid, glyph] : map.glyphs)
            if (!sameBytes(glyph, other.map.glyphs[gid]))
                return false;
        return true;
    }
    Map map;
};

template <>
struct Argument<FS_CIDSystemInfo> {
    explicit Argument(std::size_t) {}
    FS_CIDSystemInfo& get() { return info; }
    bool sameAs(const Argument& other) const {
        return info.Registry == other.info.Registry && info.Ordering == other.info.Ordering &&
               info.Supplement == other.info.Supplement;
    }
    FS_CIDSystemInfo info;
};

template <>
struct Argument<FS_EnumLogFontEx> {
    explicit Argument(std::size_t) {}
    FS_EnumLogFontEx& get() { return font; }
    bool sameAs(const Argument& other) const {
        return font.getFaceName() == other.font.getFaceName() &&
               font.getFullName() == other.font.getFullName() &&
               font.getWeight() == other.font.getWeight() &&
               font.isItalic() == other.font.isItalic();
    }
    FS_EnumLogFontEx font;
};

/// The record of text metrics is opaque to fonts that do not fill it.
template <>
struct Argument<FS_NewTextMetricEx> {
    explicit Argument(std::size_t) {}
    FS_NewTextMetricEx& get() { return *reinterpret_cast<FS_NewTextMetricEx*>(storage.data()); }
    bool sameAs(const Argument& other) const { return storage == other.storage; }
    alignas(std::max_align_t) std::array<std::byte, 1024> storage{};
};

// --- answers ------------------------------------------------------------------------------------

template <class T>
bool sameAnswer(const T& a, const T& b) {
    return a == b;
}
bool sameAnswer(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}
bool sameAnswer(const PANOSE* a, const PANOSE* b) {
    return a == nullptr || b == nullptr ? a == b : std::memcmp(a, b, sizeof *a) == 0;
}
/// What each face answers is its own.
bool sameAnswer(const Type1CMap* a, const Type1CMap* b) {
    return a == nullptr || b == nullptr
               ? a == b
               : a->isCID == b->isCID && a->getGlyphOfCID(9) == b->getGlyphOfCID(9);
}
bool sameAnswer(FS_GSUBGPOSInfo* a, FS_GSUBGPOSInfo* b) {
    return a == nullptr || b == nullptr
               ? a == b
               : FS_FontInfo::hasGSUBInfo(a) == FS_FontInfo::hasGSUBInfo(b);
}

template <class>
std::size_t variantFor(std::size_t variant) {
    return variant;
}

/// One call: its arguments, and what it answered.
template <class Result, class... Parameters>
class Call {
public:
    template <class Operation>
    Call(FS_BaseFont& font, Operation operation, std::size_t variant, int faceIndex)
        : Call(font, operation, variant, faceIndex,
               std::make_index_sequence<sizeof...(Parameters) - 1>()) {}
    ~Call() {
        if constexpr (std::is_same_v<Result, FS_GSUBGPOSInfo*>)
            FS_FontInfo::deleteGSUBGPOSInfo(result);
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    bool sameAs(Call& other) {
        return std::apply(
            [&](auto&... mine) {
                return std::apply(
                    [&](auto&... theirs) {
                        return sameAnswer(result, other.result) && (... && mine.sameAs(theirs));
                    },
                    other.arguments);
            },
            arguments);
    }
    bool answers(const Result& stated) const { return sameAnswer(result, stated); }

private:
    using Arguments = std::tuple<Argument<std::remove_cvref_t<Parameters>>...>;

    template <class Operation, std::size_t... I>
    Call(FS_BaseFont& font, Operation operation, std::size_t variant, int faceIndex,
         std::index_sequence<I...>)
        : arguments(variantFor<Parameters>(variant)...),
          result((font.*operation)(std::get<I>(arguments).get()..., faceIndex)) {}

    Arguments arguments;
    Result result;
};

/// What `void` operations answer.
struct Nothing {
    friend bool operator==(Nothing, Nothing) { return true; }
};

template <class Operation>
struct CallOf;
template <class Result, class... Parameters>
struct CallOf<Result (FS_BaseFont::*)(Parameters...)> {
    using Type = Call<Result, Parameters...>;
};
template <class Result, class... Parameters>
struct CallOf<Result (FS_BaseFont::*)(Parameters...) const> {
    using Type = Call<Result, Parameters...>;
};

/// What one operation did for every variant of its arguments.
struct Comparison {
    bool likeTheFace = true;    ///< as the same face in a file of its own
    bool likeNoData = true;     ///< as a font without the data
    bool faceHasAnswer = false; ///< some answer of the single file is not that of a font without
};

/// @param missing  the answer of a font without the data
template <class Operation, class Missing>
Comparison compare(FS_BaseFont& font, int faceIndex, FS_BaseFont& single, Operation operation,
                   const Missing& missing) {
    using OneCall = typename CallOf<Operation>::Type;
    Comparison comparison;
    for (std::size_t variant = 0; variant < kVariants; ++variant) {
        OneCall ofFace(font, operation, variant, faceIndex);
        OneCall ofSingle(single, operation, variant, 0);
        comparison.likeTheFace = comparison.likeTheFace && ofFace.sameAs(ofSingle);
        comparison.likeNoData = comparison.likeNoData && ofFace.answers(missing());
        comparison.faceHasAnswer = comparison.faceHasAnswer || !ofSingle.answers(missing());
    }
    return comparison;
}

template <class Operation, class Missing>
bool answersNoData(FS_BaseFont& font, int faceIndex, Operation operation, const Missing& missing) {
    for (std::size_t variant = 0; variant < kVariants; ++variant) {
        if (!typename CallOf<Operation>::Type(font, operation, variant, faceIndex)
                 .answers(missing()))
            return false;
    }
    return true;
}

// --- fonts --------------------------------------------------------------------------------------

/// A face that has something to say to nearly every question.
TestFont talkative() {
    TestFont font = TestFont::vertical();
    font.os2.usWeightClass = 700;
    font.os2.usWidthClass = 3;
    font.os2.fsSelection = 1;
    font.os2.fsType = 8;
    font.os2.sFamilyClass = 0x0C05;
    font.os2.panose = {3, 2};
    for (const int id : {16, 17, 20, 0, 8, 13})
        font.name.records.push_back(windowsName(static_cast<std::uint16_t>(id), u"Name"));
    font.cmap.records.push_back(
        {.platformID = 0,
         .encodingID = 5,
         .subtable =
             CmapFormat14{.selectors = {{.varSelector = 0xFE00,
                                         .mappings = {{.unicodeValue = 0xFE00, .glyphID = 4}}}}}
                 .build()});
    font.with("kern", Kern{.subtables = {{.pairs = {{2, 2, -50}, {3, 3, 20}}}}})
        .with("GDEF", Gdef{.glyphClassDef = classDefFormat2({{2, 3, 1}}), .markAttachClassDef = {}})
        .with("MATH",
              Math{.constants = MathConstants{{FS_MATHConstants::axisHeight, 250}},
                   .glyphInfo = MathGlyphInfo{.italicsCorrections = {{2, 30}}},
                   .variants = MathVariants{.vertical = {{2, {{3, 200}, {4, 300}}}},
                                            .horizontal = {{2, {{3, 200}, {4, 300}}, true}}}});
    return font;
}

/// What `talkative` cannot be at once.
TestFont serif() {
    TestFont font = TestFont::latin();
    font.os2.panose = {2, 5, 0, 9};
    return font;
}

TestFont cffFace(bool cid) {
    TestFont font = TestFont::openType();
    if (cid)
        font.with("CFF ",
                  CffCID{.glyphs = {{0, 0, {14}}, {7, 0, {14}}, {9, 0, {14}}, {8, 0, {14}}}});
    return font;
}

/// The same fonts as the faces of one file, and each in a file of its own.
struct FaceFiles {
    FaceFiles(const std::vector<TestFont>& fonts, FS_FontFileType together, FS_FontFileType alone)
        : count(static_cast<int>(fonts.size())) {
        SfntCollection collection;
        ResourceFile resources;
        for (std::size_t i = 0; i < fonts.size(); ++i) {
            // Writers copy `head` as it is: the two files have to agree on it.
            SfntBuilder sfnt = fonts[i].sfnt();
            sfnt.keepCheckSumAdjustment();
            singles.push_back(open(std::to_string(i) + ".font", sfnt.build(), alone));
            collection.fonts.push_back(sfnt);
            resources.fonts.push_back(sfnt);
        }
        const bool dfont = together == FS_FILETYPE_DFONT;
        font = open("all.font", dfont ? resources.build() : collection.build(), together);
    }

    KWPtr<FS_BaseFont> open(const std::string& name, const Bytes& bytes, FS_FontFileType type) {
        files.write(name, bytes);
        const KWPtr<FS_BaseFont> opened = createFontObject(files.uri(name), type);
        std::istringstream stream(bytes.str());
        KWError error;
        EXPECT_TRUE(opened->scanFont(error, stream)) << complaintOf(error);
        for (int face = 0; face < opened->getFontCount(); ++face)
            EXPECT_TRUE(opened->loadFont(error, face, nullptr)) << complaintOf(error);
        return opened;
    }

    TempDir files;
    int count;
    KWPtr<FS_BaseFont> font;
    std::vector<KWPtr<FS_BaseFont>> singles;
};

FaceFiles glyfCollection() {
    return {{talkative(), serif()}, FS_FILETYPE_COLLECTION, FS_FILETYPE_TRUETYPE};
}
FaceFiles cffCollection() {
    return {{cffFace(true), cffFace(false)}, FS_FILETYPE_COLLECTION, FS_FILETYPE_OPENTYPE};
}
FaceFiles dfont() {
    return {{talkative(), serif()}, FS_FILETYPE_DFONT, FS_FILETYPE_TRUETYPE};
}

// --- the list -----------------------------------------------------------------------------------

enum class Faces { ALL, NODFONT, CFF, OWN };

/// What the classes write by hand, tested by name elsewhere.
const std::set<std::string_view> kByHand = {"getTypoDescender", "getEmbedFontStream"};

/// Operations that ask for `CFF ` outlines.
const std::set<std::string_view> kOfCff = {"getEncodingScheme", "getCIDSystemInfo"};

/// @param forwards  whether the class forwards the operations of a column of the list
/// @param speaks    whether the faces of the fixture have something to say to an operation: where
///                  none has, equal answers prove nothing
template <class Forwards, class Speaks>
void expectTheTable(FaceFiles& files, const Forwards& forwards, const Speaks& speaks) {
    std::set<std::string> heard;
    std::set<std::string> asked;
    for (int face = 0; face < files.count; ++face) {
        FS_BaseFont& single = *files.singles[static_cast<std::size_t>(face)];
#define FS_OPERATION(faces, facade, result, name, parameters, arguments, qualifier, missing)       \
    if constexpr (!std::is_void_v<result>) {                                                       \
        using Operation = result (FS_BaseFont::*)(FS_PARAMETERS parameters int) qualifier;         \
        const Operation operation = &FS_BaseFont::name;                                            \
        const Comparison comparison =                                                              \
            compare(*files.font, face, single, operation, []() -> result { return missing; });     \
        if (kByHand.contains(#name)) {                                                             \
        } else if (forwards(Faces::faces)) {                                                       \
            EXPECT_TRUE(comparison.likeTheFace) << #name << " of face " << face;                   \
            asked.insert(#name);                                                                   \
            if (comparison.faceHasAnswer)                                                          \
                heard.insert(#name);                                                               \
        } else {                                                                                   \
            EXPECT_TRUE(comparison.likeNoData) << #name << " of face " << face;                    \
        }                                                                                          \
    }
#include "fonts/FS_FaceOperations.inc"
    }
    for (const std::string& name : asked)
        EXPECT_TRUE(heard.contains(name) || !speaks(name)) << name;
}

void expectNoDataOutOfRange(FaceFiles& files) {
    for (const int face :
         {-1, files.count, 99, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
#define FS_OPERATION(faces, facade, result, name, parameters, arguments, qualifier, missing)       \
    if constexpr (!std::is_void_v<result>) {                                                       \
        using Operation = result (FS_BaseFont::*)(FS_PARAMETERS parameters int) qualifier;         \
        const Operation operation = &FS_BaseFont::name;                                            \
        EXPECT_TRUE(                                                                               \
            answersNoData(*files.font, face, operation, []() -> result { return missing; }))       \
            << #name << " of face " << face;                                                       \
    }
#include "fonts/FS_FaceOperations.inc"
        files.font->setPostScriptName("Given", face);
        files.font->setHasVerticalGlyph(face);
        files.font->setEudcFont({files.font.get(), 0}, face);
    }
    for (int face = 0; face < files.count; ++face)
        EXPECT_EQ(files.font->getEudcFont(face), FS_FontRef());
}

TEST(FaceForwarding, ACollectionAnswersAsItsFacesDo) {
    FaceFiles files = glyfCollection();
    for (int face = 0; face < files.count; ++face) {
        const FS_FontRef link{files.font.get(), 1};
        files.font->setEudcFont(link, face);
        files.singles[static_cast<std::size_t>(face)]->setEudcFont(link, 0);
    }
    expectTheTable(
        files, [](Faces faces) { return faces != Faces::OWN; },
        [](std::string_view name) { return !kOfCff.contains(name); });
}

TEST(FaceForwarding, ACffCollectionAnswersAsItsFacesDo) {
    FaceFiles files = cffCollection();
    expectTheTable(
        files, [](Faces faces) { return faces != Faces::OWN; },
        [](std::string_view name) { return kOfCff.contains(name); });
}

TEST(FaceForwarding, ADFontAnswersAsItsFacesDoWithoutWhatItHasNot) {
    FaceFiles files = dfont();
    for (int face = 0; face < files.count; ++face) {
        const FS_FontRef link{files.font.get(), 1};
        files.font->setEudcFont(link, face);
        files.singles[static_cast<std::size_t>(face)]->setEudcFont(link, 0);
    }
    expectTheTable(
        files, [](Faces faces) { return faces == Faces::ALL; },
        [](std::string_view) { return true; });
}

TEST(FaceForwarding, AFaceOutOfRangeAnswersNoData) {
    FaceFiles collection = glyfCollection();
    expectNoDataOutOfRange(collection);
    FaceFiles cff = cffCollection();
    expectNoDataOutOfRange(cff);
    FaceFiles resources = dfont();
    expectNoDataOutOfRange(resources);
}

// What the calls are made with are references, so `void` operations are asked here.
TEST(FaceForwarding, OnlySingleFacesTakeANameOrVerticalForms) {
    FaceFiles files = glyfCollection();
    const UnicodeString own = files.font->getPostScriptName(0, 1);
    files.font->setPostScriptName("Given", 1);
    EXPECT_EQ(files.font->getPostScriptName(0, 1), own);
    files.font->setHasVerticalGlyph(1);
    EXPECT_FALSE(files.font->hasVerticalGlyph(1));
}

} // namespace
} // namespace KWFontService_NS
