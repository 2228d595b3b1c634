#pragma once

#include "fonts/FS_FontFileOptions.h"
#include "fonts/FS_Type1AFM.h"
#include "fonts/FS_Type1PFM.h"
#include "support/MetricsFiles.h"
#include "support/TempDir.h"
#include "support/Type1Font.h"
#include "support/Utf8.h"

#include <KWFontService17/FS_LogFont.h>

#include <KWCommon15/KWPtr.h>

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <string_view>

namespace KWTest {

/// A scratch folder with the files of Type 1 fonts, and what the configuration says of them.
class Type1Test : public testing::Test {
protected:
    using Options = KWFontService_NS::FS_FontFileOptions;
    template <class Font>
    using Ptr = KWCommonNS::KWPtr<Font>;

    const TempDir& files() const { return files_; }
    void writePrinterFont(const Type1Font& font = Type1Font::latin()) {
        files_.write("font.pfb", font.pfb());
    }

    /// A font object on a file of the folder, not scanned.
    template <class Font>
    Ptr<Font> made(std::string_view name) {
        const Ptr<Font> font(new Font(files_.uri(name)));
        font->setFontEntrySettings(&options);
        return font;
    }
    template <class Font>
    bool scan(const Ptr<Font>& font, std::string_view name) {
        error = KWCommonNS::KWError();
        std::ifstream stream(files_.path(name), std::ios::binary);
        return font->scanFont(error, stream);
    }
    template <class Font>
    bool load(const Ptr<Font>& font) {
        error = KWCommonNS::KWError();
        return font->loadFont(error, 0, nullptr);
    }

    using AFM = KWFontService_NS::FS_Type1AFM;
    using PFM = KWFontService_NS::FS_Type1PFM;

    Ptr<AFM> scannedAFM(const AfmFile& file = AfmFile::latin()) {
        files_.write("font.afm", file.build());
        return scanned<AFM>("font.afm");
    }
    Ptr<AFM> loadedAFM(const AfmFile& file = AfmFile::latin()) {
        const Ptr<AFM> font = scannedAFM(file);
        EXPECT_TRUE(load(font)) << message();
        return font;
    }
    Ptr<PFM> scannedPFM(const PfmFile& file = PfmFile::latin()) {
        files_.write("font.pfm", file.build());
        return scanned<PFM>("font.pfm");
    }
    Ptr<PFM> loadedPFM(const PfmFile& file = PfmFile::latin()) {
        const Ptr<PFM> font = scannedPFM(file);
        EXPECT_TRUE(load(font)) << message();
        return font;
    }

    std::string message() const { return utf8(error.getMessage()); }
    std::string pathOf(std::string_view name) const { return utf8(files_.text(name)); }

    KWCommonNS::KWError error;
    Options options;

private:
    template <class Font>
    Ptr<Font> scanned(std::string_view name) {
        const Ptr<Font> font = made<Font>(name);
        EXPECT_TRUE(scan(font, name)) << message();
        return font;
    }

    TempDir files_;
};

/// The width of a text in thousandths of the em.
template <class Font>
float unitsOf(const Font& font, const icu::UnicodeString& text, int* firstMissing = nullptr) {
    return font->getTextWidth(text, -1000, false, firstMissing, 0);
}

template <class Font>
int firstMissing(const Font& font, const icu::UnicodeString& text) {
    int index = 99;
    unitsOf(font, text, &index);
    return index;
}

} // namespace KWTest
