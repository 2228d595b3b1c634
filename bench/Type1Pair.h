#pragma once

#include "fonts/FS_Type1AFM.h"
#include "support/FontPackages.h"
#include "support/TempDir.h"

#include <KWCommon15/KWPtr.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace KWBench {

/// A metrics file and its printer font in one folder, as they are installed elsewhere.
class Type1Pair {
public:
    using Font = KWCommonNS::KWPtr<KWFontService_NS::FS_Type1AFM>;

    explicit Type1Pair(const std::string& name) : name_(name) {
        folder_.write("font.afm", KWTest::readFile(KWTest::packagedFont(name + "-AFM")));
        folder_.write("font.pfb", KWTest::readFile(KWTest::packagedFont(name + "-PFB")));
    }
    std::string printerFont() const { return folder_.path("font.pfb").string(); }

    Font scan() const {
        const KWCommonNS::KWUri uri = folder_.uri("font.afm");
        const Font font(new KWFontService_NS::FS_Type1AFM(uri));
        const std::unique_ptr<std::istream> stream(uri.getIStream(nullptr, nullptr));
        KWFontService_NS::KWError error;
        if (!font->scanFont(error, *stream) || font->getPrinterFont() == nullptr)
            throw std::runtime_error("cannot scan " + name_);
        return font;
    }
    Font load() const {
        const Font font = scan();
        KWFontService_NS::KWError error;
        if (!font->loadFont(error, 0, nullptr))
            throw std::runtime_error("cannot load " + name_);
        return font;
    }

private:
    std::string name_;
    KWTest::TempDir folder_;
};

} // namespace KWBench
