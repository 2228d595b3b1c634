#pragma once

#include "cff/Type1CMap.h"
#include "embed/CFFSubsetInPlace.h"
#include "embed/CFFSubsetRenumbered.h"
#include "support/FontPackages.h"
#include "support/FontTables.h"
#include "support/FreeTypeFace.h"
#include "support/ProcessRunner.h"
#include "support/Rng.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <numeric>
#include <optional>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace KWFontService_NS {

// Subsets of packaged fonts with `CFF ` outlines, beside their sources.

using KWTest::Bytes;
using KWTest::FreeTypeFace;
using KWTest::ProcessResult;

using Glyphs = std::vector<unsigned short>;

struct Sample {
    const char* font;
    bool isCollection = false;

    friend std::ostream& operator<<(std::ostream& out, const Sample& sample) {
        return out << sample.font;
    }
};

inline std::string sourceOf(const std::string& script) {
    std::ifstream file(std::string(KW_INTEROP_SCRIPTS) + "/" + script);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

inline Bytes bytesOf(KWMemStream& stream) {
    const auto* data = reinterpret_cast<const std::uint8_t*>(stream.data());
    return Bytes(std::vector<std::uint8_t>(data, data + stream.size()));
}

/// A `CFF ` table, loaded.
class Table {
public:
    explicit Table(const Bytes& bytes)
        : bytes_(bytes), stream_(bytes.str()),
          file_(stream_, 0, static_cast<std::uint32_t>(bytes.size())) {
        EXPECT_TRUE(font_.readCFFTable(file_));
    }

    const Bytes& bytes() const { return bytes_; }
    const Type1CMap& font() const { return font_; }
    Bytes renumbered(const Glyphs& glyphs) {
        KWMemStream out;
        EXPECT_TRUE(subsetCFFRenumbered(file_, font_, glyphs, out));
        return bytesOf(out);
    }
    Bytes inPlace(const Glyphs& glyphs, std::uint16_t space) {
        KWMemStream out;
        EXPECT_TRUE(subsetCFFInPlace(file_, glyphs, space, out));
        return bytesOf(out);
    }
    /// What a glyph is called: its name, or in a CID-keyed font its CID.
    std::string nameOf(std::uint16_t gid) const {
        const std::uint16_t id = font_.getSIDOfGlyph(gid);
        return font_.isCID ? std::to_string(id) : std::string(font_.getStringOfSID(id));
    }

private:
    Bytes bytes_;
    std::istringstream stream_;
    CFFStream file_;
    Type1CMap font_;
};

inline void expectSameOutline(const FreeTypeFace& source, const FreeTypeFace& cut, unsigned gid,
                              unsigned newGid) {
    const FT_GlyphSlot a = source.load(gid);
    const FT_GlyphSlot b = cut.load(newGid);
    ASSERT_EQ(a->metrics.horiAdvance, b->metrics.horiAdvance) << gid;
    ASSERT_EQ(a->outline.n_points, b->outline.n_points) << gid;
    ASSERT_EQ(a->outline.n_contours, b->outline.n_contours) << gid;
    for (int i = 0; i < a->outline.n_points; ++i) {
        ASSERT_EQ(a->outline.points[i].x, b->outline.points[i].x) << gid;
        ASSERT_EQ(a->outline.points[i].y, b->outline.points[i].y) << gid;
        ASSERT_EQ(a->outline.tags[i], b->outline.tags[i]) << gid;
    }
}

/// A glyph drawn with hints in 12 pixels per em.
inline std::string hintedPicture(const FreeTypeFace& face, unsigned gid) {
    EXPECT_EQ(FT_Set_Pixel_Sizes(face.get(), 0, 12), 0);
    EXPECT_EQ(FT_Load_Glyph(face.get(), gid, FT_LOAD_RENDER | FT_LOAD_NO_AUTOHINT), 0) << gid;
    const FT_GlyphSlot slot = face->glyph;
    const FT_Bitmap& bitmap = slot->bitmap;
    std::ostringstream text;
    text << slot->bitmap_left << ' ' << slot->bitmap_top << ' ' << slot->advance.x << ' '
         << bitmap.width << ' ' << bitmap.rows << ' ';
    for (unsigned row = 0; row < bitmap.rows; ++row)
        text.write(reinterpret_cast<const char*>(bitmap.buffer) +
                       static_cast<std::ptrdiff_t>(row) * bitmap.pitch,
                   static_cast<std::streamsize>(bitmap.width));
    return text.str();
}

inline ProcessResult runComparison(const std::filesystem::path& source,
                                   const std::filesystem::path& subset, const Glyphs& glyphs) {
    std::vector<std::string> arguments{source.string(), subset.string()};
    for (const unsigned short gid : std::set<unsigned short>(glyphs.begin(), glyphs.end()))
        arguments.push_back(std::to_string(gid));
    return KWTest::runPython(sourceOf("cff_subset_compare.py"), arguments);
}

class CffSubsetOf : public testing::TestWithParam<Sample> {
protected:
    void SetUp() override {
        path_ = KWTest::packagedFont(GetParam().font);
        table_.emplace(KWTest::fontTable(path_, "CFF "));
        face_.emplace(table_->bytes());
        count_ = static_cast<std::uint32_t>((*face_)->num_glyphs);
    }

    Glyphs randomGlyphs(std::uint32_t seed, std::size_t size) const {
        KWTest::Rng random(seed);
        Glyphs glyphs;
        for (std::size_t i = 0; i < size; ++i)
            glyphs.push_back(static_cast<unsigned short>(random.below(count_)));
        return glyphs;
    }
    /// Lists from one glyph to some hundreds.
    std::vector<Glyphs> randomLists() const {
        std::vector<Glyphs> lists;
        std::uint32_t seed = 1;
        for (const std::size_t size : {1u, 2u, 5u, 20u, 20u, 100u, 300u, 700u})
            lists.push_back(randomGlyphs(seed++, size));
        return lists;
    }
    Glyphs everyGlyph() const {
        Glyphs glyphs(count_);
        std::iota(glyphs.begin(), glyphs.end(), static_cast<unsigned short>(0));
        return glyphs;
    }
    /// How FreeType asks for a glyph of a bare table: a CID-keyed one by CID.
    unsigned sourceIndex(unsigned short gid) const {
        return table_->font().isCID ? table_->font().getSIDOfGlyph(gid) : gid;
    }
    unsigned packedIndex(unsigned short gid, unsigned short place) const {
        return table_->font().isCID ? gid : place;
    }
    /// Where each listed glyph and glyph 0 is in a packed subset.
    std::map<std::uint16_t, std::uint16_t> placesIn(const Bytes& subset, unsigned newCount,
                                                    const Glyphs& glyphs) const {
        const Table packed(subset);
        std::map<std::string, std::uint16_t> byName;
        for (unsigned gid = 0; gid < newCount; ++gid)
            byName.emplace(packed.nameOf(static_cast<std::uint16_t>(gid)),
                           static_cast<std::uint16_t>(gid));
        std::map<std::uint16_t, std::uint16_t> places;
        for (const unsigned short gid : glyphs)
            places[gid] =
                byName.at(table_->font().isCID ? std::to_string(gid) : table_->nameOf(gid));
        places[0] = 0;
        return places;
    }
    std::uint16_t space() {
        FS_FontInfo font;
        if (!GetParam().isCollection && font.createFont(KWTest::fileUri(path_)))
            return font.getGlyphID(0x20, false);
        return 1;
    }
    void expectSameForFontTools(const Bytes& file, const Glyphs& glyphs) {
        const ProcessResult result = runComparison(path_, folder_.write("subset", file), glyphs);
        EXPECT_TRUE(result.ok()) << result.describe();
        EXPECT_TRUE(result.output.starts_with("same ")) << result.describe();
    }

    std::filesystem::path path_;
    KWTest::TempDir folder_;
    std::optional<Table> table_;
    std::optional<FreeTypeFace> face_; ///< over the table alone, so that widths are its own
    std::uint32_t count_ = 0;
};

} // namespace KWFontService_NS
