#include "KWCommon15/KWUri.h"

#include "KWCommon15/KWMemStream.h"
#include "SourceDoubles.h"
#include "common/UriText.h"
#include "platform/Platform.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <istream>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace KWCommonNS;

namespace {

std::string utf8(const UnicodeString& text) {
    std::string bytes;
    return text.toUTF8String(bytes);
}

struct Fetched {
    std::optional<std::string> bytes;
    KWUri::ContentInfo info;
    UnicodeString error;
};

Fetched fetch(const KWUri& uri) {
    Fetched result;
    const std::unique_ptr<std::istream> stream(uri.getIStream(&result.info, &result.error));
    if (stream != nullptr)
        result.bytes.emplace(std::istreambuf_iterator<char>(*stream),
                             std::istreambuf_iterator<char>());
    return result;
}

Fetched fetch(const char* uri) {
    return fetch(KWUri(UnicodeString::fromUTF8(uri)));
}

struct FetcherTest : testing::Test {
    ~FetcherTest() override { KWUri::setFetcher(nullptr); }
    const KWUri uri{u"http://example.com/a.woff"};
};

} // namespace

TEST(UriStream, ReadsAFileWhereItIsAsked) {
    const KWTest::TempDir dir;
    const std::string bytes = KWTest::patternBytes(100000);
    dir.write("a b.ttf", bytes);
    KWUri::ContentInfo info;
    info.mediaType = u"stale";
    const std::unique_ptr<std::istream> stream(dir.uri("a b.ttf").getIStream(&info));
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(KWTest::readAt(*stream, 99990, 100), bytes.substr(99990));
    EXPECT_EQ(KWTest::readAt(*stream, 5, 100), bytes.substr(5, 100));
    EXPECT_EQ(KWTest::readAt(*stream, 0, 100000), bytes);
    EXPECT_TRUE(info.mediaType.isEmpty()); // not known for files
}

TEST(UriStream, OpensNamesThatAreNotUtf8) {
    if (KWPlatform::preferredSeparator() != u'/')
        GTEST_SKIP() << "names are UTF-16 here";
    const KWTest::TempDir dir;
    const std::filesystem::path path = dir.path() / "f\xFF.ttf";
    dir.write("plain", "bytes");
    std::filesystem::rename(dir.path("plain"), path);
    const KWUri folder(dir.text("") + u"/");
    const UnicodeString name = UnicodeString(u"f").append(char16_t(0xDCFF)).append(u".ttf");
    EXPECT_EQ(fetch(KWUri::fromFileName(folder, name)).bytes, "bytes");
}

TEST(UriStream, WhatIsNoRegularFileGivesNullAndAReason) {
    const KWTest::TempDir dir;
    for (const KWUri& uri : {KWUri(), KWUri(dir.text("missing")), KWUri(dir.text("")),
                             KWUri(u"/dev/zero"), KWUri(u"C:\\x"), KWUri(u"\\\\server\\x")}) {
        const Fetched result = fetch(uri);
        EXPECT_FALSE(result.bytes);
        EXPECT_FALSE(result.error.isEmpty());
        EXPECT_EQ(uri.getIStream(), nullptr); // both arguments may be null
    }
}

TEST(UriStream, AnEncodedSeparatorIsNoPath) {
    const KWTest::TempDir dir;
    dir.makeFolder("folder");
    dir.write("folder/a", "bytes");
    const UnicodeString folder = dir.uri("folder").getString();
    EXPECT_EQ(fetch(KWUri(folder + u"/a", URISTR_URI)).bytes, "bytes");
    for (const char16_t* name : {u"%2Fa", u"%2fa"}) {
        const KWUri uri(folder + name, URISTR_URI);
        EXPECT_FALSE(uri.isFileExists());
        EXPECT_FALSE(fetch(uri).bytes);
        EXPECT_FALSE(fetch(uri).error.isEmpty());
    }
}

TEST(UriStream, AFileThatShrinksWhileOpenGivesShortReads) {
    const KWTest::TempDir dir;
    const auto path = dir.write("a", std::string(50000, 'x'));
    const std::unique_ptr<std::istream> stream(dir.uri("a").getIStream());
    std::filesystem::resize_file(path, 10);
    EXPECT_EQ(KWTest::readAt(*stream, 0, 50000), std::string(10, 'x'));
    EXPECT_EQ(KWTest::readAt(*stream, 100, 1), "");
}

TEST(DataUri, IsNoFile) {
    const KWUri uri(u"DATA:Font/WOFF;base64,AAEC");
    EXPECT_TRUE(uri.isDataScheme());
    EXPECT_TRUE(uri.isAbsolute());
    EXPECT_FALSE(uri.isFile());
    EXPECT_EQ(utf8(uri.getLocalPath()), "data:Font/WOFF;base64");
    EXPECT_TRUE(uri.getFileName().isEmpty());
    EXPECT_TRUE(uri.getBaseString().isEmpty());
    EXPECT_FALSE(KWUri(u"data:x", URISTR_LOCAL).isDataScheme());
    EXPECT_FALSE(KWUri(u"data/x").isDataScheme());
}

TEST(DataUri, DecodesBase64AndPercentBodies) {
    EXPECT_EQ(fetch("data:font/woff;base64,AAECA//+").bytes, std::string("\0\1\2\3\xFF\xFE", 6));
    EXPECT_EQ(fetch("data:;base64,QUI=").bytes, "AB");
    EXPECT_EQ(fetch("data:;base64,QUI").bytes, "AB"); // padding may be missing
    EXPECT_EQ(fetch("data:;base64,QQ==").bytes, "A");
    EXPECT_EQ(fetch("data:;base64,Q%55 J\nD").bytes, "ABC");
    EXPECT_EQ(fetch("data:;base64,").bytes, "");
    EXPECT_EQ(fetch("data:,a%20b%00%ffc").bytes, std::string("a b\0\xFF"
                                                             "c",
                                                             6));
    EXPECT_EQ(fetch("data:,%zz%4").bytes, "%zz%4");
    EXPECT_EQ(fetch("data:,\xC3\xA9").bytes, "\xC3\xA9");
    EXPECT_EQ(fetch("data:,a,b;c#fragment").bytes, "a,b;c");
    EXPECT_EQ(fetch("data:,").bytes, "");
}

TEST(DataUri, ALoneSurrogateSpoilsOnlyItself) {
    const UnicodeString text =
        UnicodeString(u"data:,abc").append(char16_t(0xD800)).append(u"d\u00E9%41");
    EXPECT_EQ(fetch(KWUri(text)).bytes, "abc\xEF\xBF\xBD"
                                        "d\xC3\xA9"
                                        "A");
}

TEST(DataUri, DamagedOnesGiveNullAndAReason) {
    for (const char* text :
         {"data:", "data:text/plain", "data:;base64", "data:;base64,A", "data:;base64,QUJDR",
          "data:;base64,Q=UI", "data:;base64,QUI==", "data:;base64,QUJD=", "data:;base64,Q!",
          "data:;base64,QUJ\xC3\xA9", "data:;base64,Q-_A"}) {
        const Fetched result = fetch(text);
        EXPECT_FALSE(result.bytes) << text;
        EXPECT_FALSE(result.error.isEmpty());
        EXPECT_TRUE(result.info.mediaType.isEmpty());
    }
}

TEST(DataUri, TellsMediaTypeAndCharset) {
    struct Row {
        const char *uri, *mediaType, *charset;
    };
    for (const Row& row : {
             Row{"data:Application/Font-WOFF;base64,AA==", "application/font-woff", ""},
             Row{"data:text/xml;charset=Shift_JIS,x", "text/xml", "Shift_JIS"},
             Row{"data:text/xml;a=b;CharSet=\"utf-8\";c;base64,AA==", "text/xml", "utf-8"},
             Row{"data:text%2Fxml%3Bcharset=x,y", "text/xml", "x"},
             Row{"data:,x", "text/plain", "US-ASCII"},
             Row{"data:;charset=utf-8,x", "text/plain", "utf-8"},
             Row{"data:nonsense,x", "text/plain", "US-ASCII"},
             Row{"data:base64,AA==", "text/plain", "US-ASCII"},
         }) {
        const Fetched result = fetch(row.uri);
        EXPECT_TRUE(result.bytes) << row.uri;
        EXPECT_EQ(utf8(result.info.mediaType), row.mediaType) << row.uri;
        EXPECT_EQ(utf8(result.info.charset), row.charset) << row.uri;
    }
    EXPECT_EQ(fetch("data:base64,AA==").bytes, "AA==");
    EXPECT_EQ(fetch("data:x/y;base64;a=b,AA==").bytes, "AA=="); // not the last one
}

TEST(DataUri, ItsStreamSeeks) {
    const std::unique_ptr<std::istream> stream(KWUri(u"data:,0123456789").getIStream());
    EXPECT_EQ(KWTest::readAt(*stream, 7, 10), "789");
    EXPECT_EQ(KWTest::readAt(*stream, 0, 2), "01");
}

TEST(Base64, DecodesEveryByteValue) {
    // 0x00 to 0xFF in steps of 0x55, in all positions of a group
    EXPECT_EQ(decodeBase64("AFWq/w=="), std::string("\x00\x55\xAA\xFF", 4));
    EXPECT_EQ(decodeBase64("+/+/"), std::string("\xFB\xFF\xBF", 3));
    EXPECT_EQ(decodeBase64("===="), std::nullopt);
    EXPECT_EQ(decodeBase64(" \t\r\n\f"), "");
}

TEST_F(FetcherTest, ThereIsNoneAtFirst) {
    const Fetched result = fetch(uri);
    EXPECT_FALSE(result.bytes);
    EXPECT_FALSE(result.error.isEmpty());
}

TEST_F(FetcherTest, IsAskedForSchemesOtherThanFileAndData) {
    int calls = 0;
    KWUri::setFetcher([&](const KWUri& asked, KWUri::ContentInfo& info, UnicodeString&) {
        ++calls;
        EXPECT_EQ(asked, uri);
        info.mediaType = u" Font/WOFF ";
        info.charset = u"x";
        return std::make_unique<std::istringstream>("bytes");
    });
    const Fetched result = fetch(uri);
    EXPECT_EQ(result.bytes, "bytes");
    EXPECT_EQ(utf8(result.info.mediaType), "font/woff");
    EXPECT_EQ(utf8(result.info.charset), "x");
    fetch("data:,x");
    fetch("/missing");
    EXPECT_EQ(calls, 1);
    KWUri::setFetcher(nullptr);
    EXPECT_FALSE(fetch(uri).bytes);
}

TEST_F(FetcherTest, MayFailWithAReasonOrThrow) {
    KWUri::setFetcher([](const KWUri&, KWUri::ContentInfo&, UnicodeString& error) {
        error = u"offline";
        return nullptr;
    });
    EXPECT_EQ(utf8(fetch(uri).error), "offline");
    KWUri::setFetcher(
        [](const KWUri&, KWUri::ContentInfo&, UnicodeString&) -> std::unique_ptr<std::istream> {
            throw std::runtime_error("broken");
        });
    EXPECT_THROW(fetch(uri), std::runtime_error);
}

TEST_F(FetcherTest, MayBeChangedWhileOthersFetch) {
    const KWUri::Fetcher fetcher = [](const KWUri&, KWUri::ContentInfo&, UnicodeString&) {
        return std::make_unique<std::istringstream>("x");
    };
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([this] {
            for (int i = 0; i < 200; ++i)
                fetch(uri);
        });
    }
    for (int i = 0; i < 200; ++i)
        KWUri::setFetcher(i % 2 == 0 ? fetcher : KWUri::Fetcher());
    for (std::thread& thread : threads)
        thread.join();
}

TEST(ContentInfo, IsCopiedFromAPointer) {
    KWUri::ContentInfo info;
    info.mediaType = u"a/b";
    info.charset = u"c";
    const KWUri::ContentInfo copy(&info);
    EXPECT_EQ(copy.mediaType, info.mediaType);
    EXPECT_EQ(copy.charset, info.charset);
    const KWUri::ContentInfo empty(static_cast<const KWUri::ContentInfo*>(nullptr));
    EXPECT_TRUE(empty.mediaType.isEmpty());
    EXPECT_TRUE(empty.charset.isEmpty());
}
