#pragma once

#include "fonts/FS_DFont.h"
#include "fonts/FS_TrueTypeCollection.h"
#include "fonts/SfntFixture.h"

#include <KWCommon15/KWPtr.h>

#include <initializer_list>
#include <sstream>
#include <string>

namespace KWTest {

/// Sound fonts of one em that differ in all that a font can be asked for by index.
inline TestFont firstFace() {
    return TestFont::latin();
}
inline TestFont secondFace() {
    TestFont font = TestFont::vertical();
    font.os2.usWeightClass = 700;
    return font;
}

inline SfntCollection collectionOf(std::initializer_list<TestFont> fonts) {
    SfntCollection collection;
    for (const TestFont& font : fonts)
        collection.fonts.push_back(font.sfnt());
    return collection;
}

inline ResourceFile resourcesOf(std::initializer_list<TestFont> fonts) {
    ResourceFile file;
    for (const TestFont& font : fonts)
        file.fonts.push_back(font.sfnt());
    return file;
}

/// A font file with several faces, in memory.
template <class Font>
class FacesInMemory {
public:
    explicit FacesInMemory(const Bytes& file)
        : stream_(file.str()), font_(new Font(KWCommonNS::KWUri())) {}

    bool scan() { return font_->scanFont(error, stream_); }
    bool load(int faceIndex) { return font_->loadFont(error, faceIndex, &stream_); }

    Font* operator->() const { return font_.get(); }
    Font& operator*() const { return *font_; }
    std::istream& stream() { return stream_; }
    Complaint complaint() const { return complaintOf(error); }

    KWCommonNS::KWError error;

private:
    std::istringstream stream_;
    KWCommonNS::KWPtr<Font> font_;
};

using CollectionInMemory = FacesInMemory<KWFontService_NS::FS_TrueTypeCollection>;
using DFontInMemory = FacesInMemory<KWFontService_NS::FS_DFont>;

/// What the scan of a file says that it does not take.
template <class Font>
Complaint refusal(const Bytes& file) {
    FacesInMemory<Font> font(file);
    EXPECT_FALSE(font.scan());
    return font.complaint();
}

} // namespace KWTest
