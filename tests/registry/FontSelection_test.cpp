#include "registry/FontSelection.h"

#include "registry/FakeFont.h"
#include "registry/SelectionOracle.h"
#include "support/Rng.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <initializer_list>
#include <iterator>
#include <span>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace KWFontService_NS;
using KWTest::FakeFont;
using KWTest::Rng;
using KWTest::SelectionOracle;

constexpr FS_FontKey upright(int weight, int stretch = 5) {
    return {weight, false, stretch};
}
constexpr FS_FontKey italic(int weight, int stretch = 5) {
    return {weight, true, stretch};
}

/// As in "700 italic, stretch 3".
std::string nameOf(const FS_FontKey& style) {
    std::string name = std::to_string(style.weight);
    if (style.italic)
        name += " italic";
    if (style.stretch != 5)
        name += ", stretch " + std::to_string(style.stretch);
    return name;
}

/// Faces are told apart by their index; selection never looks into a font.
FS_FontRef faceRef(std::size_t index) {
    static const KWPtr<FakeFont> font(new FakeFont);
    return {font.get(), static_cast<std::int16_t>(index)};
}

FS_FontFamilyMap familyOf(std::span<const FS_FontKey> styles) {
    FS_FontFamilyMap family;
    for (std::size_t i = 0; i < styles.size(); ++i)
        family.emplace(styles[i], faceRef(i));
    return family;
}

/// A family whose faces bear their own style as a name.
class Family {
public:
    Family(std::initializer_list<FS_FontKey> styles) : styles_(styles), map_(familyOf(styles_)) {}

    std::string faceFor(const FS_FontKey& request) { return nameOf(selectFont(map_, request)); }
    /// What is remembered for a style; "nothing" when it has no entry.
    std::string entry(const FS_FontKey& style) const {
        const auto found = map_.find(style);
        return found == map_.end() ? "nothing" : nameOf(found->second);
    }
    /// The faces and all fills.
    const FS_FontFamilyMap& entries() const { return map_; }

private:
    std::string nameOf(const FS_FontRef& ref) const {
        return ref ? ::nameOf(styles_.at(static_cast<std::size_t>(ref.face))) : "nothing";
    }

    std::vector<FS_FontKey> styles_;
    FS_FontFamilyMap map_;
};

/// The weights 100 to 900 at stretch 5, upright and italic: what a family has once it is filled.
constexpr std::size_t kFilledStyles = 18;

// --- a family of 400 and 700 ------------------------------------------------------------------

TEST(SelectFont, AFamilyOf400And700AnswersEveryOtherWeight) {
    const std::pair<int, const char*> answers[] = {
        {100, "400"}, {200, "400"}, {300, "400"}, {400, "400"}, {500, "400"},
        {600, "700"}, {700, "700"}, {800, "700"}, {900, "700"},
    };
    for (const auto& [weight, face] : answers) {
        Family fresh{upright(400), upright(700)};
        EXPECT_EQ(fresh.faceFor(upright(weight)), face) << weight;
    }
}

TEST(SelectFont, Weight450CountsAs500AndWeight650As700) {
    EXPECT_EQ((Family{upright(400), upright(700)}.faceFor(upright(450))), "400");
    EXPECT_EQ((Family{upright(400), upright(700)}.faceFor(upright(650))), "700");
}

TEST(SelectFont, Italic700OfAnUprightFamilyIsTheUpright700AndFillsNothing) {
    Family family{upright(400), upright(700)};
    EXPECT_EQ(family.faceFor(italic(700)), "700");
    EXPECT_EQ(family.entries().size(), 2U);
}

// --- families of one face ---------------------------------------------------------------------

TEST(SelectFont, AFamilyOfOne700FaceGivesItForWeight100) {
    EXPECT_EQ(Family{upright(700)}.faceFor(upright(100)), "700");
}

TEST(SelectFont, AFamilyOfOneItalicFaceGivesItForAnUprightRequest) {
    EXPECT_EQ(Family{italic(400)}.faceFor(upright(400)), "400 italic");
    EXPECT_EQ(Family{italic(400)}.faceFor(upright(900)), "400 italic");
}

TEST(SelectFont, AFaceOfStretch3AnswersStretch5AndIsStoredUnderIt) {
    Family family{upright(400, 3)};
    EXPECT_EQ(family.faceFor(upright(400)), "400, stretch 3");
    EXPECT_EQ(family.entry(upright(400)), "400, stretch 3");
    EXPECT_EQ(family.entry(upright(400, 3)), "400, stretch 3");
    EXPECT_EQ(family.entries().size(), kFilledStyles + 1);
}

TEST(SelectFont, AFamilyWithoutFacesGivesNothingAndStaysEmpty) {
    Family family{};
    EXPECT_EQ(family.faceFor(upright(400)), "nothing");
    EXPECT_EQ(family.faceFor(italic(650, 3)), "nothing");
    EXPECT_TRUE(family.entries().empty());
}

// --- what goes before the fill ----------------------------------------------------------------

TEST(SelectFont, AMissingStretchTakesTheNormalOneOfTheSameWeight) {
    Family family{upright(450, 3), upright(450), upright(450, 7), upright(500), upright(700, 9)};
    EXPECT_EQ(family.faceFor(upright(450, 9)), "450");
    EXPECT_EQ(family.entries().size(), 5U);
}

TEST(SelectFont, AMissingStretchOfAnOddWeightTakesTheNormalOneOfTheRoundedWeight) {
    Family family{upright(500), upright(400, 3)};
    EXPECT_EQ(family.faceFor(upright(450, 3)), "500");
    EXPECT_EQ(family.entries().size(), 2U);
}

TEST(SelectFont, AnItalicRequestTakesTheNormalStretchBeforeTheUprightFace) {
    EXPECT_EQ((Family{upright(400, 3), italic(400)}.faceFor(italic(400, 3))), "400 italic");
}

TEST(SelectFont, AnItalicRequestTakesTheUprightFaceOfItsStretchBeforeTheNormalOne) {
    EXPECT_EQ((Family{upright(400, 3), upright(400)}.faceFor(italic(400, 3))), "400, stretch 3");
    EXPECT_EQ((Family{upright(400), italic(700)}.faceFor(italic(400, 3))), "400");
}

TEST(SelectFont, AnItalicRequestTakesTheUprightFaceBeforeAnotherWeight) {
    Family family{upright(400), italic(300), italic(500)};
    EXPECT_EQ(family.faceFor(italic(400)), "400");
    EXPECT_EQ(family.entries().size(), 3U);
}

TEST(SelectFont, AnUprightRequestTakesAnotherWeightBeforeTheItalicFace) {
    EXPECT_EQ((Family{italic(400), upright(900)}.faceFor(upright(400))), "900");
}

TEST(SelectFont, AnOddWeightIsRoundedUpAndHeldTo100And900) {
    const std::pair<int, const char*> answers[] = {
        {INT_MIN, "100"}, {-250, "100"},    {-1, "100"},    {1, "100"},   {99, "100"},
        {101, "200"},     {350, "400"},     {450, "500"},   {650, "700"}, {899, "900"},
        {901, "900"},     {1000, "900"},    {10000, "900"}, {501, "600"}, {701, "800"},
        {299, "300"},     {INT_MAX, "900"},
    };
    for (const auto& [weight, face] : answers) {
        Family all{upright(100), upright(200), upright(300), upright(400), upright(500),
                   upright(600), upright(700), upright(800), upright(900)};
        EXPECT_EQ(all.faceFor(upright(weight)), face) << weight;
        EXPECT_EQ(all.entries().size(), 9U) << weight;
    }
}

TEST(SelectFont, AFaceOfAnOddWeightIsFoundByExactlyThatWeight) {
    Family family{upright(400), upright(450), upright(500), upright(1000), italic(INT_MAX)};
    EXPECT_EQ(family.faceFor(upright(450)), "450");
    EXPECT_EQ(family.faceFor(upright(1000)), "1000");
    EXPECT_EQ(family.faceFor(italic(1000)), "1000");
    EXPECT_EQ(family.faceFor(italic(INT_MAX)), nameOf(italic(INT_MAX)));
    EXPECT_EQ(family.faceFor(upright(451)), "500");
}

TEST(SelectFont, AnItalicRequestOfAnOddWeightPassesTheUprightFaceOfTheRoundedWeight) {
    // Only the weight as it was asked for lets upright stand in for italic.
    EXPECT_EQ((Family{upright(500), italic(700)}.faceFor(italic(450))), "700 italic");
    EXPECT_EQ((Family{upright(500), italic(700)}.faceFor(italic(500))), "500");
}

// --- which face stands for a weight in the fill -----------------------------------------------

TEST(SelectFont, ALaterEntryTakesTheWeightWhateverItsStretch) {
    EXPECT_EQ((Family{upright(400, 3), upright(400, 7)}.faceFor(upright(400))), "400, stretch 7");
    EXPECT_EQ((Family{upright(400, 1), upright(400, 2)}.faceFor(upright(300))), "400, stretch 2");
}

TEST(SelectFont, ALaterStretchFillsGapsThatTheNormalOneCouldFill) {
    Family family{upright(400), upright(400, 7)};
    EXPECT_EQ(family.faceFor(upright(300)), "400, stretch 7");
    EXPECT_EQ(family.faceFor(upright(400)), "400");
    EXPECT_EQ(family.faceFor(upright(500)), "400, stretch 7");
}

TEST(SelectFont, AFaceOfAnOddWeightStandsForBothNeighbours) {
    Family family{upright(100), upright(350), upright(500)};
    EXPECT_EQ(family.faceFor(upright(200)), "100");
    EXPECT_EQ(family.faceFor(upright(300)), "350");
    EXPECT_EQ(family.faceFor(upright(400)), "350");
}

TEST(SelectFont, AFaceOfAnOddWeightLeavesTheLighterNeighbourItsOwnFace) {
    Family family{upright(300, 3), upright(350), upright(500)};
    EXPECT_EQ(family.faceFor(upright(300)), "300, stretch 3");
    EXPECT_EQ(family.faceFor(upright(400)), "350");
}

TEST(SelectFont, OfTwoOddWeightsTheLastTakesTheHeavierAndTheFirstTheLighterNeighbour) {
    Family weights{upright(310), upright(390)};
    EXPECT_EQ(weights.faceFor(upright(300)), "310");
    EXPECT_EQ(weights.faceFor(upright(400)), "390");

    Family stretches{upright(350, 3), upright(350, 7)};
    EXPECT_EQ(stretches.faceFor(upright(300)), "350, stretch 3");
    EXPECT_EQ(stretches.faceFor(upright(400)), "350, stretch 7");
}

TEST(SelectFont, FacesBeyond100And900StandForThese) {
    Family family{upright(50), upright(400), upright(950), upright(1000)};
    EXPECT_EQ(family.faceFor(upright(100)), "50");
    EXPECT_EQ(family.faceFor(upright(300)), "50");
    EXPECT_EQ(family.faceFor(upright(900)), "1000");
    EXPECT_EQ(family.faceFor(upright(600)), "1000");

    EXPECT_EQ(Family{upright(INT_MAX)}.faceFor(upright(100)), nameOf(upright(INT_MAX)));
    EXPECT_EQ(Family{italic(INT_MIN)}.faceFor(upright(900)), nameOf(italic(INT_MIN)));
}

// --- the fill itself --------------------------------------------------------------------------

TEST(SelectFont, UpTo500TheNearestLighterFaceFillsAGap) {
    Family family{upright(200), upright(500), upright(900)};
    EXPECT_EQ(family.faceFor(upright(100)), "200");
    EXPECT_EQ(family.faceFor(upright(300)), "200");
    EXPECT_EQ(family.faceFor(upright(400)), "200");
}

TEST(SelectFont, From600TheNearestHeavierFaceFillsAGap) {
    Family family{upright(500), upright(600), upright(800)};
    EXPECT_EQ(family.faceFor(upright(700)), "800");
    EXPECT_EQ(family.faceFor(upright(900)), "800");
}

TEST(SelectFont, WithoutAFaceUpTo500TheLightestOfTheOthersFillsThem) {
    for (int weight = 100; weight <= 500; weight += 100)
        EXPECT_EQ((Family{upright(700), upright(900)}.faceFor(upright(weight))), "700") << weight;
}

TEST(SelectFont, WithoutAFaceFrom600TheHeaviestOfTheOthersFillsThem) {
    for (int weight = 600; weight <= 900; weight += 100)
        EXPECT_EQ((Family{upright(100), upright(300)}.faceFor(upright(weight))), "300") << weight;
}

TEST(SelectFont, TheSlopesAreFilledApartWhenTheFamilyHasBoth) {
    Family family{upright(400), italic(700)};
    EXPECT_EQ(family.faceFor(upright(700)), "400");
    for (int weight = 100; weight <= 900; weight += 100) {
        EXPECT_EQ(family.entry(upright(weight)), "400");
        EXPECT_EQ(family.entry(italic(weight)), "700 italic");
    }
}

TEST(SelectFont, AMissingSlopeCopiesWhatTheFamilyHoldsAndNotWhatFilledTheGaps) {
    Family italics{italic(400), italic(400, 7)};
    EXPECT_EQ(italics.faceFor(upright(400)), "400 italic");
    EXPECT_EQ(italics.faceFor(upright(300)), "400 italic, stretch 7");

    Family uprights{upright(400), upright(400, 7)};
    EXPECT_EQ(uprights.faceFor(italic(300)), "400, stretch 7");
    EXPECT_EQ(uprights.faceFor(italic(400)), "400");
    EXPECT_EQ(uprights.entry(italic(400)), "400");
}

// --- what is remembered -----------------------------------------------------------------------

TEST(SelectFont, Italic400OfAMixedFamilyIsUprightUntilTheGapsAreFilledAndItalicAfterwards) {
    // Fills are entries like any other, so an answer may depend on the requests before it.
    Family family{upright(400), italic(700)};
    EXPECT_EQ(family.faceFor(italic(400)), "400");
    EXPECT_EQ(family.faceFor(italic(400)), "400");
    EXPECT_EQ(family.faceFor(upright(300)), "400");
    EXPECT_EQ(family.faceFor(italic(400)), "700 italic");
}

TEST(SelectFont, AnotherStretchIsAnsweredByTheFillOfItsWeight) {
    Family family{upright(400), upright(700, 3)};
    EXPECT_EQ(family.faceFor(upright(600)), "700, stretch 3");
    EXPECT_EQ(family.faceFor(upright(400, 3)), "400");
    EXPECT_EQ(family.faceFor(upright(700, 7)), "700, stretch 3");
    EXPECT_EQ(family.faceFor(upright(100, 3)), "400");
}

TEST(SelectFont, AFillStandsAgainstAFaceThatIsRegisteredLater) {
    FS_TextMap<FS_FontFamilyMap> names;
    FS_FontPool::addName(names, u"F", faceRef(0), upright(400));
    EXPECT_EQ(selectFont(names.at(u"F"), upright(500)), faceRef(0));
    FS_FontPool::addName(names, u"F", faceRef(1), upright(500));
    FS_FontPool::addName(names, u"F", faceRef(2), upright(500, 3));
    EXPECT_EQ(selectFont(names.at(u"F"), upright(500)), faceRef(0));
    EXPECT_EQ(selectFont(names.at(u"F"), upright(500, 3)), faceRef(2));
}

TEST(SelectFont, AFamilyIsFilledOnce) {
    Family family{upright(350, 3), italic(700), italic(900, 8)};
    EXPECT_EQ(family.faceFor(upright(100)), "350, stretch 3");
    const FS_FontFamilyMap filled = family.entries();
    EXPECT_EQ(filled.size(), kFilledStyles + 2); // the face of 700 italic is one of the 18
    for (int weight = -50; weight <= 1050; weight += 50) {
        for (int stretch = 1; stretch <= 9; ++stretch) {
            EXPECT_NE(family.faceFor(upright(weight, stretch)), "nothing");
            EXPECT_NE(family.faceFor(italic(weight, stretch)), "nothing");
        }
    }
    EXPECT_EQ(family.entries(), filled);
}

TEST(SelectFont, RunsOverTheFacesOfAFileName) {
    const KWPtr<FakeFont> regular(new FakeFont(u"/a/Same.ttf"));
    const KWPtr<FakeFont> bold(new FakeFont(u"/b/same.TTF"));
    regular->weight = 400;
    bold->weight = 700;
    FS_FontPool pool;
    pool.registerFont(regular);
    pool.registerFont(bold);
    for (const char16_t* name : {u"same.ttf", u"SAME"}) {
        EXPECT_EQ(pool.findFont(name, upright(500)).font, regular.get());
        EXPECT_EQ(pool.findFont(name, upright(600)).font, bold.get());
        EXPECT_EQ(pool.findFont(name, italic(700)).font, bold.get());
    }
    EXPECT_FALSE(pool.findFont(u"other.ttf", upright(400)));
}

// --- against a second statement of the rule ---------------------------------------------------

constexpr int kOddWeights[] = {INT_MIN, -100, -1,  1,   50,  99,  101,  150,  250,    350,
                               450,     499,  501, 550, 650, 750, 850,  899,  901,    950,
                               1000,    1050, 199, 301, 601, 799, 1001, 5000, INT_MAX};

std::string listOf(std::span<const FS_FontKey> styles) {
    std::ostringstream list;
    for (const FS_FontKey& style : styles)
        list << '(' << nameOf(style) << ") ";
    return list.str();
}

/// Sends the requests to a fresh family and to the oracle: each answer and all that is remembered
/// after it have to be the same.
testing::AssertionResult agree(std::span<const FS_FontKey> faces,
                               std::span<const FS_FontKey> requests) {
    FS_FontFamilyMap family = familyOf(faces);
    SelectionOracle oracle(family);
    for (std::size_t i = 0; i < requests.size(); ++i) {
        const FS_FontRef chosen = selectFont(family, requests[i]);
        const FS_FontRef expected = oracle.select(requests[i]);
        if (chosen != expected || family != oracle.faces())
            return testing::AssertionFailure()
                   << "family " << listOf(faces) << "\nrequests " << listOf(requests.first(i + 1))
                   << "\nface " << chosen.face << ", expected " << expected.face << "; "
                   << family.size() << " entries, expected " << oracle.faces().size();
    }
    return testing::AssertionSuccess();
}

/// Appends the faces of the weights whose bits are set, bit 0 for 100.
void addFaces(std::vector<FS_FontKey>& faces, unsigned weights, bool slope,
              std::span<const int> stretches) {
    for (int bit = 0; bit < 9; ++bit) {
        if ((weights >> bit & 1U) == 0)
            continue;
        for (const int stretch : stretches)
            faces.push_back({(bit + 1) * 100, slope, stretch});
    }
}

/// The weights 100 to 900 and `odd` other ones, both slopes, each stretch, shuffled.
std::vector<FS_FontKey> shuffledRequests(Rng& rng, unsigned odd,
                                         std::initializer_list<int> stretches) {
    std::vector<FS_FontKey> requests;
    const auto add = [&](int weight) {
        for (const int stretch : stretches) {
            requests.push_back(upright(weight, stretch));
            requests.push_back(italic(weight, stretch));
        }
    };
    for (int weight = 100; weight <= 900; weight += 100)
        add(weight);
    for (unsigned i = 0; i < odd; ++i)
        add(kOddWeights[rng.below(std::size(kOddWeights))]);
    for (std::size_t i = requests.size(); i > 1; --i)
        std::swap(requests[i - 1], requests[rng.below(static_cast<std::uint32_t>(i))]);
    return requests;
}

constexpr unsigned kSubsets = 1U << 9;

TEST(SelectFontTable, EverySubsetOfOneSlopeAnswersEveryFirstRequestByTheRule) {
    constexpr int kNormal[] = {5};
    std::vector<FS_FontKey> firstRequests;
    for (int weight = 100; weight <= 900; weight += 100)
        firstRequests.insert(firstRequests.end(), {upright(weight), italic(weight, 3)});
    for (const int weight : {INT_MIN, 1, 350, 450, 650, 1000, INT_MAX})
        firstRequests.insert(firstRequests.end(), {upright(weight, 7), italic(weight)});

    for (unsigned weights = 0; weights < kSubsets; ++weights) {
        for (const bool slope : {false, true}) {
            std::vector<FS_FontKey> faces;
            addFaces(faces, weights, slope, kNormal);
            for (const FS_FontKey& request : firstRequests)
                ASSERT_TRUE(agree(faces, {&request, 1}));
        }
    }
}

TEST(SelectFontTable, EverySubsetOfOneSlopeInSeveralStretchesAnswersSequencesByTheRule) {
    const std::vector<int> stretchSets[] = {{5}, {3}, {7}, {3, 5}, {5, 7}, {3, 7}, {1, 5, 9}};
    Rng rng(1);
    for (unsigned weights = 0; weights < kSubsets; ++weights) {
        for (const bool slope : {false, true}) {
            for (const std::vector<int>& stretches : stretchSets) {
                std::vector<FS_FontKey> faces;
                addFaces(faces, weights, slope, stretches);
                std::vector<FS_FontKey> requests = shuffledRequests(rng, 1, {5});
                for (FS_FontKey& request : requests) {
                    if (rng.chance(2))
                        request.stretch = static_cast<int>(1 + rng.below(9));
                }
                ASSERT_TRUE(agree(faces, requests));
            }
        }
    }
}

TEST(SelectFontTable, EveryPairOfUprightAndItalicSubsetsOfSixWeightsAnswersByTheRule) {
    // 100, 400, 500, 600, 700 and 900: both ends, both sides of the middle, a gap in each half.
    constexpr unsigned kCoarse[] = {1U << 0, 1U << 3, 1U << 4, 1U << 5, 1U << 6, 1U << 8};
    constexpr int kStretches[][2] = {{5, 5}, {3, 3}, {3, 5}, {5, 7}};
    const auto spread = [&](unsigned bits) {
        unsigned weights = 0;
        for (std::size_t i = 0; i < std::size(kCoarse); ++i)
            weights |= (bits >> i & 1U) != 0 ? kCoarse[i] : 0;
        return weights;
    };
    Rng rng(2);
    for (unsigned uprights = 0; uprights < 64; ++uprights) {
        for (unsigned italics = 0; italics < 64; ++italics) {
            std::vector<FS_FontKey> faces;
            addFaces(faces, spread(uprights), false, kStretches[rng.below(4)]);
            addFaces(faces, spread(italics), true, kStretches[rng.below(4)]);
            ASSERT_TRUE(agree(faces, shuffledRequests(rng, 2, {5})));
        }
    }
}

TEST(SelectFontTable, ASampleOfAllPairsOfSubsetsAnswersRequestsInAnyOrderByTheRule) {
    Rng rng(3);
    for (int i = 0; i < 1500; ++i) {
        std::vector<FS_FontKey> faces;
        const int stretches[] = {static_cast<int>(1 + rng.below(9)),
                                 static_cast<int>(1 + rng.below(9))};
        addFaces(faces, rng.below(kSubsets), false, std::span(stretches).first(1 + rng.below(2)));
        addFaces(faces, rng.below(kSubsets), true, std::span(stretches).first(1 + rng.below(2)));
        std::vector<FS_FontKey> requests = shuffledRequests(rng, 2, {3, 5});
        ASSERT_TRUE(agree(faces, requests));
        std::sort(requests.begin(), requests.end());
        ASSERT_TRUE(agree(faces, requests));
        std::reverse(requests.begin(), requests.end());
        ASSERT_TRUE(agree(faces, requests));
    }
}

TEST(SelectFontTable, FamiliesOfAnyWeightsThatGrowBetweenTheRequestsAnswerByTheRule) {
    Rng rng(4);
    const auto anyStyle = [&rng] {
        FS_FontKey style;
        style.weight = rng.chance(2)   ? static_cast<int>(1 + rng.below(9)) * 100
                       : rng.chance(2) ? kOddWeights[rng.below(std::size(kOddWeights))]
                                       : static_cast<int>(1 + rng.below(1000));
        style.italic = rng.chance(2);
        if (rng.chance(2))
            style.stretch = static_cast<int>(1 + rng.below(9));
        return style;
    };
    for (int i = 0; i < 6000; ++i) {
        FS_FontFamilyMap family;
        SelectionOracle oracle(family);
        std::ostringstream history;
        std::size_t faces = 0;
        for (std::uint32_t steps = 4 + rng.below(30); steps > 0; --steps) {
            if (faces == 0 || rng.chance(4)) {
                const FS_FontKey style = anyStyle();
                history << "face (" << nameOf(style) << ") ";
                family.emplace(style, faceRef(faces));
                oracle.add(style, faceRef(faces));
                ++faces;
                continue;
            }
            const FS_FontKey request = anyStyle();
            history << "request (" << nameOf(request) << ") ";
            ASSERT_EQ(selectFont(family, request).face, oracle.select(request).face)
                << history.str();
            ASSERT_TRUE(family == oracle.faces()) << history.str();
        }
    }
}

} // namespace
