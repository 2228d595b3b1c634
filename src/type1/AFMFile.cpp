#include "type1/AFMFile.h"

#include "common/KWLimits.h"
#include "type1/GlyphNames.h"
#include "type1/Type1CharCode.h"
#include "type1/Type1Lines.h"
#include "type1/WeightText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>

namespace KWFontService_NS {

namespace {

using namespace std::string_view_literals;

/// Where in the file a line stands.
enum class Section {
    none,
    charMetrics,
    kernData,
    kernPairs,
};

/// The rest of a line behind the number that it begins with.
std::string_view behindNumber(std::string_view text) {
    return text.substr(std::min(text.find_first_of("; \t"), text.size()));
}

/// The number of a `CH` line, in angle brackets or without.
int hexadecimalCode(std::string_view text) {
    if (text.starts_with('<'))
        text.remove_prefix(1);
    return leadingInteger(text, 16);
}

void readBox(std::string_view numbers, Type1CharMetric& record) {
    for (int* const corner : {&record.left, &record.bottom, &record.right, &record.top})
        *corner = leadingInteger(cutWord(numbers));
}

/// The fields of a `C` line behind its code. A word may be cut short: it is compared as far as it
/// reaches.
void readFields(std::string_view fields, Type1CharMetric& record) {
    while (!fields.empty()) {
        const std::size_t end = std::min(fields.find(';'), fields.size());
        std::string_view value = fields.substr(0, end);
        fields.remove_prefix(std::min(end + 1, fields.size()));
        const std::string_view word = cutWord(value);
        if (word.empty())
            continue;
        if ("WX"sv.starts_with(word))
            record.WX = std::max(leadingInteger(value), 0); // an unsigned number
        else if ("WY"sv.starts_with(word))
            record.WY = std::max(leadingInteger(value), 0);
        else if ("N"sv.starts_with(word))
            record.name = cutWord(value);
        else if ("B"sv.starts_with(word))
            readBox(value, record);
    }
}

/// The width of those fields alone.
int readWidth(std::string_view fields) {
    int width = 0;
    while (fields.find('W') != std::string_view::npos) {
        const std::size_t end = std::min(fields.find(';'), fields.size());
        std::string_view value = fields.substr(0, end);
        fields.remove_prefix(std::min(end + 1, fields.size()));
        const std::string_view word = cutWord(value);
        if (word == "W" || word == "WX")
            width = std::max(leadingInteger(value), 0);
    }
    return width;
}

class Reader {
public:
    Reader(AFMHead& head, AFMGlyphs* glyphs) : head_(head), glyphs_(glyphs) {}

    /// True for a pair that tells nothing new where glyphs are not asked for. A font has thousands.
    bool passesBy(std::string_view line) const {
        return glyphs_ == nullptr && head_.hasKernPairs && line.starts_with("KPX ");
    }
    /// False when the keyword that the line begins with does not allow it.
    bool readLine(std::string_view keyword, std::string_view value);
    void finish();

private:
    using Handler = bool (Reader::*)(std::string_view value);
    struct Row {
        std::string_view keyword;
        Handler handler;
    };
    static const Row kRows[];

    template <UnicodeString AFMHead::*Field>
    bool setText(std::string_view value) {
        head_.*Field = textOfBytes(value);
        return true;
    }
    template <float AFMHead::*Field>
    bool setNumber(std::string_view value) {
        head_.*Field = leadingNumber(value);
        return true;
    }
    bool setWeight(std::string_view value);
    bool setXHeight(std::string_view value);
    bool setFixedPitch(std::string_view value);
    bool setEncodingScheme(std::string_view value);
    bool setFontBBox(std::string_view value);
    bool setMetricsSet(std::string_view value);

    bool startCharMetrics(std::string_view value);
    bool addCharMetric(std::string_view value) { return addMetric(leadingInteger(value), value); }
    bool addHexCharMetric(std::string_view value) {
        return addMetric(hexadecimalCode(value), value);
    }
    void addWidth(int width) {
        widthSum_ += width;
        widestWX_ = std::max(widestWX_, width);
    }
    bool addMetric(int code, std::string_view value);
    bool endCharMetrics(std::string_view);
    bool startKernData(std::string_view);
    bool startKernPairs(std::string_view value);
    bool addKernPair(std::string_view value);
    bool endKernPairs(std::string_view);
    bool endKernData(std::string_view);

    bool move(Section from, Section to) {
        if (section_ != from)
            return false;
        section_ = to;
        return true;
    }

    AFMHead& head_;
    AFMGlyphs* glyphs_;
    Section section_ = Section::none;
    int announcedMetrics_ = 0;
    int metrics_ = 0;
    std::int64_t widthSum_ = 0;
    int widestWX_ = 0;
    Type1CharMetric record_; // its name keeps its memory from line to line
    std::string firstName_;  // of the last pair; pairs are in the order of their first glyphs
    int firstCharacter_ = -1;
};

// The lines that most of a file consists of go first.
const Reader::Row Reader::kRows[] = {
    {"KPX", &Reader::addKernPair},
    {"C", &Reader::addCharMetric},
    {"CH", &Reader::addHexCharMetric},
    {"FontName", &Reader::setText<&AFMHead::postScriptName>},
    {"FullName", &Reader::setText<&AFMHead::fullName>},
    {"FamilyName", &Reader::setText<&AFMHead::familyName>},
    {"Weight", &Reader::setWeight},
    {"ItalicAngle", &Reader::setNumber<&AFMHead::italicAngle>},
    {"IsFixedPitch", &Reader::setFixedPitch},
    {"UnderlinePosition", &Reader::setNumber<&AFMHead::underlinePosition>},
    {"UnderlineThickness", &Reader::setNumber<&AFMHead::underlineThickness>},
    {"Copyright", &Reader::setText<&AFMHead::copyright>},
    {"EncodingScheme", &Reader::setEncodingScheme},
    {"FontBBox", &Reader::setFontBBox},
    {"CapHeight", &Reader::setNumber<&AFMHead::capHeight>},
    {"XHeight", &Reader::setXHeight},
    {"Ascender", &Reader::setNumber<&AFMHead::ascender>},
    {"Descender", &Reader::setNumber<&AFMHead::descender>},
    {"StdHW", &Reader::setNumber<&AFMHead::stdHW>},
    {"StdVW", &Reader::setNumber<&AFMHead::stdVW>},
    {"MetricsSet", &Reader::setMetricsSet},
    {"StartCharMetrics", &Reader::startCharMetrics},
    {"EndCharMetrics", &Reader::endCharMetrics},
    {"StartKernData", &Reader::startKernData},
    {"StartKernPairs", &Reader::startKernPairs},
    {"EndKernPairs", &Reader::endKernPairs},
    {"EndKernData", &Reader::endKernData},
};

bool Reader::readLine(std::string_view keyword, std::string_view value) {
    const auto row = std::ranges::find_if(kRows, [keyword](const Row& candidate) {
        return candidate.keyword.front() == keyword.front() && candidate.keyword == keyword;
    });
    return row == std::end(kRows) || (this->*row->handler)(value);
}

// --- the font as a whole ------------------------------------------------------------------------

bool Reader::setWeight(std::string_view value) {
    head_.weightName = textOfBytes(value);
    head_.weight = weightFromText(head_.weightName);
    return true;
}

bool Reader::setXHeight(std::string_view value) {
    head_.xHeight = leadingNumber(value) / kType1UnitsPerEm;
    return true;
}

bool Reader::setFixedPitch(std::string_view value) {
    head_.isFixedPitch = holdsTrue(value);
    return true;
}

bool Reader::setEncodingScheme(std::string_view value) {
    head_.encodingName = textOfBytes(value);
    head_.encodingScheme = encodingSchemeOf(head_.encodingName);
    return true;
}

bool Reader::setFontBBox(std::string_view value) {
    const auto box = readType1Box(value);
    if (box)
        head_.fontBBox = *box;
    return box.has_value();
}

bool Reader::setMetricsSet(std::string_view value) {
    head_.metricsSet = leadingInteger(value);
    return true;
}

// --- glyphs -------------------------------------------------------------------------------------

bool Reader::startCharMetrics(std::string_view value) {
    const int count = leadingInteger(value);
    if (announcedMetrics_ != 0 || count <= 0 || !move(Section::none, Section::charMetrics))
        return false;
    // What is announced is no reason to make room for it.
    announcedMetrics_ = std::min(count, KWCommonNS::kMaxCharMetrics);
    return true;
}

bool Reader::addMetric(int code, std::string_view value) {
    if (section_ != Section::charMetrics || metrics_ == announcedMetrics_)
        return false;
    ++metrics_;
    if (glyphs_ == nullptr) {
        addWidth(readWidth(behindNumber(value)));
        return true;
    }
    record_.name.clear();
    record_ = {.code = code, .name = std::move(record_.name)};
    readFields(behindNumber(value), record_);
    addWidth(record_.WX);
    glyphs_->charMetrics.push_back(record_);
    return true;
}

bool Reader::endCharMetrics(std::string_view) {
    return move(Section::charMetrics, Section::none);
}

// --- kerning ------------------------------------------------------------------------------------

bool Reader::startKernData(std::string_view) {
    return move(Section::none, Section::kernData);
}

bool Reader::startKernPairs(std::string_view value) {
    return leadingInteger(value) >= 0 && !head_.hasKernPairs &&
           move(Section::kernData, Section::kernPairs);
}

bool Reader::addKernPair(std::string_view value) {
    const std::string_view first = cutWord(value);
    if (first != firstName_) {
        firstName_ = first;
        firstCharacter_ = characterOf(first);
    }
    const int second = characterOf(cutWord(value));
    if (firstCharacter_ < 0 || second < 0)
        return true;
    head_.hasKernPairs = true;
    if (glyphs_ != nullptr)
        glyphs_->kernPairs.add(firstCharacter_, second, leadingInteger(value));
    return true;
}

bool Reader::endKernPairs(std::string_view) {
    return move(Section::kernPairs, Section::kernData);
}

bool Reader::endKernData(std::string_view) {
    return move(Section::kernData, Section::none);
}

void Reader::finish() {
    const float leading = head_.fontBBox.height() - kType1UnitsPerEm;
    head_.externalLeading = std::isfinite(leading) ? std::max(0.0F, leading) : 0;
    head_.maximumWidth = static_cast<float>(widestWX_);
    if (metrics_ != 0)
        head_.averageWidth = static_cast<float>(static_cast<double>(widthSum_) / metrics_);
    if (glyphs_ != nullptr)
        glyphs_->charMetrics.shrink_to_fit();
}

Type1FileError badLine(std::size_t number, std::string_view keyword) {
    return {FS_ERROR_FONT_FILE,
            textOfBytes("in line #" + std::to_string(number) + " : ").append(textOfBytes(keyword))};
}

} // namespace

std::optional<Type1FileError> readAFM(std::istream& stream, AFMHead& head, AFMGlyphs* glyphs) {
    Reader reader(head, glyphs);
    Type1Lines lines(stream, KWCommonNS::kMaxMetricsLine, Type1LineEnd::CROrLF);
    std::size_t number = 0;
    for (std::string_view line; lines.next(line);) {
        ++number;
        if (reader.passesBy(line))
            continue;
        const std::string_view keyword = cutWord(line);
        if (keyword.empty())
            continue;
        if (!reader.readLine(keyword, trimSeparators(line)))
            return badLine(number, keyword);
    }
    // A file that breaks off is not taken for a short one.
    if (stream.bad())
        return Type1FileError{FS_ERROR_FONT_READ, UnicodeString()};
    reader.finish();
    return std::nullopt;
}

} // namespace KWFontService_NS
