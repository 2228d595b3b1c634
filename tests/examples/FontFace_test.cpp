#include "typeset/FontFace.h"

#include "typeset/Failure.h"

#include <gtest/gtest.h>

using namespace typeset;

TEST(FontFace, HasAFamilyAStyleAndAUrl) {
    const FontFace face = parseFontFace("Of the Text;700;1;fonts/a.ttf");
    EXPECT_EQ(face.family, "Of the Text");
    EXPECT_EQ(face.weight, 700);
    EXPECT_EQ(face.italic, 1);
    EXPECT_EQ(face.url, "fonts/a.ttf");
    EXPECT_EQ(parseFontFace("F;1000;0;u").italic, 0);
}

TEST(FontFace, AnEmptyStyleIsTheFontsOwn) {
    const FontFace face = parseFontFace("F;;;a.ttf");
    EXPECT_EQ(face.weight, 0);
    EXPECT_EQ(face.italic, -1);
}

TEST(FontFace, AUrlMayHaveSemicolons) {
    EXPECT_EQ(parseFontFace("F;;;data:font/woff;base64,AA==").url, "data:font/woff;base64,AA==");
}

TEST(FontFace, WhatMakesNoSenseIsWrongUsage) {
    for (const char* const text :
         {"", "F", "F;400;0", ";400;0;a.ttf", "F;400;0;", "F;0;0;a.ttf", "F;1001;0;a.ttf",
          "F;bold;0;a.ttf", "F;400;2;a.ttf", "F;400;yes;a.ttf", "F;400;-1;a.ttf"}) {
        try {
            parseFontFace(text);
            ADD_FAILURE() << text;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code(), ExitCode::usage) << text;
        }
    }
}
