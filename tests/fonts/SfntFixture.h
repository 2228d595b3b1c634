#pragma once

#include "fonts/FS_OpenType.h"
#include "fonts/FS_TrueType.h"
#include "support/FontBuilder.h"

#include <KWCommon15/KWPtr.h>

#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <string>

namespace KWTest {

/// What a test says of an error without its path: the code and the detail.
struct Complaint {
    int code = 0;
    std::string text;

    friend bool operator==(const Complaint&, const Complaint&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Complaint& c) {
        return out << c.code << " \"" << c.text << '"';
    }
};

inline const Complaint kNoComplaint{};

/// The code and the first line of the message.
inline Complaint complaintOf(const KWCommonNS::KWError& error) {
    std::string text;
    error.getMessage().toUTF8String(text);
    return {error.getCode(), text.substr(0, text.find('\n'))};
}

inline Complaint readError(const std::string& detail) {
    return {1921, "Font read error: " + detail};
}
inline Complaint fileError(const std::string& detail) {
    return {1928, "Font file error: " + detail};
}

/// A font object over bytes in memory.
template <class Font = KWFontService_NS::FS_TrueType>
class MemoryFont {
public:
    explicit MemoryFont(const Bytes& file)
        : stream_(file.str()), font_(new Font(KWCommonNS::KWUri())) {}

    bool scan() { return font_->scanFont(error, stream_); }
    bool scanEmbedded() { return font_->scanEmbeddedFont(error, stream_); }
    bool load() { return font_->loadFont(error, 0, &stream_); }
    bool scanAndLoad() { return scan() && load(); }

    Font* operator->() const { return font_.get(); }
    Font& operator*() const { return *font_; }
    const KWFontService_NS::FS_TrueTypeInfo& info() const { return *font_->face(0); }

    Complaint complaint() const { return complaintOf(error); }

    KWCommonNS::KWError error;

private:
    std::istringstream stream_;
    KWCommonNS::KWPtr<Font> font_;
};

/// What the scan of a file says.
template <class Font = KWFontService_NS::FS_TrueType>
Complaint scanComplaint(const Bytes& file) {
    MemoryFont<Font> font(file);
    EXPECT_FALSE(font.scan());
    return font.complaint();
}

/// What the load of a file says, the scan being fine.
template <class Font = KWFontService_NS::FS_TrueType>
Complaint loadComplaint(const Bytes& file) {
    MemoryFont<Font> font(file);
    EXPECT_TRUE(font.scan()) << font.complaint();
    EXPECT_FALSE(font.load());
    return font.complaint();
}

} // namespace KWTest
