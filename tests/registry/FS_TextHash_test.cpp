#include "registry/FS_TextHash.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace KWFontService_NS;

TEST(TextHash, EqualTextsHaveEqualHashes) {
    const FS_TextHash hash;
    const UnicodeString text(u"A family name of some length");
    EXPECT_EQ(hash(text), hash(UnicodeString(text)));
    EXPECT_EQ(hash(UnicodeString()), hash(UnicodeString()));
}

TEST(TextHash, EachUnitAndTheLengthCount) {
    const FS_TextHash hash;
    std::set<std::size_t> seen;
    UnicodeString text;
    for (int length = 0; length < 12; ++length) {
        EXPECT_TRUE(seen.insert(hash(text)).second) << length;
        text.append(u'\0');
    }
    for (int i = 0; i < 12; ++i) {
        UnicodeString changed(text);
        changed.setCharAt(i, u'x');
        EXPECT_TRUE(seen.insert(hash(changed)).second) << i;
    }
}

TEST(TextHash, TextsThatCollideInTheHashOfIcuDoNot) {
    // 37 * a + b stays the same.
    std::set<std::size_t> seen;
    const std::int32_t collision = UnicodeString(u"\u5000\u6000").hashCode();
    for (int k = 0; k < 500; ++k) {
        UnicodeString text(static_cast<char16_t>(0x5000 + k));
        text.append(static_cast<char16_t>(0x6000 - 37 * k));
        ASSERT_EQ(text.hashCode(), collision);
        EXPECT_TRUE(seen.insert(FS_TextHash()(text)).second);
    }
}

} // namespace
