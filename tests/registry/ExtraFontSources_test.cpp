#include "fonts/FaceFixture.h"
#include "registry/ExtraFontFixture.h"
#include "support/WoffFile.h"

#include <KWCommon15/KWMemStream.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

// Fonts that a host's fetcher brings, in all the ways that a fetcher can go wrong.

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

constexpr std::string_view kUrl = "https://fonts.test/a.ttf";
const icu::UnicodeString kPath(u"https://fonts.test/a.ttf");

/// A stream over bytes that may not be seekable, deliver one byte at a time, throw, or become
/// others.
class OddBuf : public std::streambuf {
public:
    explicit OddBuf(std::string bytes) : bytes_(std::move(bytes)) {}

    bool seekable = true;
    std::size_t throwsAt = std::string::npos; ///< this byte and those behind it
    std::size_t changesAfter = std::string::npos;
    std::string changed; ///< what the bytes are once that many were read

protected:
    int_type underflow() override {
        if (read_ >= changesAfter)
            bytes_ = changed;
        if (at_ >= throwsAt)
            throw std::runtime_error("connection lost");
        if (at_ >= bytes_.size())
            return traits_type::eof();
        byte_ = bytes_[at_++];
        ++read_;
        setg(&byte_, &byte_, &byte_ + 1);
        return traits_type::to_int_type(byte_);
    }
    pos_type seekoff(off_type offset, std::ios_base::seekdir way,
                     std::ios_base::openmode) override {
        if (!seekable)
            return pos_type(off_type(-1));
        const auto buffered = static_cast<std::size_t>(egptr() - gptr());
        if (way == std::ios_base::cur)
            offset += static_cast<off_type>(at_ - buffered);
        else if (way == std::ios_base::end)
            offset += static_cast<off_type>(bytes_.size());
        if (offset < 0)
            return pos_type(off_type(-1));
        at_ = static_cast<std::size_t>(offset);
        setg(nullptr, nullptr, nullptr);
        return pos_type(offset);
    }
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override {
        return seekoff(off_type(position), std::ios_base::beg, which);
    }

private:
    std::string bytes_;
    std::size_t at_ = 0;
    std::size_t read_ = 0;
    char byte_ = 0;
};

class OddStream : public std::istream {
public:
    explicit OddStream(const Bytes& file) : std::istream(nullptr), odd(file.str()) { init(&odd); }
    OddStream(const OddStream&) = delete;
    OddStream& operator=(const OddStream&) = delete;
    ~OddStream() override {
        if (alive != nullptr)
            --*alive;
    }

    OddBuf odd;
    int* alive = nullptr;
};

class FetchedFonts : public ExtraFontTest {
protected:
    using Make = std::function<std::unique_ptr<OddStream>()>;

    /// Every URL is a stream of `make`, of a media type, and counted.
    void serve(const Make& make, const Text& mediaType = Text()) {
        KWCommonNS::KWUri::setFetcher(
            [this, make, mediaType](const KWUri&, KWUri::ContentInfo& info, UnicodeString&) {
                ++fetches;
                info.mediaType = mediaType;
                std::unique_ptr<OddStream> stream = make();
                if (stream) {
                    ++alive;
                    stream->alive = &alive;
                }
                return stream;
            });
    }
    static Make of(const Bytes& file) {
        return [file] { return std::make_unique<OddStream>(file); };
    }
    /// An append that must fail in some reader, whatever it says.
    void expectUnreadable(std::string_view url, const std::string& what) {
        EXPECT_EQ(append(url, u"Family"), -1) << what;
        EXPECT_TRUE(error.isError()) << what;
        EXPECT_NE(error.getCode(), FS_ERROR_FONT_FACE_OPEN) << what;
        expectNothingAppended();
        EXPECT_EQ(alive, 0) << "the stream is destroyed";
    }

    int fetches = 0;
    int alive = 0;
};

TEST_F(FetchedFonts, AreReadThroughTheFetcherOnceAndTheirStreamIsDestroyed) {
    serve(of(TestFont::latin().build()));
    ASSERT_EQ(append(kUrl, u"Family"), 0);
    EXPECT_EQ(append(kUrl, u"Other"), 0);
    EXPECT_EQ(find(u"Other")->getGlyphID('A', false, 0), TestFont::kA);
    EXPECT_EQ(fetches, 1);
    EXPECT_EQ(alive, 0);
    EXPECT_EQ(find(u"a.ttf"), at(0));
}

TEST_F(FetchedFonts, AMediaTypeOfTheFetcherCountsInAnyCase) {
    serve(of(TestFont::openType().build()), u" Application/Font-OTF ");
    ASSERT_EQ(append("https://fonts.test/font?id=7", u"Family"), 0);
    EXPECT_EQ(at(0)->getFontFileType2(0), FS_FILETYPE_OPENTYPE);
}

TEST_F(FetchedFonts, AStreamThatCannotSeekIsReadToo) {
    for (const Bytes& file :
         {TestFont::latin().build(), WoffFile::of(TestFont::latin().build()).build()}) {
        Manager manager;
        serve([&file] {
            auto stream = std::make_unique<OddStream>(file);
            stream->odd.seekable = false;
            return stream;
        });
        const bool woff = file.str().starts_with("wOFF");
        ASSERT_EQ(append(manager, woff ? "https://fonts.test/a.woff" : kUrl, u"Family"), 0);
        EXPECT_EQ(find(manager, u"Family")->getGlyphID('A', false, 0), TestFont::kA);
        EXPECT_EQ(alive, 0);
    }
}

TEST_F(FetchedFonts, AFetcherThatAnswersNothingIs1931) {
    serve([] { return nullptr; });
    expectRefusal(append(kUrl, u"Family"), 1931, u"Cannot open font-face font.\n" + kPath);
}

TEST_F(FetchedFonts, AFetcherThatThrowsIs1931WhateverItThrows) {
    const std::function<void()> throwers[] = {
        [] { throw std::runtime_error("no network"); },
        [] { throw 42; },
        [] { throw std::bad_alloc(); },
        [] { throw KWError(4711, u"of the host"); },
    };
    for (const auto& thrower : throwers) {
        serve([&thrower]() -> std::unique_ptr<OddStream> {
            thrower();
            return nullptr;
        });
        expectRefusal(append(kUrl, u"Family"), 1931, u"Cannot open font-face font.\n" + kPath);
    }
    serve(of(TestFont::latin().build()));
    EXPECT_EQ(append(kUrl, u"Family"), 0) << "and the lock is free again";
}

TEST_F(FetchedFonts, AStreamThatAnswersAPartIsRefusedByTheReaders) {
    const Bytes whole = TestFont::latin().build();
    const Bytes packed = WoffFile::of(whole).build();
    for (std::size_t part = 0; part < 8; ++part) {
        Bytes half = whole;
        half.truncate(whole.size() * part / 8);
        serve(of(half));
        expectUnreadable(kUrl, "sfnt " + std::to_string(part));
        half = packed;
        half.truncate(packed.size() * part / 8);
        serve(of(half));
        expectUnreadable("https://fonts.test/a.woff", "WOFF " + std::to_string(part));
    }
}

TEST_F(FetchedFonts, AStreamThatThrowsOnTheWayIsAsOneThatEndsThere) {
    const Bytes whole = TestFont::latin().build();
    for (std::size_t part = 0; part < 8; ++part) {
        serve([&whole, part] {
            auto stream = std::make_unique<OddStream>(whole);
            stream->odd.throwsAt = whole.size() * part / 8;
            return stream;
        });
        expectUnreadable(kUrl, std::to_string(part));
    }
}

TEST_F(FetchedFonts, AStreamWhoseStateThrowsIsRead) {
    serve([] {
        auto stream = std::make_unique<OddStream>(TestFont::latin().build());
        stream->exceptions(std::ios::failbit | std::ios::badbit | std::ios::eofbit);
        return stream;
    });
    EXPECT_EQ(append(kUrl, u"Family"), 0);
}

TEST_F(FetchedFonts, AFontThatChangesWhileItIsReadIsTakenOrRefusedAndNothingWorse) {
    const std::string before = TestFont::latin().build().str();
    const std::string others[] = {
        std::string(),
        std::string(before.size(), '\0'),
        std::string(before.size(), '\xFF'),
        before.substr(0, before.size() / 2),
        TestFont::vertical().build().str(),
        TestFont::openType().build().str(),
        collectionOf({firstFace(), secondFace()}).build().str(),
    };
    int taken = 0;
    int refused = 0;
    for (const std::string& other : others) {
        for (std::size_t after = 0; after <= before.size(); after += 37) {
            serve([&, after] {
                auto stream = std::make_unique<OddStream>(Bytes::ofText(before));
                stream->odd.changesAfter = after;
                stream->odd.changed = other;
                return stream;
            });
            Manager manager;
            const int index = append(manager, kUrl, u"Family");
            EXPECT_EQ(index >= 0 ? 0 : 1, manager.getFontsCount() == 1 ? 0 : 1);
            EXPECT_EQ(alive, 0);
            if (index < 0) {
                EXPECT_TRUE(error.isError());
                ++refused;
                continue;
            }
            ++taken;
            FS_FontInfo font;
            ASSERT_TRUE(font.createFont(u"Family", 0, false, manager.getExtraFonts(), false));
            for (unsigned short gid = 0; gid < 10; ++gid)
                font.getGlyphWidth(gid, -12, false);
            font.getGlyphID('A', true);
        }
    }
    EXPECT_GT(taken, 0);
    EXPECT_GT(refused, 0);
}

TEST_F(FetchedFonts, AFontThatChangedSinceIsEmbeddedAsItIsNowOrNotAtAll) {
    // The glyphs are read anew for embedding.
    serve(of(TestFont::latin().build()));
    ASSERT_EQ(append(kUrl, u"Family"), 0);
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Family", 0, false, fonts.getExtraFonts(), false));
    KWCommonNS::KWMemStream subset;
    EXPECT_TRUE(font.getEmbedFont({TestFont::kA}, subset));
    serve([] { return nullptr; });
    KWCommonNS::KWMemStream none;
    EXPECT_FALSE(font.getEmbedFont({TestFont::kA}, none));
    for (const Bytes& other : {Bytes(), TestFont::openType().build(), TestFont::vertical().build(),
                               Bytes().fill(4000, 0xFF)}) {
        serve(of(other));
        KWCommonNS::KWMemStream output;
        font.getEmbedFont({TestFont::kA, TestFont::kAacute}, output);
        EXPECT_EQ(font.getGlyphID('A', false), TestFont::kA) << "what was read stays";
        EXPECT_EQ(alive, 0);
    }
}

TEST_F(FetchedFonts, AWoffFileIsEmbeddedFromWhatWasUnpackedAndFetchedOnce) {
    serve(of(WoffFile::of(TestFont::latin().build()).build()));
    ASSERT_EQ(append("https://fonts.test/a.woff", u"Family"), 0);
    serve([] { return nullptr; });
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Family", 0, false, fonts.getExtraFonts(), false));
    KWCommonNS::KWMemStream subset;
    EXPECT_TRUE(font.getEmbedFont({TestFont::kA}, subset));
    EXPECT_EQ(fetches, 1);
}

TEST_F(FetchedFonts, AFetcherMayAppendToTheSameDocument) {
    KWUri::setFetcher([this](const KWUri& uri, KWUri::ContentInfo&, UnicodeString&) {
        if (uri.getFileName() == u"outer.ttf") {
            EXPECT_EQ(append("https://fonts.test/inner.ttf", u"Inner"), 0);
        }
        return std::make_unique<OddStream>(TestFont::latin().build());
    });
    EXPECT_EQ(append("https://fonts.test/outer.ttf", u"Outer"), 1);
    EXPECT_EQ(find(u"Inner"), at(0));
    EXPECT_EQ(find(u"Outer"), at(1));
}

TEST_F(FetchedFonts, AFetcherMayAppendTheSameUrl) {
    KWUri::setFetcher([this](const KWUri&, KWUri::ContentInfo&, UnicodeString&) {
        if (fetches++ == 0) {
            EXPECT_EQ(append(kUrl, u"Inner"), 0);
        }
        return std::make_unique<OddStream>(TestFont::latin().build());
    });
    EXPECT_EQ(append(kUrl, u"Outer"), 0);
    EXPECT_EQ(fonts.getFontsCount(), 1);
    EXPECT_EQ(find(u"Inner"), at(0));
    EXPECT_EQ(find(u"Outer"), at(0));
}

TEST_F(FetchedFonts, AFetcherMayTakeTheSetFromItsManager) {
    KWUri::setFetcher([this](const KWUri&, KWUri::ContentInfo&, UnicodeString&) {
        fonts = Manager();
        return std::make_unique<OddStream>(TestFont::latin().build());
    });
    EXPECT_EQ(append(kUrl, u"Family"), 0) << "in the set that it was called for";
    EXPECT_EQ(fonts.getFontsCount(), 0);
}

} // namespace
