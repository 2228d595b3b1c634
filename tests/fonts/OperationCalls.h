#pragma once

#include "cff/Type1CMap.h"
#include "fonts/FS_TrueType.h"
#include "fonts/MetricFields.h"
#include "layout/FS_GSUBGPOSInfo.h"
#include "support/SfntBuilder.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_LogFont.h>
#include <KWFontService17/FS_TTGlyphMap.h>
#include <KWFontService17/FS_WindowsRecords.h>

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWPtr.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

// Calls operations of the wide font interface on two fonts, with equal arguments that mean
// something to the fonts of tests, and compares all that comes back.

namespace KWTest {

using namespace KWFontService_NS;

inline constexpr std::size_t kVariants = 6;

/// A text without the tags of subsets ("KW12AB-"), which differ from call to call.
inline std::string withoutSubsetTags(std::string text) {
    constexpr std::size_t kLength = 7;
    const auto isTag = [](std::string_view part) {
        return part.size() == kLength && part.starts_with("KW") && part.back() == '-' &&
               part.substr(2, 4).find_first_not_of("0123456789ABCDEF") == std::string_view::npos;
    };
    for (std::size_t at = 0; (at = text.find("KW", at)) != std::string::npos; ++at) {
        if (isTag(std::string_view(text).substr(at, kLength)))
            text.erase(at, kLength);
    }
    return text;
}

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
    bool sameAs(const Argument& other) const { return text() == other.text(); }
    std::string text() const {
        std::string utf8;
        return withoutSubsetTags(value.toUTF8String(utf8));
    }
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
        static const KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(KWUri()));
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

inline bool sameBytes(KWMemStream& a, KWMemStream& b) {
    return withoutSubsetTags(std::string(a.data(), a.size())) ==
           withoutSubsetTags(std::string(b.data(), b.size()));
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
        return info.Registry == other.info.Registry &&
               withoutSubsetTags(info.Ordering) == withoutSubsetTags(other.info.Ordering) &&
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

template <>
struct Argument<FS_NewTextMetricEx> {
    explicit Argument(std::size_t) {}
    FS_NewTextMetricEx& get() { return metric; }
    bool sameAs(const Argument& other) const {
        return metricFields(metric) == metricFields(other.metric);
    }
    FS_NewTextMetricEx metric;
};

// --- answers ------------------------------------------------------------------------------------

template <class T>
bool equalAnswers(const T& a, const T& b) {
    return a == b;
}
inline bool equalAnswers(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}
inline bool equalAnswers(const PANOSE* a, const PANOSE* b) {
    return a == nullptr || b == nullptr ? a == b : std::memcmp(a, b, sizeof *a) == 0;
}
/// What each face answers is its own.
inline bool equalAnswers(const Type1CMap* a, const Type1CMap* b) {
    return a == nullptr || b == nullptr
               ? a == b
               : a->isCID == b->isCID && a->getGlyphOfCID(9) == b->getGlyphOfCID(9);
}
inline bool equalAnswers(const FS_BaseFont::Type1CMapArray* a,
                         const FS_BaseFont::Type1CMapArray* b) {
    return a == nullptr || b == nullptr ? a == b : *a == *b;
}
inline bool equalAnswers(FS_GSUBGPOSInfo* a, FS_GSUBGPOSInfo* b) {
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
                        return equalAnswers(result, other.result) && (... && mine.sameAs(theirs));
                    },
                    other.arguments);
            },
            arguments);
    }
    bool answers(const Result& stated) const { return equalAnswers(result, stated); }

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

} // namespace KWTest
