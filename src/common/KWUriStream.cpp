#include "KWCommon15/KWMemStream.h"
#include "KWCommon15/KWUri.h"
#include "common/CssChars.h"
#include "common/FileStream.h"
#include "common/PlatformText.h"
#include "common/UriText.h"
#include "platform/Platform.h"

#include <algorithm>
#include <istream>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace KWCommonNS {

namespace {

struct FetcherSlot {
    std::mutex mutex;
    std::shared_ptr<const KWUri::Fetcher> fetcher;
};

FetcherSlot& fetcherSlot() {
    // Never destroyed: other statics may still fetch when the process ends.
    static FetcherSlot& slot = *new FetcherSlot;
    return slot;
}

std::shared_ptr<const KWUri::Fetcher> currentFetcher() {
    FetcherSlot& slot = fetcherSlot();
    const std::lock_guard<std::mutex> guard(slot.mutex);
    return slot.fetcher;
}

// An encoded separator is a character of a name, and no file system has such names.
bool hasEncodedSeparator(const KWUri& uri) {
    const std::u16string path = splitUri(toView(uri.getString())).path;
    return path.find(u"%2F") != std::u16string::npos ||
           (KWPlatform::preferredSeparator() == u'\\' && path.find(u"%5C") != std::u16string::npos);
}

// The path to hand to the system; nothing for a Windows form where there are no such paths, which
// would otherwise be taken for the name of a file in the current folder.
std::optional<std::u16string> systemPath(const KWUri& uri) {
    std::u16string path = toPath(uri.getLocalPath());
    const bool foreign =
        KWPlatform::preferredSeparator() == u'/' && uri.isAbsolute() && !path.starts_with(u'/');
    if (!uri.isFile() || path.empty() || foreign || hasEncodedSeparator(uri))
        return std::nullopt;
    return path;
}

// The part before the comma of a `data:` URI (RFC 2397).
struct DataHeader {
    UnicodeString mediaType;
    UnicodeString charset;
    bool base64 = false;
};

std::u16string_view unquoted(std::u16string_view text) {
    if (text.size() >= 2 && text.front() == u'"' && text.back() == u'"')
        return text.substr(1, text.size() - 2);
    return text;
}

DataHeader readDataHeader(std::u16string_view encoded) {
    const std::u16string decoded = decodeUriText(encoded);
    DataHeader header;
    std::u16string_view rest = decoded;
    std::u16string_view type;
    bool hasCharset = false;
    for (bool first = true;; first = false) {
        const std::size_t end = std::min(rest.find(u';'), rest.size());
        const bool last = end == rest.size();
        const std::u16string_view item = trimCssSpace(rest.substr(0, end));
        const std::size_t equals = item.find(u'=');
        if (first) {
            type = item;
        } else if (last && lowerAscii(item) == u"base64") {
            header.base64 = true;
        } else if (equals != std::u16string_view::npos && !hasCharset &&
                   lowerAscii(trimCssSpace(item.substr(0, equals))) == u"charset") {
            header.charset = toText(unquoted(trimCssSpace(item.substr(equals + 1))));
            hasCharset = true;
        }
        if (last)
            break;
        rest.remove_prefix(end + 1);
    }
    const bool typed = type.find(u'/') != std::u16string_view::npos;
    header.mediaType = typed ? toText(lowerAscii(type)) : UnicodeString(u"text/plain");
    if (!typed && !hasCharset)
        header.charset = UnicodeString(u"US-ASCII");
    return header;
}

std::unique_ptr<std::istream> openData(std::u16string_view text, KWUri::ContentInfo& info,
                                       UnicodeString& errorText) {
    text = text.substr(0, text.find(u'#'));
    const std::size_t start = text.find(u':') + 1;
    const std::size_t comma = text.find(u',', start);
    if (comma == std::u16string_view::npos) {
        errorText = u"A data URI needs a comma";
        return nullptr;
    }
    const DataHeader header = readDataHeader(text.substr(start, comma - start));
    std::string bytes = decodeUriBytes(text.substr(comma + 1));
    if (header.base64) {
        std::optional<std::string> decoded = decodeBase64(bytes);
        if (!decoded) {
            errorText = u"Damaged base64 in a data URI";
            return nullptr;
        }
        bytes = std::move(*decoded);
    }
    info.mediaType = header.mediaType;
    info.charset = header.charset;
    auto stream = std::make_unique<KWMemStream>(nullptr, bytes.size());
    if (!stream->write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
        errorText = u"No memory for a data URI";
        return nullptr;
    }
    return stream;
}

std::unique_ptr<std::istream> openFile(const KWUri& uri, UnicodeString& errorText) {
    const std::optional<std::u16string> path = systemPath(uri);
    if (!path) {
        errorText = u"No such path on this system";
        return nullptr;
    }
    std::string reason;
    std::unique_ptr<KWPlatform::FileReader> file = KWPlatform::system().openFile(*path, reason);
    if (file == nullptr) {
        errorText = textOfBytes(reason);
        return nullptr;
    }
    return std::make_unique<FileStream>(std::move(file));
}

std::unique_ptr<std::istream> fetch(const KWUri& uri, KWUri::ContentInfo& info,
                                    UnicodeString& errorText) {
    const std::shared_ptr<const KWUri::Fetcher> fetcher = currentFetcher();
    if (fetcher == nullptr) {
        errorText = u"No fetcher for this scheme";
        return nullptr;
    }
    std::unique_ptr<std::istream> stream = (*fetcher)(uri, info, errorText);
    info.mediaType = toText(lowerAscii(trimCssSpace(toView(info.mediaType))));
    return stream;
}

} // namespace

KWUri::ContentInfo::ContentInfo(const ContentInfo* other) {
    if (other != nullptr)
        *this = *other;
}

bool KWUri::isFileExists() const {
    const std::optional<std::u16string> path = systemPath(*this);
    return path && KWPlatform::system().isRegularFile(*path);
}

std::istream* KWUri::getIStream(ContentInfo* info, UnicodeString* errorText) const {
    ContentInfo foundInfo;
    UnicodeString foundError;
    std::unique_ptr<std::istream> stream;
    if (isEmpty())
        foundError = u"Empty URI";
    else if (isDataScheme())
        stream = openData(toView(text_), foundInfo, foundError);
    else if (isFile())
        stream = openFile(*this, foundError);
    else
        stream = fetch(*this, foundInfo, foundError);
    if (info != nullptr)
        *info = foundInfo;
    if (errorText != nullptr && stream == nullptr)
        *errorText = foundError;
    return stream.release();
}

void KWUri::setFetcher(Fetcher fetcher) {
    std::shared_ptr<const Fetcher> made;
    if (fetcher)
        made = std::make_shared<const Fetcher>(std::move(fetcher));
    FetcherSlot& slot = fetcherSlot();
    const std::lock_guard<std::mutex> guard(slot.mutex);
    slot.fetcher.swap(made);
}

} // namespace KWCommonNS
