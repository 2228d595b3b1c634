#pragma once

#include "fonts/FS_WOFF.h"
#include "fonts/SfntFixture.h"
#include "support/WoffFile.h"

#include <KWCommon15/KWPtr.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <vector>

namespace KWTest {

inline const Complaint kShortWoff{1921, "Font read error."};

/// A WOFF font over bytes in memory.
class WoffInMemory {
public:
    explicit WoffInMemory(const Bytes& file)
        : stream_(file.str()), font_(new KWFontService_NS::FS_WOFF(KWCommonNS::KWUri())) {}

    bool scan() { return font_->scanFont(error, stream_); }
    bool load() { return font_->loadFont(error, 0, nullptr); }
    KWFontService_NS::FS_WOFF* operator->() const { return font_.get(); }
    Complaint complaint() const { return complaintOf(error); }

    /// The sfnt that came out.
    Bytes sfnt() const {
        KWCommonNS::KWMemStream* const stream = font_->getFontStream();
        if (stream == nullptr || stream->data() == nullptr)
            return Bytes();
        const auto* data = reinterpret_cast<const std::uint8_t*>(stream->data());
        return Bytes(std::vector<std::uint8_t>(data, data + stream->size()));
    }

    KWCommonNS::KWError error;

private:
    std::istringstream stream_;
    KWCommonNS::KWPtr<KWFontService_NS::FS_WOFF> font_;
};

inline Complaint refusedWoff(const Bytes& file) {
    WoffInMemory font(file);
    EXPECT_FALSE(font.scan());
    return font.complaint();
}

inline const Bytes& latinSfnt() {
    static const Bytes sfnt = TestFont::latin().build();
    return sfnt;
}

inline Bytes letters(std::size_t count) {
    Bytes text;
    for (std::size_t i = 0; i < count; ++i)
        text.u8('a' + i % 23);
    return text;
}

} // namespace KWTest
