#include "platform/LongPath.h"

#include <gtest/gtest.h>

using KWPlatform::longPath;

TEST(LongPath, DrivesAndSharesGetThePrefixThatLiftsTheLimit) {
    EXPECT_EQ(longPath(u"C:\\"), u"\\\\?\\C:\\");
    EXPECT_EQ(longPath(u"z:\\fonts\\a.ttf"), u"\\\\?\\z:\\fonts\\a.ttf");
    EXPECT_EQ(longPath(u"\\\\server\\share\\a.ttf"), u"\\\\?\\UNC\\server\\share\\a.ttf");
}

TEST(LongPath, APathThatHasThePrefixStays) {
    for (const char16_t* path : {u"\\\\?\\C:\\a", u"\\\\?\\UNC\\server\\share\\a",
                                 u"\\\\?\\Volume{00000000-0000-0000-0000-000000000000}\\a"})
        EXPECT_EQ(longPath(path), path);
}

TEST(PathIn, HasOneSeparatorAlsoWhereTheFolderEndsInOne) {
    EXPECT_EQ(KWPlatform::pathIn(u"\\\\?\\C:\\fonts", u"a.ttf"), u"\\\\?\\C:\\fonts\\a.ttf");
    EXPECT_EQ(KWPlatform::pathIn(u"\\\\?\\C:\\fonts\\", u"*"), u"\\\\?\\C:\\fonts\\*");
}

TEST(LongPath, DevicesAndRelativePathsHaveNone) {
    for (const char16_t* path :
         {u"", u"a.ttf", u"\\fonts\\a.ttf", u"C:", u"C:a.ttf", u"1:\\a", u"\\\\.\\NUL",
          u"\\\\.\\C:\\a", u"\\\\?\\GLOBALROOT\\Device\\Null", u"\\\\?\\COM1", u"\\\\?\\"})
        EXPECT_FALSE(longPath(path));
    EXPECT_FALSE(longPath(std::u16string_view(u"C:\\a\0b", 6)));
}
