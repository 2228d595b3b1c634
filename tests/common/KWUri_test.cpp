#include "KWCommon15/KWUri.h"

#include "support/SystemDouble.h"
#include "support/TempDir.h"
#include "support/UnixPaths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace KWCommonNS;

namespace {

std::string utf8(const UnicodeString& text) {
    std::string bytes;
    return text.toUTF8String(bytes);
}

std::string uriOf(const UnicodeString& text, URISTRTYPE type = URISTR_DETECT) {
    return utf8(KWUri(text, type).getString());
}

std::string pathOf(const UnicodeString& text, URISTRTYPE type = URISTR_DETECT) {
    return utf8(KWUri(text, type).getLocalPath());
}

std::string resolved(const char16_t* base, const char16_t* text, URISTRTYPE type = URISTR_URI) {
    return utf8(KWUri(text, KWUri(base), type).getString());
}

// A system with "\" between the parts of a path and with any file.
class WindowsSystem : public KWTest::SystemDouble {
public:
    bool isRegularFile(const std::u16string& path) override {
        asked = path;
        return true;
    }
    std::unique_ptr<KWPlatform::FileReader> openFile(const std::u16string&, std::string&) override {
        return nullptr;
    }
    std::u16string moduleFolder(const std::u16string&) override { return u"C:\\program"; }
    char16_t preferredSeparator() override { return u'\\'; }

    std::u16string asked;
};

} // namespace

TEST(Uri, TheEmptyOneIsNothing) {
    for (const KWUri& uri : {KWUri(), KWUri(u""), KWUri(u"", URISTR_LOCAL), KWUri(u"", URISTR_URI),
                             KWUri(u"  ", URISTR_URL), KWUri(u"", KWUri(u"/a/"))}) {
        EXPECT_TRUE(uri.isEmpty());
        EXPECT_FALSE(uri.isFile());
        EXPECT_FALSE(uri.isAbsolute());
        EXPECT_FALSE(uri.isFileExists());
        EXPECT_FALSE(uri.isDataScheme());
        EXPECT_TRUE(uri.getLocalPath().isEmpty());
        EXPECT_TRUE(uri.getBaseString().isEmpty());
        EXPECT_TRUE(uri.getFileName().isEmpty());
        EXPECT_TRUE(uri.getExtension().isEmpty());
        EXPECT_TRUE(uri.getScheme().isEmpty());
    }
}

TEST(Uri, AFullPathBecomesAFileUriAndComesBack) {
    const KWTest::UnixPaths system;
    const KWUri uri(u"/usr/share/fonts/DejaVu Sans.ttf");
    EXPECT_EQ(utf8(uri.getString()), "file:///usr/share/fonts/DejaVu%20Sans.ttf");
    EXPECT_EQ(utf8(uri.getLocalPath()), "/usr/share/fonts/DejaVu Sans.ttf");
    EXPECT_EQ(utf8(uri.getBaseString()), "file:///usr/share/fonts/");
    EXPECT_EQ(utf8(uri.getFileName()), "DejaVu Sans.ttf");
    EXPECT_EQ(utf8(uri.getExtension()), ".ttf");
    EXPECT_EQ(utf8(uri.getScheme()), "file");
    EXPECT_TRUE(uri.isAbsolute());
    EXPECT_TRUE(uri.isFile());
}

TEST(Uri, CharactersOfAPathMeanOnlyThemselves) {
    const KWTest::UnixPaths system;
    for (const char* path :
         {"/a#b?c%41.ttf", "/a b/%zz", "/q\"<>^`{|}", "/a;b,c=d@e&f$g!h'(i)*+",
          "/caf\xC3\xA9/\xF0\x9F\x98\x80", "/a:b/c:d", "/C:/x", "/a\\b", "/line\nend"}) {
        const UnicodeString text = UnicodeString::fromUTF8(path);
        const KWUri uri(text, URISTR_LOCAL);
        EXPECT_EQ(utf8(uri.getLocalPath()), path);
        EXPECT_EQ(KWUri(uri.getString(), URISTR_URI), uri) << path;
    }
    EXPECT_EQ(uriOf(u"/a#b?c%41.ttf"), "file:///a%23b%3Fc%2541.ttf");
}

TEST(Uri, BytesThatAreNotUtf8RoundTrip) {
    const KWTest::UnixPaths system;
    const UnicodeString path = UnicodeString(u"/f").append(char16_t(0xDCFF)).append(u"\u00E9");
    const KWUri uri(path);
    EXPECT_EQ(utf8(uri.getString()), "file:///f%FF%C3%A9");
    EXPECT_EQ(uri.getLocalPath(), path);
    EXPECT_EQ(KWUri(uri.getString()).getLocalPath(), path);
    const UnicodeString lone = UnicodeString(u"/f").append(char16_t(0xD800)); // no byte at all
    EXPECT_EQ(KWUri(lone).getLocalPath(), lone);
}

TEST(Uri, DriveFormsAreReadOnEveryPlatform) {
    for (const char16_t* text : {u"C:\\fonts\\a b.ttf", u"C:/fonts/a b.ttf", u"C:\\fonts/a b.ttf",
                                 u"C:\\\\fonts\\x\\..\\.\\a b.ttf"}) {
        const KWUri uri(text);
        EXPECT_EQ(utf8(uri.getString()), "file:///C:/fonts/a%20b.ttf");
        EXPECT_EQ(utf8(uri.getLocalPath()), "C:\\fonts\\a b.ttf");
        EXPECT_EQ(utf8(uri.getFileName()), "a b.ttf");
        EXPECT_TRUE(uri.isAbsolute());
        EXPECT_TRUE(uri.isFile());
    }
    for (const char16_t* text : {u"file:///C:/x.ttf", u"file:///C|/x.ttf", u"file://C:/x.ttf",
                                 u"file:C:/x.ttf", u"FILE:///C:\\x.ttf", u"file:/C:/x.ttf"})
        EXPECT_EQ(pathOf(text), "C:\\x.ttf");
    EXPECT_EQ(pathOf(u"C:\\x", URISTR_URL), "C:\\x");
}

TEST(Uri, ADriveAloneIsItsRoot) {
    for (const char16_t* text : {u"C:", u"C:\\", u"C:/", u"file:///C:", u"C:\\..\\.."}) {
        EXPECT_EQ(uriOf(text), "file:///C:/");
        EXPECT_EQ(pathOf(text), "C:\\");
    }
}

TEST(Uri, ALetterAndColonBeforeANameIsARelativeName) {
    const KWUri uri(u"C:x.ttf");
    EXPECT_EQ(utf8(uri.getString()), "C%3Ax.ttf");
    EXPECT_EQ(utf8(uri.getLocalPath()), "C:x.ttf");
    EXPECT_FALSE(uri.isAbsolute());
    EXPECT_TRUE(uri.isFile());
}

TEST(Uri, SharesAreHosts) {
    const KWUri uri(u"\\\\Server\\share\\a b.ttf");
    EXPECT_EQ(utf8(uri.getString()), "file://server/share/a%20b.ttf");
    EXPECT_EQ(utf8(uri.getLocalPath()), "\\\\server\\share\\a b.ttf");
    EXPECT_EQ(KWUri(u"file:////server/share/a b.ttf"), uri);
    EXPECT_EQ(KWUri(u"file://server/share/a%20b.ttf"), uri);
    EXPECT_EQ(KWUri(u"\\\\server/share\\x/../a b.ttf", URISTR_URL), uri);
    EXPECT_TRUE(uri.isAbsolute());
    EXPECT_TRUE(uri.isFile());
    EXPECT_EQ(uriOf(u"file://LocalHost/x"), "file:///x");
    EXPECT_EQ(uriOf(u"\\\\server"), "file://server/");
    EXPECT_EQ(uriOf(u"\\\\"), "file:///");
}

TEST(Uri, LongPathPrefixesComeBack) {
    for (const char16_t* text : {u"\\\\?\\C:\\a\\b#c.ttf", u"\\\\?\\UNC\\server\\share\\b.ttf"}) {
        const KWUri uri(text);
        EXPECT_EQ(uri.getLocalPath(), UnicodeString(text));
        EXPECT_EQ(KWUri(uri.getString(), URISTR_URI), uri);
        EXPECT_TRUE(uri.isAbsolute());
        EXPECT_TRUE(uri.isFile());
    }
}

TEST(Uri, BackslashIsAnOrdinaryCharacterOfAUnixPath) {
    const KWTest::UnixPaths system;
    EXPECT_EQ(uriOf(u"/a\\b"), "file:///a%5Cb");
    EXPECT_EQ(utf8(KWUri(u"/a\\b").getFileName()), "a\\b");
    EXPECT_EQ(uriOf(u"a\\b.ttf"), "a%5Cb.ttf");
}

TEST(Uri, DetectTellsPathsFromUris) {
    EXPECT_EQ(utf8(KWUri(u"http://h/x").getScheme()), "http");
    EXPECT_EQ(utf8(KWUri(u"a+b-c.9:x").getScheme()), "a+b-c.9");
    EXPECT_EQ(utf8(KWUri(u"http://h/x", URISTR_LOCAL).getScheme()), "");
    EXPECT_EQ(pathOf(u"a%20b"), "a%20b");
    EXPECT_EQ(pathOf(u"a%20b", URISTR_URI), "a b");
    EXPECT_EQ(pathOf(u"9a:b"), "9a:b"); // no scheme begins with a digit
    EXPECT_EQ(uriOf(u" fonts/a.woff\n", URISTR_URL), "fonts/a.woff");
}

TEST(Uri, UristrtypeNumbersArePartOfTheInterface) {
    EXPECT_EQ(URISTR_DETECT, 0);
    EXPECT_EQ(URISTR_LOCAL, 1);
    EXPECT_EQ(URISTR_URI, 2);
    EXPECT_EQ(URISTR_URL, 4);
}

TEST(Uri, RelativePathsAreFilesButNotAbsolute) {
    const KWTest::UnixPaths system;
    const KWUri uri(u"fonts/a.ttf");
    EXPECT_TRUE(uri.isFile());
    EXPECT_FALSE(uri.isAbsolute());
    EXPECT_EQ(utf8(uri.getLocalPath()), "fonts/a.ttf");
    EXPECT_EQ(utf8(uri.getBaseString()), "fonts/");
    EXPECT_TRUE(KWUri(u"a.ttf").getBaseString().isEmpty());
    EXPECT_EQ(uriOf(u"../a/./b/../c"), "../a/c");
    EXPECT_EQ(uriOf(u"a/.."), "./");
    EXPECT_EQ(uriOf(u".."), "../");
    EXPECT_EQ(uriOf(u"a/../../b"), "../b");
}

TEST(Uri, HttpIsNeitherFileNorChanged) {
    const KWUri uri(u"HTTP://User@EXAMPLE.com:80/a%2fb/%41.woff?q=a b#f");
    EXPECT_EQ(utf8(uri.getString()), "http://User@example.com:80/a%2Fb/A.woff?q=a%20b#f");
    EXPECT_FALSE(uri.isFile());
    EXPECT_TRUE(uri.isAbsolute());
    EXPECT_FALSE(uri.isFileExists());
    EXPECT_EQ(utf8(uri.getFileName()), "A.woff");
    EXPECT_EQ(utf8(uri.getExtension()), ".woff");
    EXPECT_EQ(utf8(uri.getBaseString()), "http://User@example.com:80/a%2Fb/");
    EXPECT_EQ(uri.getLocalPath(), uri.getString());
    EXPECT_EQ(uriOf(u"http://example.com"), "http://example.com/");
    EXPECT_EQ(uriOf(u"mailto:a/../b"), "mailto:a/../b");
}

TEST(Uri, EquivalentSpellingsAreEqual) {
    EXPECT_EQ(KWUri(u"/a/b.ttf"), KWUri(u"file:///a/b.ttf"));
    EXPECT_EQ(KWUri(u"/a//x/../b.ttf"), KWUri(u"file:/a/%62.ttf"));
    EXPECT_EQ(KWUri(u"/it's.ttf"), KWUri(u"file:///it%27s.ttf"));
    EXPECT_EQ(KWUri(u"/a:b"), KWUri(u"file:///a:b"));
    EXPECT_EQ(KWUri(u"/\u00E9"), KWUri(u"file:///%c3%a9"));
    EXPECT_EQ(KWUri(u"file:///\u00E9"), KWUri(u"file:///%C3%A9"));
    EXPECT_NE(KWUri(u"/a"), KWUri(u"/A"));
    EXPECT_NE(KWUri(u"/a"), KWUri(u"/a/"));
}

// RFC 3986, 5.4: the published examples.
TEST(Uri, ResolvesTheExamplesOfRfc3986) {
    const std::pair<const char16_t*, const char*> rows[] = {
        {u"g:h", "g:h"},
        {u"g", "http://a/b/c/g"},
        {u"./g", "http://a/b/c/g"},
        {u"g/", "http://a/b/c/g/"},
        {u"/g", "http://a/g"},
        {u"//g", "http://g/"},
        {u"?y", "http://a/b/c/d;p?y"},
        {u"g?y", "http://a/b/c/g?y"},
        {u"#s", "http://a/b/c/d;p?q#s"},
        {u"g#s", "http://a/b/c/g#s"},
        {u"g?y#s", "http://a/b/c/g?y#s"},
        {u";x", "http://a/b/c/;x"},
        {u"g;x=1/./y", "http://a/b/c/g;x=1/y"},
        {u"g;x=1/../y", "http://a/b/c/y"},
        {u".", "http://a/b/c/"},
        {u"./", "http://a/b/c/"},
        {u"..", "http://a/b/"},
        {u"../g", "http://a/b/g"},
        {u"../..", "http://a/"},
        {u"../../../g", "http://a/g"},
        {u"/../g", "http://a/g"},
        {u"g.", "http://a/b/c/g."},
        {u"..g", "http://a/b/c/..g"},
        {u"./g/.", "http://a/b/c/g/"},
        {u"g?y/../x", "http://a/b/c/g?y/../x"},
        {u"g#s/../x", "http://a/b/c/g#s/../x"},
    };
    for (const auto& [reference, expected] : rows)
        EXPECT_EQ(resolved(u"http://a/b/c/d;p?q", reference), expected);
}

TEST(Uri, ResolvesFilesAgainstFolders) {
    EXPECT_EQ(resolved(u"/etc/fonts/config.xml", u"my fonts/#1.ttf", URISTR_LOCAL),
              "file:///etc/fonts/my%20fonts/%231.ttf");
    EXPECT_EQ(resolved(u"/etc/fonts/config.xml", u"../a", URISTR_DETECT), "file:///etc/a");
    EXPECT_EQ(resolved(u"/etc/fonts/", u"/abs", URISTR_DETECT), "file:///abs");
    EXPECT_EQ(resolved(u"/etc/fonts/", u"C:\\x", URISTR_DETECT), "file:///C:/x");
    EXPECT_EQ(resolved(u"C:\\a\\b.xml", u"c\\d.ttf", URISTR_LOCAL), "file:///C:/a/c/d.ttf");
    EXPECT_EQ(resolved(u"C:\\a\\b.xml", u"..\\..\\..\\d.ttf", URISTR_LOCAL), "file:///C:/d.ttf");
    EXPECT_EQ(resolved(u"C:\\a\\b.xml", u"c\\d.ttf"), "file:///C:/a/c/d.ttf");
    EXPECT_EQ(resolved(u"\\\\server\\share\\a\\", u"..\\b", URISTR_LOCAL), "file://server/share/b");
    EXPECT_EQ(resolved(u"folder/", u"a.ttf", URISTR_LOCAL), "folder/a.ttf");
    EXPECT_EQ(resolved(u"folder/", u"../../a.ttf", URISTR_LOCAL), "../a.ttf");
    EXPECT_EQ(resolved(u"", u"a.ttf"), "a.ttf");
    EXPECT_EQ(resolved(u"data:,x", u"a.ttf"), "a.ttf");
}

TEST(Uri, ARootedPathStaysOnTheDriveOfItsBase) {
    EXPECT_EQ(resolved(u"D:\\a\\b", u"/x/y"), "file:///D:/x/y");
    EXPECT_EQ(resolved(u"D:\\a\\b", u"/C:/y"), "file:///C:/y");
    EXPECT_EQ(resolved(u"D:\\a\\b", u"//server/y"), "file://server/y");
}

TEST(Uri, ADriveRelativePathIsTakenAgainstABaseOnItsDrive) {
    EXPECT_EQ(resolved(u"D:\\conf\\x.xml", u"D:fonts", URISTR_LOCAL), "file:///D:/conf/fonts");
    EXPECT_EQ(resolved(u"D:\\conf\\x.xml", u"d:..\\fonts", URISTR_LOCAL), "file:///D:/fonts");
    for (const char16_t* base : {u"D:\\conf\\x.xml", u"\\\\server\\share\\x.xml"}) {
        const KWUri uri(u"C:fonts", KWUri(base), URISTR_LOCAL);
        EXPECT_FALSE(uri.isAbsolute());
        EXPECT_EQ(utf8(uri.getLocalPath()), "C:fonts");
    }
    EXPECT_EQ(resolved(u"/conf/x.xml", u"D:fonts", URISTR_LOCAL), "file:///conf/D%3Afonts");
}

TEST(Uri, TheShareOfAHostBelongsToTheRoot) {
    for (const char16_t* text : {u"\\x", u"/x", u"..\\..\\..\\x"})
        EXPECT_EQ(resolved(u"\\\\server\\share\\a\\", text, URISTR_LOCAL), "file://server/share/x");
    EXPECT_EQ(resolved(u"\\\\server\\share\\a\\", u"/x"), "file://server/share/x");
    EXPECT_EQ(uriOf(u"\\\\server\\share\\..\\..\\x"), "file://server/share/x");
    EXPECT_EQ(uriOf(u"\\\\server\\..\\.\\share\\x"), "file://server/share/x");
    EXPECT_EQ(uriOf(u"\\\\server\\.."), "file://server/");
    EXPECT_EQ(uriOf(u"file://server//share/../x"), "file://server/share/x");
    EXPECT_EQ(resolved(u"\\\\server\\", u"\\x", URISTR_LOCAL), "file://server/x");
}

TEST(Uri, ADriveBehindDotSegmentsIsADrive) {
    const KWTest::UnixPaths system;
    for (const char16_t* text : {u"file:///x/../C:/y", u"file:///./C:/y", u"file:///%2e/C|/y",
                                 u"file:///a/%2E%2e/c:/y", u"file:///a/..//C:/b/../y"}) {
        EXPECT_EQ(uriOf(text), "file:///C:/y");
        EXPECT_EQ(resolved(u"D:\\a\\b", text + 7), "file:///C:/y");
    }
    EXPECT_EQ(pathOf(u"/x/../C:/y"), "/C:/y") << "an ordinary name of a local path";
}

TEST(Uri, TheLetterOfADriveHasNoCase) {
    EXPECT_EQ(KWUri(u"c:\\x"), KWUri(u"C:\\x"));
    EXPECT_EQ(uriOf(u"file:///c|/x"), "file:///C:/x");
    EXPECT_EQ(pathOf(u"c:"), "C:\\");
}

TEST(Uri, DigitsOfEncodedCharactersAreUpperCaseInHostsToo) {
    EXPECT_EQ(uriOf(u"http://A%c3%A9B/x"), "http://a%C3%A9b/x");
    EXPECT_EQ(uriOf(u"\\\\\u00E9\\s"), "file://%C3%A9/s");
    EXPECT_EQ(KWUri(u"file://%c3%a9/s"), KWUri(u"\\\\\u00E9\\s"));
}

TEST(Uri, WindowsTakesBackslashesAndEncodedOnesAreNoPath) {
    WindowsSystem windows;
    EXPECT_EQ(uriOf(u"fonts\\a.ttf"), "fonts/a.ttf");
    EXPECT_EQ(pathOf(u"fonts/a.ttf"), "fonts\\a.ttf");
    EXPECT_EQ(uriOf(u"//Server/share/x"), "file://server/share/x");
    EXPECT_TRUE(KWUri(u"C:\\a b.ttf").isFileExists());
    EXPECT_EQ(windows.asked, u"C:\\a b.ttf");
    EXPECT_TRUE(KWUri(u"\\\\server\\share\\x").isFileExists());
    EXPECT_EQ(windows.asked, u"\\\\server\\share\\x");
    EXPECT_FALSE(KWUri(u"file:///C:/a%5Cb").isFileExists());
    EXPECT_FALSE(KWUri(u"file:///C:/a%2Fb").isFileExists());
    EXPECT_TRUE(KWUri::fromFileName(KWUri(u"C:\\f\\"), u"a\\b").isEmpty());
    EXPECT_EQ(utf8(KWUri::getModuleUri(u"X.dll", u"x.xml").getLocalPath()), "C:\\program\\x.xml");
}

TEST(Uri, ItsTextMakesItAgainWhenReadAsAUri) {
    for (const char16_t* text :
         {u"my fonts/a.ttf", u"C:x.ttf", u"a%20b", u"/a b", u"\\\\C:\\a", u"\\\\server\\C:\\a"}) {
        const KWUri uri(text);
        EXPECT_EQ(KWUri(uri.getString(), URISTR_URI), uri);
    }
}

TEST(Uri, FromFileNameTakesEveryCharacterAsItIs) {
    const KWTest::UnixPaths system;
    const KWUri folder(u"/fonts/");
    for (const char* name : {"a.ttf", "a b#c?d%41.ttf", "http:x", "C:x", "..a", "a\\b", "~"}) {
        const KWUri uri = KWUri::fromFileName(folder, UnicodeString::fromUTF8(name));
        EXPECT_EQ(utf8(uri.getLocalPath()), std::string("/fonts/") + name);
        EXPECT_EQ(utf8(uri.getFileName()), name);
        EXPECT_EQ(KWUri(uri.getString()), uri);
    }
    EXPECT_EQ(KWUri::fromFileName(folder, u"a.ttf"), KWUri(u"/fonts/a.ttf"));
    EXPECT_EQ(utf8(KWUri::fromFileName(KWUri(u"C:\\f\\"), u"a").getLocalPath()), "C:\\f\\a");
}

TEST(Uri, FromFileNameRefusesWhatIsNoName) {
    const KWUri folder(u"/fonts/");
    for (const char16_t* name : {u"", u".", u"..", u"a/b", u"/"})
        EXPECT_TRUE(KWUri::fromFileName(folder, name).isEmpty());
    EXPECT_TRUE(KWUri::fromFileName(KWUri(u"C:\\f\\"), u"a\\b").isEmpty());
    EXPECT_TRUE(KWUri::fromFileName(KWUri(u"http://h/"), u"a").isEmpty());
}

TEST(Uri, TheExtensionRunsFromTheLastDotOfTheName) {
    const auto extension = [](const char16_t* text) { return utf8(KWUri(text).getExtension()); };
    EXPECT_EQ(extension(u"/a/b.tar.gz"), ".gz");
    EXPECT_EQ(extension(u"/a.b/c"), "");
    EXPECT_EQ(extension(u"/a.b/"), "");
    EXPECT_EQ(extension(u"/a/.ttf"), ".ttf");
    EXPECT_EQ(extension(u"/a/b."), ".");
    EXPECT_EQ(extension(u"http://h.com/a?b.c"), "");
    EXPECT_EQ(extension(u"/a.t t"), ".t t");
}

TEST(Uri, SetExtensionReplacesAddsAndRemoves) {
    const auto with = [](const char16_t* text, const char16_t* extension) {
        KWUri uri(text);
        uri.setExtension(extension);
        return utf8(uri.getString());
    };
    EXPECT_EQ(with(u"/a/b.afm", u".pfm"), "file:///a/b.pfm");
    EXPECT_EQ(with(u"/a/b.afm", u"pfm"), "file:///a/b.pfm");
    EXPECT_EQ(with(u"/a/b.afm", u""), "file:///a/b");
    EXPECT_EQ(with(u"/a.b/c", u".ttf"), "file:///a.b/c.ttf");
    EXPECT_EQ(with(u"b.afm", u".p#/m"), "b.p%23%2Fm");
    EXPECT_EQ(with(u"http://h/a.b?q.r#s.t", u".c"), "http://h/a.c?q.r#s.t");
    EXPECT_EQ(with(u"/a.b/", u".c"), "file:///a.b/"); // no file name
    EXPECT_EQ(with(u"/a/...", u""), "file:///a/..."); // ".." is a folder
    EXPECT_EQ(with(u"/a/..b", u""), "file:///a/..b");
    EXPECT_EQ(with(u"/a/.ttf", u"."), "file:///a/.ttf");
    EXPECT_EQ(with(u"data:,a.b", u".c"), "data:,a.b");
    EXPECT_EQ(with(u"", u".c"), "");
}

TEST(Uri, ToDirectoryEndsInTheSeparator) {
    const auto directory = [](const char16_t* text, wchar_t separator) {
        UnicodeString result(text);
        KWUri::toDirectory(result, separator);
        return utf8(result);
    };
    EXPECT_EQ(directory(u"/a/b", L'/'), "/a/b/");
    EXPECT_EQ(directory(u"/a/b/", L'/'), "/a/b/");
    EXPECT_EQ(directory(u"C:\\a", L'\\'), "C:\\a\\");
    EXPECT_EQ(directory(u"C:\\a\\", L'/'), "C:\\a/");
    EXPECT_EQ(directory(u"C:/a/", L'\\'), "C:/a\\");
    EXPECT_EQ(directory(u"\\\\s\\a\\", L'/'), "\\\\s\\a/");
    EXPECT_EQ(directory(u"", L'/'), "");
    if (KWPlatform::preferredSeparator() == u'/') {
        EXPECT_EQ(directory(u"/a\\", L'/'), "/a\\/"); // the backslash belongs to the name
    }
}

TEST(Uri, ModuleUriTakesRelativePathsAgainstTheModule) {
    UnicodeString folder;
    const KWUri uri = KWUri::getModuleUri(u"KWFontService17.dll", u"font-config.xml", &folder);
    EXPECT_FALSE(folder.isEmpty());
    EXPECT_EQ(uri.getLocalPath(), folder + KWPlatform::preferredSeparator() + u"font-config.xml");
    EXPECT_TRUE(uri.isAbsolute());
    EXPECT_EQ(KWUri::getModuleUri(u"KWFontService17.dll", u"C:\\x.xml"), KWUri(u"C:\\x.xml"));
    EXPECT_EQ(KWUri::getModuleUri(u"KWFontService17.dll", u"http://h/x"), KWUri(u"http://h/x"));
    EXPECT_TRUE(KWUri::getModuleUri(u"KWFontService17.dll", u"", nullptr).isEmpty());
}

TEST(Uri, FileExistsIsTrueForRegularFilesOnly) {
    const KWTest::TempDir dir;
    const std::filesystem::path file = dir.write("a #1%41.ttf", "x");
    EXPECT_TRUE(dir.uri("a #1%41.ttf").isFileExists());
    EXPECT_TRUE(KWUri(dir.uri("a #1%41.ttf").getString(), URISTR_URI).isFileExists());
    EXPECT_FALSE(dir.uri("missing").isFileExists());
    EXPECT_FALSE(KWUri(dir.text("")).isFileExists());
    EXPECT_FALSE(KWUri(u"/dev/null").isFileExists());
    EXPECT_FALSE(KWUri(u"data:,x").isFileExists());
}

TEST(Uri, AWindowsPathIsNoFileNameElsewhere) {
    if (KWPlatform::preferredSeparator() != u'/')
        GTEST_SKIP() << "no file can have such a name here";
    const KWTest::TempDir dir;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(dir.path());
    std::ofstream("C:\\x.ttf") << "x";
    EXPECT_FALSE(KWUri(u"C:\\x.ttf").isFileExists());
    std::ofstream("relative.ttf") << "x";
    EXPECT_TRUE(KWUri(u"relative.ttf").isFileExists());
    std::filesystem::current_path(before);
}

TEST(Uri, HostileTextsGiveSomeUri) {
    const KWTest::UnixPaths system;
    for (const char16_t* text :
         {u"%",     u"%z",   u"%zz",         u"file:///%zz", u"file:///",  u"file://",
          u"file:", u"\\\\", u"//",          u"///",         u"C:",        u":",
          u"::",    u"a:",   u"http:",       u"http://",     u"#",         u"?",
          u"/..",   u"./..", u"file://[::1", u"file:////",   u"file://C|", u"http://h:x:y@z/"}) {
        for (const URISTRTYPE type : {URISTR_DETECT, URISTR_LOCAL, URISTR_URI, URISTR_URL}) {
            KWUri uri(text, type);
            uri.getBaseString();
            uri.getLocalPath();
            uri.getFileName();
            EXPECT_EQ(KWUri(uri.getString(), URISTR_URI).getString(), uri.getString())
                << utf8(text) << " " << type;
            uri.setExtension(u".x");
            EXPECT_FALSE(uri.isFileExists());
        }
    }
    EXPECT_EQ(pathOf(u"file:///%zz"), "/%zz");
}

TEST(Uri, ANulStaysInTheTextAndOpensNothing) {
    const KWTest::UnixPaths system;
    const UnicodeString text(u"/etc/passwd\0.ttf", 16);
    const KWUri uri(text);
    EXPECT_EQ(utf8(uri.getString()), "file:///etc/passwd%00.ttf");
    EXPECT_EQ(uri.getLocalPath(), text);
    EXPECT_FALSE(uri.isFileExists());
    EXPECT_EQ(uri.getIStream(), nullptr);
}

TEST(Uri, AMebibyteOfAnythingIsReadInLinearTime) {
    for (const char16_t* piece : {u"a/../", u"%", u"\u00E9"}) {
        UnicodeString text(u"/");
        while (text.length() < 1 << 20)
            text.append(piece, -1);
        const KWUri uri(text, URISTR_URI);
        EXPECT_TRUE(uri.isFile());
        EXPECT_FALSE(uri.isFileExists());
    }
}

TEST(Uri, ManyDotsBeforeAShareAreReadInLinearTime) {
    UnicodeString text(u"file://server");
    while (text.length() < 1 << 20)
        text.append(u"/..//.", -1);
    EXPECT_EQ(uriOf(text + u"/share/../x", URISTR_URI), "file://server/share/x");
}

TEST(Uri, CopiesMovesAndCompares) {
    KWUri uri(u"/a/b");
    KWUri copy(uri);
    EXPECT_EQ(copy, uri);
    const KWUri moved(std::move(copy));
    EXPECT_EQ(moved, uri);
    KWUri assigned;
    assigned = uri;
    EXPECT_EQ(assigned, uri);
    assigned = KWUri(u"/c");
    EXPECT_NE(assigned, uri);
}
