#include "type1/Type1CharCode.h"

#include "type1/GlyphNames.h"

#include <string_view>

namespace KWFontService_NS {

namespace {

constexpr int kFirstSymbol = 0xF000;
constexpr int kLastSymbol = 0xFFFF;
/// Characters that may be codes as they stand.
constexpr int kFirstCode = 32;
constexpr int kLastCode = 255;
/// Built-in codes from here on are past what font program 0 hands out.
constexpr int kFirstHighCode = Type1CodeMap::kCodesOfAFont;

struct SchemeRow {
    const char16_t* name;
    FS_EncodingScheme scheme;
};
constexpr SchemeRow kSchemes[] = {
    {u"WinAnsiEncoding", FS_ENCODING_WINANSI},
    {u"MacRomanEncoding", FS_ENCODING_MACROMAN},
    {u"MacExpertEncoding", FS_ENCODING_MACEXPERT},
    {u"FontSpecific", FS_ENCODING_FONT},
};

class Lookup {
public:
    Lookup(Type1CodeMap& codes, const Type1CodeSource& font, int ch)
        : codes_(codes), font_(font), ch_(ch) {}

    unsigned short run() const {
        if (const unsigned short known = codes_.unicodeCode(ch_))
            return known;
        if (font_.skipGlyphNameMapping)
            return plainCode();
        if (const Type1CharMetric* const listed = font_.findListed(ch_)) {
            if (listed->code == Type1CharMetric::kUnencoded)
                return allocatePastOwnCodes(listed->name);
            return giveOwnCode(static_cast<unsigned char>(listed->code & 0xFF), listed->name);
        }
        if (const Type1CharMetric* const named = font_.findNamed(ch_))
            return codeOfNamed(*named);
        if (const std::string* const builtIn = findBuiltIn())
            return codeOfBuiltIn(*builtIn);
        if (!font_.isSymbolic || ch_ < kFirstCode || ch_ > kLastCode)
            return 0;
        return isOwnCode(ch_) ? static_cast<unsigned short>(ch_) : static_cast<unsigned short>(0);
    }

private:
    const std::string* findBuiltIn() const {
        if (font_.builtInNames == nullptr)
            return nullptr;
        const auto found = font_.builtInNames->find(ch_);
        return found != font_.builtInNames->end() ? &found->second : nullptr;
    }

    bool isOwnCode(int code) const {
        return font_.metrics != nullptr && font_.metrics->findCode(code) != nullptr;
    }

    unsigned short assign(unsigned char code) const { return codes_.assignCode(ch_, code); }
    unsigned short assignNamed(unsigned char code, std::string_view name) const {
        codes_.addCMapEntry(0, code, name);
        return assign(code);
    }

    unsigned short plainCode() const {
        if (ch_ < kFirstCode || ch_ > kLastCode)
            return 0;
        if (font_.builtInNames == nullptr)
            return static_cast<unsigned short>(ch_);
        const std::string* const name = findBuiltIn();
        return name != nullptr ? assignNamed(static_cast<unsigned char>(ch_), *name)
                               : static_cast<unsigned short>(0);
    }

    /// A code that the font program has by itself. Only one of an encoding of the font's own has to
    /// be named.
    unsigned short giveOwnCode(unsigned char code, std::string_view name) const {
        if (code == 0)
            return 0;
        return font_.scheme == FS_ENCODING_FONT ? assignNamed(code, name) : assign(code);
    }

    unsigned short codeOfNamed(const Type1CharMetric& metric) const {
        if (metric.code != ch_ || metric.code == Type1CharMetric::kUnencoded)
            return allocatePastOwnCodes(metric.name);
        const bool isByte = ch_ > 0 && ch_ <= kLastCode;
        if (font_.isSymbolic) {
            return isByte ? assignNamed(static_cast<unsigned char>(ch_), metric.name)
                          : allocatePastOwnCodes(metric.name);
        }
        if (isByte && (font_.glyphList != nullptr ||
                       metric.name == standardName(static_cast<std::uint8_t>(ch_))))
            return assign(static_cast<unsigned char>(ch_));
        const std::uint8_t standard = standardCode(metric.name);
        if (standard == 0)
            return allocatePastOwnCodes(metric.name);
        return font_.scheme == FS_ENCODING_STANDARD ? assign(standard)
                                                    : assignNamed(standard, metric.name);
    }

    unsigned short codeOfBuiltIn(std::string_view name) const {
        if (ch_ >= kFirstHighCode) {
            codes_.raiseNextCode(kFirstHighCode);
            return codes_.allocateCode(ch_, name);
        }
        return giveOwnCode(static_cast<unsigned char>(ch_), name);
    }

    unsigned short allocatePastOwnCodes(std::string_view name) const {
        do {
            codes_.raiseNextCode();
        } while (codes_.nextCode < Type1CodeMap::kAllCodes && isOwnCode(codes_.nextCode));
        return codes_.allocateCode(ch_, name);
    }

    Type1CodeMap& codes_;
    const Type1CodeSource& font_;
    int ch_;
};

} // namespace

FS_EncodingScheme encodingSchemeOf(const UnicodeString& name) {
    for (const SchemeRow& row : kSchemes) {
        if (name == UnicodeString(row.name))
            return row.scheme;
    }
    return FS_ENCODING_STANDARD;
}

int Type1CodeSource::settled(int ch) const {
    return isSymbolic && ch >= kFirstSymbol && ch <= kLastSymbol ? ch & ~kFirstSymbol : ch;
}

bool Type1CodeSource::isListed(int ch) const {
    return glyphList != nullptr && glyphList->contains(ch);
}

const Type1CharMetric* Type1CodeSource::findListed(int ch) const {
    return metrics != nullptr && isListed(ch) ? metrics->findName(glyphList->find(ch)->second)
                                              : nullptr;
}

const Type1CharMetric* Type1CodeSource::findNamed(int ch) const {
    if (metrics == nullptr || isListed(ch))
        return nullptr;
    const std::string_view name = glyphNameOf(isSymbolic ? ch : substituteCharacter(ch));
    return !name.empty() ? metrics->findName(name) : nullptr;
}

unsigned short findType1CharCode(Type1CodeMap& codes, const Type1CodeSource& font, int ch) {
    ch = font.settled(ch);
    KWCommonNS::KWMutex mutex(codes.codeLock());
    mutex.lock();
    return Lookup(codes, font, ch).run();
}

} // namespace KWFontService_NS
