#include "TestFont.h"

#include <algorithm>

namespace KWTest {

namespace {

/// Numbers laid out on an em of 1000 units, brought to another em.
class Scale {
public:
    explicit Scale(std::uint16_t unitsPerEm) : unitsPerEm_(unitsPerEm) {}

    std::int16_t operator()(int value) const {
        const int product = value * unitsPerEm_;
        const int quotient = product / 1000;
        const int floor = product % 1000 < 0 ? quotient - 1 : quotient;
        return static_cast<std::int16_t>(floor);
    }
    std::uint16_t advance(int value) const { return static_cast<std::uint16_t>((*this)(value)); }
    GlyphBox box(int xMin, int yMin, int xMax, int yMax) const {
        return {(*this)(xMin), (*this)(yMin), (*this)(xMax), (*this)(yMax)};
    }
    GlyphPoint point(int x, int y, bool onCurve) const { return {(*this)(x), (*this)(y), onCurve}; }

private:
    std::uint16_t unitsPerEm_;
};

GlyphContour reversed(GlyphContour contour) {
    std::ranges::reverse(contour);
    return contour;
}

/// A bowl open to the right, of quadratic curves.
GlyphContour letterC(const Scale& em) {
    return {em.point(650, 600, true), em.point(500, 700, false), em.point(350, 700, true),
            em.point(50, 700, false), em.point(50, 350, true),   em.point(50, 0, false),
            em.point(350, 0, true),   em.point(500, 0, false),   em.point(650, 100, true),
            em.point(150, 350, true)};
}

void setVerticalExtent(TestFont& font, std::int16_t ascender, std::int16_t descender) {
    font.hhea.ascender = ascender;
    font.hhea.descender = descender;
    font.os2.sTypoAscender = ascender;
    font.os2.sTypoDescender = descender;
    font.os2.usWinAscent = static_cast<std::uint16_t>(ascender);
    font.os2.usWinDescent = static_cast<std::uint16_t>(-descender);
}

void setMetrics(TestFont& font, std::vector<LongMetric> metrics,
                std::vector<std::int16_t> bearings = {}) {
    font.maxp.numGlyphs = static_cast<std::uint16_t>(metrics.size() + bearings.size());
    font.hhea.numberOfHMetrics = static_cast<std::uint16_t>(metrics.size());
    font.hhea.advanceWidthMax = std::ranges::max(metrics, {}, &LongMetric::advance).advance;
    font.hmtx = {.metrics = std::move(metrics), .bearings = std::move(bearings)};
}

} // namespace

TestFont TestFont::latin(std::uint16_t unitsPerEm) {
    const Scale em(unitsPerEm);
    const std::int16_t acuteX = em(150);
    TestFont font;

    font.head.unitsPerEm = unitsPerEm;
    font.head.xMin = 0;
    font.head.yMin = 0;
    font.head.xMax = em(650);
    font.head.yMax = em(800);
    setVerticalExtent(font, em(800), em(-200));
    font.hhea.xMaxExtent = em(650);
    font.os2.xAvgCharWidth = em(500);
    font.os2.sxHeight = em(500);
    font.os2.sCapHeight = em(700);
    font.post.underlinePosition = em(-100);
    font.post.underlineThickness = em(50);

    font.name = Name::english(u"KWTest Latin");
    font.cmap = Cmap::unicode(
        {{0x0020, kSpace}, {'A', kA}, {'B', kB}, {'C', kC}, {0x00B4, kAcute}, {0x00C1, kAacute}});
    setMetrics(font,
               {{em.advance(500), em(50)},
                {em.advance(250), 0},
                {em.advance(600), 0},
                {em.advance(650), em(50)},
                {em.advance(700), em(50)},
                {em.advance(300), em(100)}},
               {0});

    font.outlines.add(SimpleGlyph{.contours = {rectangle(em.box(50, 0, 450, 700))}})
        .add()
        .add(SimpleGlyph{.contours = {triangle(em.box(0, 0, 600, 700))}})
        .add(SimpleGlyph{.contours = {rectangle(em.box(50, 0, 600, 700)),
                                      reversed(rectangle(em.box(150, 100, 500, 600)))}})
        .add(SimpleGlyph{.contours = {letterC(em)}})
        .add(SimpleGlyph{.contours = {triangle(em.box(100, 720, 200, 800))}})
        .add(CompositeGlyph{.components = {{.glyphIndex = kA}, {.glyphIndex = kAcute, .x = acuteX}},
                            .box = em.box(0, 0, 600, 800)});
    return font;
}

TestFont TestFont::vertical() {
    const Scale em(1000);
    TestFont font;
    font.head.xMax = 900;
    font.head.yMin = -100;
    setVerticalExtent(font, 880, -120);
    font.os2.usFirstCharIndex = 0x0020;
    font.os2.usLastCharIndex = 0x3042;
    font.os2.ulUnicodeRange2 = 0x00030000;  // CJK symbols and punctuation, Hiragana
    font.os2.ulCodePageRange1 = 0x00020000; // Shift-JIS

    font.name = Name::english(u"KWTest Vertical");
    font.cmap = Cmap::unicode({{0x0020, kSpace}, {0x300C, kBracket}, {0x3042, kHiraganaA}});
    setMetrics(font, {{1000, 50}, {500, 0}, {1000, 100}, {1000, 600}, {1000, 100}});

    font.outlines.add(SimpleGlyph{.contours = {rectangle(em.box(50, 0, 450, 700))}})
        .add()
        .add(SimpleGlyph{.contours = {triangle(em.box(100, -100, 900, 800))}})
        .add(SimpleGlyph{.contours = {rectangle(em.box(600, 200, 900, 800))}})
        .add(SimpleGlyph{.contours = {rectangle(em.box(100, -100, 700, 200))}});

    // Top side bearing = vertical origin - top of the outline.
    font.with("vhea", Vhea{.numOfLongVerMetrics = kVerticalGlyphs})
        .with("vmtx", Vmtx{.metrics = {{1000, 180}, {500, 0}, {1000, 80}, {1000, 80}, {1000, 700}}})
        .with("VORG", Vorg{.defaultVertOriginY = 880,
                           .origins = {{.glyphIndex = kBracketVertical, .vertOriginY = 900}}})
        .with("GSUB", SingleSubstGsub::vert({{kBracket, kBracketVertical}}));
    return font;
}

TestFont TestFont::openType() {
    TestFont font;
    font.version = kOttoVersion;
    font.maxp.version = 0x00005000;
    font.head.xMax = 600;
    font.head.yMin = 0;
    font.head.yMax = 700;
    font.os2.usLastCharIndex = 'B';

    font.name = Name::english(u"KWTest OpenType");
    font.cmap = Cmap::unicode({{0x0020, kSpace}, {'A', kA}, {'B', kB}});
    setMetrics(font, {{500, 50}, {250, 0}, {600, 50}, {650, 50}});
    font.with("CFF ", Cff{.fontName = "KWTestOpenType-Regular",
                          .glyphs = {{".notdef", rectangleCharstring(0, 50, 0, 450, 700)},
                                     {"space", rectangleCharstring(-250, 0, 0, 0, 0)},
                                     {"A", rectangleCharstring(100, 50, 0, 550, 700)},
                                     {"B", rectangleCharstring(150, 50, 0, 600, 700)}}});
    return font;
}

TestFont& TestFont::with(std::string_view tag, Bytes data) {
    extras.table(tag, std::move(data));
    std::erase(dropped_, Bytes().tag(tag).str());
    return *this;
}

TestFont& TestFont::without(std::string_view tag) {
    extras.drop(tag);
    dropped_.push_back(Bytes().tag(tag).str());
    return *this;
}

SfntBuilder TestFont::sfnt() const {
    SfntBuilder font(version);
    font.table("head", head)
        .table("hhea", hhea)
        .table("maxp", maxp)
        .table("OS/2", os2)
        .table("hmtx", hmtx)
        .table("cmap", cmap)
        .table("name", name)
        .table("post", post);
    if (!outlines.glyphs.empty()) {
        Head measured = head;
        if (outlines.longLoca)
            measured.indexToLocFormat = 1;
        font.table("head", measured).table("loca", outlines.loca()).table("glyf", outlines.glyf());
    }
    for (const std::string& tag : extras.tags())
        font.table(tag, extras.get(tag));
    for (const std::string& tag : dropped_)
        font.drop(tag);
    return font;
}

} // namespace KWTest
