#include "LayoutComparison.h"
#include "LayoutParser.h"
#include "LayoutWriter.h"
#include "RandomLayout.h"

#include "fonts/SfntFixture.h"
#include "support/SfntBuilder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>

namespace KWTest::oracle {
namespace {

/// For longer runs by hand: how many fonts, and the first of them.
int setting(const char* name, int otherwise) {
    const char* const value = std::getenv(name);
    return value == nullptr ? otherwise : std::atoi(value);
}
int fontCount() {
    return setting("KW_ORACLE_FONTS", 30);
}
int firstSeed() {
    return setting("KW_ORACLE_SEED", 1);
}

constexpr int kMaxReports = 3;
constexpr int kLongest = 12;

/// A random font, open in the library and in the oracle.
class Opened {
public:
    explicit Opened(int seed)
        : rng(static_cast<std::uint64_t>(seed)), font(randomFont(rng)), bytes(writeFont(font, rng)),
          library_(bytes) {
        loaded = library_.scanAndLoad();
    }
    LayoutComparison comparison(std::string_view script, std::string_view language = {}) {
        const Tag languageTag = language.empty() ? 0 : tagValue(language);
        return LayoutComparison(font,
                                LayoutComparison::LibraryHandle(
                                    library_->getGSUBGPOSInfo(tagValue(script), languageTag, 0)),
                                tagValue(script), languageTag);
    }

    Rng rng;
    Font font;
    Bytes bytes;
    bool loaded = false;

private:
    MemoryFont<> library_;
};

class RandomLayout : public testing::Test {
protected:
    void TearDown() override {
        EXPECT_LE(undefined_ * 20, cases_) << "the generator asks too much that has no answer";
        RecordProperty("cases", cases_);
    }

    /// Opens the fonts one after the other and hands them on.
    template <class Ask>
    void forEachFont(Ask ask) {
        const int end = firstSeed() + fontCount();
        for (seed_ = firstSeed(); seed_ < end && reports_ < kMaxReports; ++seed_) {
            Opened opened(seed_);
            ASSERT_TRUE(opened.loaded) << "seed " << seed_;
            ask(opened);
        }
    }

    /// Checks one case with random glyphs for the lookups that it brings.
    void check(LayoutComparison& comparison, Case asked, Opened& opened) {
        if (reports_ == kMaxReports)
            return;
        Rng& rng = opened.rng;
        RandomRuns runs(opened.font, alphabet_, rng);
        asked.line = runs.line(comparison.lookupsOf(asked), kLongest);
        if (asked.call == Case::Call::ProcessGSUB3)
            asked.words = runs.words(asked.line.size());
        if (asked.byFeature()) {
            const auto size = static_cast<std::uint32_t>(asked.line.size());
            asked.index = static_cast<int>(rng.below(size + (rng.chance(10) ? 1 : 0) + 1));
            asked.index = std::min(asked.index, static_cast<int>(size));
        }
        asked.alternate = static_cast<int>(rng.below(4));
        asked.rtl = rng.chance(2);
        const std::string difference = comparison.check(asked);
        if (!difference.empty()) {
            ++reports_;
            ADD_FAILURE() << "seed " << seed_ << ": " << difference;
        }
    }

    void take(const LayoutComparison& comparison) {
        cases_ += comparison.counts().cases;
        undefined_ += comparison.counts().undefined;
        for (const auto& [type, number] : comparison.counts().applied)
            applied_[type] += number;
    }
    /// Otherwise the equal answers might all be "nothing".
    void expectApplied(Kind kind, std::initializer_list<int> types) const {
        for (const int type : types) {
            const auto found = applied_.find({kind, type});
            EXPECT_GT(found == applied_.end() ? 0 : found->second, 4 * fontCount())
                << "lookups of type " << type << " that did something";
        }
    }

    int reports_ = 0;

private:
    const std::vector<Glyph> alphabet_{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    int seed_ = 0;
    int cases_ = 0;
    int undefined_ = 0;
    std::map<std::pair<Kind, int>, int> applied_{};
};

TEST_F(RandomLayout, TheBytesSayWhatTheModelSays) {
    forEachFont([](Opened& opened) { EXPECT_TRUE(parseFont(opened.bytes) == opened.font); });
}

TEST_F(RandomLayout, LookupsSubstituteInWholeRuns) {
    forEachFont([this](Opened& opened) {
        for (const char* const language : {"", "TRK ", "JAN "}) {
            LayoutComparison comparison = opened.comparison("latn", language);
            const int size = comparison.orderSize(Kind::Gsub);
            for (int index = -1; index <= size; ++index) {
                for (int i = 0; i < 8; ++i)
                    check(comparison, {.call = Case::Call::ProcessGSUB3, .index = index}, opened);
            }
            take(comparison);
        }
    });
    expectApplied(Kind::Gsub, {1, 2, 3, 4, 5, 6, 8});
}

TEST_F(RandomLayout, FeaturesSubstituteAtOnePlace) {
    forEachFont([this](Opened& opened) {
        LayoutComparison comparison = opened.comparison("latn");
        for (const Tag tag : comparison.features(Kind::Gsub)) {
            for (int i = 0; i < 12; ++i)
                check(comparison, {.call = Case::Call::ProcessGSUB, .tag = tag}, opened);
        }
        take(comparison);
    });
    expectApplied(Kind::Gsub, {1, 2, 3, 4, 5, 6});
}

TEST_F(RandomLayout, LookupsPositionWholeRuns) {
    forEachFont([this](Opened& opened) {
        for (const char* const language : {"", "TRK "}) {
            LayoutComparison comparison = opened.comparison("latn", language);
            const int size = comparison.orderSize(Kind::Gpos);
            for (int index = -1; index <= size; ++index) {
                for (int i = 0; i < 12; ++i)
                    check(comparison, {.call = Case::Call::ProcessGPOS3, .index = index}, opened);
            }
            take(comparison);
        }
    });
    expectApplied(Kind::Gpos, {1, 2, 3, 4, 5, 6, 7, 8});
}

TEST_F(RandomLayout, FeaturesPositionAtOnePlaceInTheOrderOfTheScript) {
    forEachFont([this](Opened& opened) {
        for (const char* const script : {"arab", "hebr", "latn", "DFLT"}) {
            LayoutComparison comparison = opened.comparison(script);
            std::vector<Tag> tags = comparison.features(Kind::Gpos);
            tags.push_back(tagValue("none"));
            for (const Tag tag : tags) {
                for (int i = 0; i < 5; ++i)
                    check(comparison, {.call = Case::Call::ProcessGPOS, .tag = tag}, opened);
            }
            take(comparison);
        }
    });
    expectApplied(Kind::Gpos, {1, 2, 3, 4, 5, 6, 7, 8});
}

} // namespace
} // namespace KWTest::oracle
