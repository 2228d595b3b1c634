#pragma once

#include "CffOutput.h"

namespace KWTest {

// The fonts that tests pack.

/// An empty glyph that tells itself apart.
inline Bytes glyph(int number) {
    return Bytes{139 + number, 14};
}

/// Glyphs .notdef, "one", "A", "two", "three" with strings for the font besides.
inline CffSections nameKeyed() {
    CffSections table;
    table.names = {Bytes::ofText("F")};
    table.strings = {Bytes::ofText("three"), Bytes::ofText("Version"), Bytes::ofText("one"),
                     Bytes::ofText("Notice"), Bytes::ofText("two")};
    table.topDict = joined(cffInteger(392), Bytes{0},   // version
                           cffInteger(394), Bytes{1},   // Notice
                           Bytes{247, 0, 4},            // Weight: a standard string
                           Bytes{28, 0xFF, 0xF6, 12, 2} // ItalicAngle
    );
    table.charset = Bytes{0}.u16s({393, 34, 395, 391});
    table.charStrings = {glyph(0), glyph(1), glyph(2), glyph(3), glyph(4)};
    table.privateDict = CffPrivate{.dict = Bytes{140, 20, 141, 21}};
    return table;
}

/// CIDs 0, 10, 11, 30, 40 in three Font DICTs.
inline CffCID cidKeyed() {
    CffCID font;
    font.glyphs = {{0, 0, glyph(0)},
                   {10, 1, glyph(1)},
                   {11, 1, glyph(2)},
                   {30, 2, glyph(3)},
                   {40, 0, glyph(4)}};
    font.fontDicts = {{.dict = Bytes(), .privateDict = CffPrivate{.dict = Bytes{140, 20}}},
                      {.dict = joined(cffInteger(392), Bytes{12, 38}, Bytes{139, 139, 139, 12, 7}),
                       .privateDict = CffPrivate{.dict = Bytes{141, 20}}},
                      {.dict = joined(cffInteger(391), Bytes{12, 38}),
                       .privateDict = CffPrivate{.dict = Bytes{142, 20}}}};
    return font;
}

} // namespace KWTest
