// A host that does with fonts what a document needs (open or find, map, measure, draw, subset) and
// writes every answer down. On all systems the same fonts must give the same bytes. It fails when a
// font is not found, nothing of it can be drawn or it gives no subset: two reports of nothing would
// agree.
//
// usage: font_report OUTPUT CONFIGURATION FONT-FILE...

#include <KWCommon15/KWCommon.h>
#include <KWFontService17/KWFontService.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace {

using namespace KWFontService_NS;
using KWCommonNS::KWCStr;
using KWCommonNS::KWError;
using KWCommonNS::KWMemStream;

constexpr const char16_t* kText =
    u"Font AVATAR fi \u00C5\u00E9 \u0428\u0440\u0438\u0444\u0442 \u0393\u03C1\u03AC \u300C\u6F22"
    u"\u5B57\u300D\u3001 \U0001F600";

class Report {
public:
    explicit Report(const char* path) : out_(path, std::ios::binary) {}

    bool finish() {
        out_.close();
        return !out_.fail();
    }

    Report& operator<<(std::string_view text) {
        out_ << text;
        return *this;
    }
    // A literal would rather become a bool than a view.
    Report& operator<<(const char* text) { return *this << std::string_view(text); }
    Report& operator<<(char ch) { return *this << std::string_view(&ch, 1); }
    Report& operator<<(bool answer) { return *this << (answer ? "yes" : "no"); }
    Report& operator<<(const icu::UnicodeString& text) {
        std::string bytes;
        text.toUTF8String(bytes);
        return *this << bytes;
    }
    // Digits, not the locale's idea of them; of a float as many as make it that float.
    template <typename Number>
    requires std::is_arithmetic_v<Number> Report& operator<<(Number number) {
        char digits[64];
        const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
        return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
    }

    void bytes(std::string_view data) {
        static constexpr char kDigits[] = "0123456789abcdef";
        for (std::size_t i = 0; i < data.size(); ++i) {
            const auto byte = static_cast<unsigned char>(data[i]);
            out_ << (i % 48 == 0 ? "\n" : "") << kDigits[byte >> 4] << kDigits[byte & 15];
        }
        out_ << '\n';
    }

private:
    std::ofstream out_;
};

void reportNames(Report& report, const FS_FontInfo& font) {
    report << "file " << font.getFontFileName().getFileName() << " type "
           << static_cast<int>(font.getFontFileType()) << '\n';
    report << "names " << font.getFamilyName(0) << " | " << font.getSubFamilyName(0) << " | "
           << font.getFullFontName(0) << " | " << font.getPostScriptName(0) << '\n';
    int weight = 0;
    int width = 0;
    bool italic = false;
    font.getFontStyle(&weight, &italic, &width);
    const FS_CodePageRange pages = font.getCodePageRangeBitFields();
    report << "style " << weight << ' ' << italic << ' ' << width << " fixed "
           << font.isFixedWidthFont() << " serif " << font.isSerifLikeFont() << " class "
           << int{font.getFamilyClass()} << ' ' << int{font.getFamilySubclass()} << " pages "
           << pages.codePageRange1 << ' ' << pages.codePageRange2 << '\n';
    report << "metrics " << font.getUnitsPerEm() << ' ' << font.getXHeight() << ' '
           << font.getCapHeight() << ' ' << font.getTypoAscender() << ' ' << font.getTypoDescender()
           << ' ' << font.getDefaultVertOriginY(0) << " embed "
           << static_cast<int>(font.getEmbedStatus()) << '\n';
}

std::vector<unsigned short> reportText(Report& report, const FS_FontInfo& font) {
    const icu::UnicodeString text(kText);
    std::vector<unsigned short> glyphs(static_cast<std::size_t>(text.countChar32()));
    int count = 0;
    int missing = -1;
    const bool all = font.getGlyphIDs(text, glyphs.data(), count, false, &missing);
    glyphs.resize(static_cast<std::size_t>(count));
    report << "text " << all << " missing " << missing << " width "
           << font.getTextWidth(text, -12, false, nullptr) << '\n';
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        const unsigned short gid = glyphs[i];
        report << "glyph " << int{gid} << ' ' << font.getGlyphWidth(gid, 0, false) << ' '
               << font.getGlyphWidth(gid, -10, true) << ' ' << font.getGlyphWidth(gid, 10, false)
               << ' ' << font.getGlyphVertOriginY(gid, 0);
        if (i + 1 < glyphs.size())
            report << " kern " << font.getPairKerningValue(gid, glyphs[i + 1], 0, false);
        report << '\n';
    }
    return glyphs;
}

bool reportBitmap(Report& report, const FS_FontInfo& font, unsigned short gid, float size,
                  const FS_GlyphBMPSetting& setting) {
    FS_GlyphBMP bitmap;
    KWError error;
    if (!font.drawGlyph(gid, size, 96, &bitmap, setting, error)) {
        report << "bitmap " << int{gid} << ": " << error.getMessage() << '\n';
        return false;
    }
    report << "bitmap " << int{gid} << ' ' << bitmap.getCols() << 'x' << bitmap.getRows() << ' '
           << bitmap.getRowsOffestFromHorizontalBaseLineToStartPoint() << ' '
           << bitmap.getColsOffestFromHorizontalBaseLineToStartPoint() << ' '
           << bitmap.getRowsOffestFromVerticalBaseLineToStartPoint() << ' '
           << bitmap.getColsOffestFromVerticalBaseLineToStartPoint() << '\n';
    for (unsigned int y = 0; y < bitmap.getRows(); ++y) {
        for (unsigned int x = 0; x < bitmap.getCols(); ++x)
            report << (bitmap.getPixel(x, y) != 0 ? "#" : ".");
        report << '\n';
    }
    return true;
}

void reportOutline(Report& report, const FS_FontInfo& font, unsigned short gid) {
    FS_GlyphDrawInfo info;
    if (!font.getGlyphDrawInfo(gid, info, false)) {
        report << "outline " << int{gid} << ": none\n";
        return;
    }
    report << "outline " << int{gid} << ' ' << info.xMin << ' ' << info.yMin << ' ' << info.xMax
           << ' ' << info.yMax << ' ' << info.horiAdvance << ' ' << info.vertAdvance << '\n';
    for (const auto& contour : info.contours) {
        for (const int segment : contour.segments)
            report << segment << ' ';
        for (const auto& [x, y] : contour.points)
            report << x << ',' << y << ' ';
        report << '\n';
    }
}

bool reportSubset(Report& report, const FS_FontInfo& font,
                  const std::vector<unsigned short>& glyphs) {
    KWMemStream subset;
    const bool made = font.getEmbedFont(glyphs, subset);
    const std::string bytes{std::istreambuf_iterator<char>(subset), {}};
    report << "subset " << made << ' ' << bytes.size();
    report.bytes(bytes);
    return made && !bytes.empty();
}

bool reportFont(Report& report, const FS_FontInfo& font) {
    reportNames(report, font);
    const std::vector<unsigned short> glyphs = reportText(report, font);
    FS_GlyphBMPSetting plain;
    FS_GlyphBMPSetting bent;
    bent.slantAngle = 0.2F;
    bent.rotationAngle = 0.5F;
    bent.emboldenPixels = 1;
    bool drawn = false;
    for (const unsigned short gid : glyphs) {
        if (gid == FS_NO_GLYPH)
            continue;
        drawn = reportBitmap(report, font, gid, 12, plain) || drawn;
        drawn = reportBitmap(report, font, gid, 18, bent) || drawn;
        reportOutline(report, font, gid);
    }
    return reportSubset(report, font, glyphs) && drawn;
}

bool reportFile(Report& report, const char* path) {
    FS_FontInfo font;
    report << "== " << path << '\n';
    if (!font.createFont(KWUri(KWCStr(path), KWCommonNS::URISTR_LOCAL))) {
        report << font.getError().getMessage() << '\n';
        return false;
    }
    return reportFont(report, font);
}

struct Request {
    const char16_t* family;
    int weight;
    bool italic;
    int stretch;
    bool isThere = true;
};

constexpr Request kRequests[] = {
    {u"DejaVu Sans", 400, false, 5},      {u"dejavu-sans", 700, true, 5},
    {u"DejaVu Sans", 200, false, 3},      {u"DejaVu Sans Mono", 400, false, 5},
    {u"Liberation Sans", 0, false, 0},    {u"LIBERATION SERIF", 900, true, 9},
    {u"Report Text", 700, false, 5},      {u"IPA\u660E\u671D", 400, false, 5},
    {u"IPAMincho", 700, true, 5},         {u"No Such Family", 400, false, 5, false},
    {u"Noto Sans CJK JP", 400, false, 5}, {u"Noto Serif CJK SC", 400, false, 5},
    {u"Second Face", 400, false, 5},      {u"WenQuanYi Zen Hei Mono", 400, false, 5},
};

bool reportRequest(Report& report, const Request& request) {
    FS_FontInfo font;
    report << "== " << icu::UnicodeString(request.family) << ' ' << request.weight << ' '
           << request.italic << ' ' << request.stretch << '\n';
    if (!font.createFont(icu::UnicodeString(request.family), request.weight, request.italic,
                         request.stretch, nullptr, false)) {
        report << "none " << font.getError().getMessage() << '\n';
        return !request.isThere;
    }
    reportNames(report, font);
    report << "adjust " << font.getFontSizeAdjust() << ' ' << font.getBaselindAdjust() << '\n';
    reportText(report, font);
    for (const char16_t ch : {u'A', u'\u6F22'}) {
        const unsigned short gid = font.getGlyphID(ch, true);
        if (gid == FS_NO_GLYPH)
            continue;
        reportBitmap(report, font, gid, 12, FS_GlyphBMPSetting());
        reportOutline(report, font, gid);
    }
    return request.isThere;
}

/// The problems of the configuration and of the fonts that it leads to.
void reportProblems(Report& report) {
    const int count = FS_GetFontError(nullptr, 0);
    report << "== problems " << count << '\n';
    for (int i = 0; i < count; ++i) {
        KWError error;
        FS_GetFontError(&error, i);
        report << int{error.getCode()} << ' ' << error.getMessage() << '\n';
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 3) {
        std::fputs("usage: font_report OUTPUT CONFIGURATION FONT-FILE...\n", stderr);
        return 2;
    }
    KWError error;
    if (FontServiceOpen(arguments[1].c_str(), &error) != FS_ERROR_NONE) {
        std::string text;
        std::fprintf(stderr, "%s\n", error.getMessage().toUTF8String(text).c_str());
        return 1;
    }
    Report report(arguments[0].c_str());
    reportProblems(report);
    bool good = true;
    for (const Request& request : kRequests)
        good = reportRequest(report, request) && good;
    for (std::size_t i = 2; i < arguments.size(); ++i)
        good = reportFile(report, arguments[i].c_str()) && good;
    if (!report.finish()) {
        std::fprintf(stderr, "cannot write %s\n", arguments[0].c_str());
        return 1;
    }
    return good ? 0 : 1;
}
