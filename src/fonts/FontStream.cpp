#include "fonts/FontStream.h"

#include <KWCommon15/KWMemStream.h>

namespace KWFontService_NS {

namespace {
constexpr std::size_t kWindowSize = 8192;
}

std::unique_ptr<std::istream> openTextStream(const KWCommonNS::KWUri& uri,
                                             KWCommonNS::KWUri::ContentInfo* info) {
    try {
        std::unique_ptr<std::istream> stream(uri.getIStream(info, nullptr));
        if (stream)
            stream->exceptions(std::ios::goodbit);
        return stream;
    } catch (...) {
        // A host may throw what it likes, a KWError among it.
        return nullptr;
    }
}

std::unique_ptr<std::istream> openFontStream(const KWCommonNS::KWUri& uri,
                                             KWCommonNS::KWUri::ContentInfo* info) {
    std::unique_ptr<std::istream> stream = openTextStream(uri, info);
    if (!stream || uri.isFile())
        return stream;
    try {
        return std::make_unique<KWCommonNS::KWMemStream>(stream.release(), kWindowSize, false);
    } catch (...) {
        return nullptr; // no memory
    }
}

} // namespace KWFontService_NS
