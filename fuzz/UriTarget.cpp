// URIs in each way of reading them, and what `data:` holds. Nothing outside the input is opened.

#include "FuzzTarget.h"

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWUri.h>

#include <cstdlib>
#include <memory>

using icu::UnicodeString;
using KWCommonNS::KWUri;

namespace {

void ask(KWUri uri) {
    uri.getBaseString();
    uri.getLocalPath();
    uri.getFileName();
    uri.getExtension();
    uri.getScheme();
    if (uri.isDataScheme()) {
        KWUri::ContentInfo info;
        UnicodeString reason;
        const std::unique_ptr<std::istream> stream(uri.getIStream(&info, &reason));
        if (stream) {
            KWCommonNS::KWMemStream copy;
            copy.copyStream(*stream);
        }
    }
    uri.setExtension(UnicodeString("x.y"));
    uri.setExtension(UnicodeString());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = UnicodeString::fromUTF8(
        icu::StringPiece(reinterpret_cast<const char*>(data), static_cast<std::int32_t>(size)));
    const KWUri base(UnicodeString("file:///a/b/c.d"));
    for (const auto type : {KWCommonNS::URISTR_DETECT, KWCommonNS::URISTR_LOCAL,
                            KWCommonNS::URISTR_URI, KWCommonNS::URISTR_URL}) {
        const KWUri uri(text, type);
        ask(uri);
        ask(KWUri(text, base, type));
        ask(KWUri(UnicodeString("../e?f#g"), uri, type));
        ask(KWUri::fromFileName(uri, text));
        // The text of a URI is canonical: read again it is the same.
        if (KWUri(uri.getString(), KWCommonNS::URISTR_URI).getString() != uri.getString())
            std::abort();
    }
    UnicodeString folder(text);
    KWUri::toDirectory(folder, L'/');
    return 0;
}
