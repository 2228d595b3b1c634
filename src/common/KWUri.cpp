#include "KWCommon15/KWUri.h"

#include "common/AsciiChars.h"
#include "common/PlatformText.h"
#include "common/UriText.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace KWCommonNS {

namespace {

constexpr std::u16string_view kFileScheme = u"file";
constexpr std::u16string_view kDataScheme = u"data";

bool onWindows() {
    return KWPlatform::preferredSeparator() == u'\\';
}

void replaceAll(std::u16string& text, char16_t from, char16_t to) {
    std::replace(text.begin(), text.end(), from, to);
}

bool isFileParts(const UriParts& parts) {
    return parts.scheme.empty() || parts.scheme == kFileScheme;
}

// Path of a `file:` URI with a drive: "/X:/...".
bool hasDrive(const UriParts& parts) {
    return parts.path.starts_with(u'/') &&
           startsWithDrive(std::u16string_view(parts.path).substr(1));
}

bool isWindowsForm(const UriParts& parts) {
    return parts.scheme == kFileScheme &&
           ((parts.authority && !parts.authority->empty()) || hasDrive(parts));
}

// "X:name", relative to the current folder of a drive.
bool isDriveRelative(std::u16string_view text) {
    return text.size() > 2 && isAlpha(text[0]) && text[1] == u':' && !startsWithDrive(text);
}

bool isWindowsPath(std::u16string_view text) {
    return startsWithDrive(text) || text.starts_with(u"\\\\");
}

// "X:" or, as old URIs have it, "X|", at the start of a path behind its separator.
bool startsWithUriDrive(std::u16string_view text) {
    return text.size() >= 2 && text[1] == u'|' ? startsWithDrive(std::u16string{text[0], u':'}) &&
                                                     (text.size() == 2 || text[2] == u'/')
                                               : startsWithDrive(text);
}

std::u16string driveFilePath(std::u16string_view drivePath, bool encoded) {
    const auto letter = static_cast<char16_t>(drivePath[0] & ~0x20); // a drive has no case
    std::u16string path{u'/', letter, u':', u'/'};
    const std::u16string_view rest = drivePath.substr(std::min<std::size_t>(3, drivePath.size()));
    path += encoded ? canonicalUriText(rest, UriCharacters::filePath)
                    : encodeUriText(rest, UriCharacters::filePath);
    return path;
}

// A path of a file system as parts: with the scheme `file` when it is a full path.
UriParts partsOfPath(std::u16string_view text, bool backslashSeparates) {
    UriParts parts;
    std::u16string path(text);
    const bool unc = text.starts_with(u"\\\\") || (onWindows() && text.starts_with(u"//"));
    // As in file://C:/x, a drive is no server.
    if (unc && startsWithDrive(text.substr(2)))
        return partsOfPath(text.substr(2), backslashSeparates);
    if (unc || startsWithDrive(text) || backslashSeparates)
        replaceAll(path, u'\\', u'/');
    if (unc) {
        const std::size_t end = std::min(path.find(u'/', 2), path.size());
        parts.scheme = kFileScheme;
        parts.authority = lowerHost(
            encodeUriText(std::u16string_view(path).substr(2, end - 2), UriCharacters::authority));
        parts.path = encodeUriText(std::u16string_view(path).substr(end), UriCharacters::filePath);
    } else if (startsWithDrive(path)) {
        parts.scheme = kFileScheme;
        parts.path = driveFilePath(path, false);
    } else {
        parts.path = encodeUriText(path, UriCharacters::filePath);
    }
    return parts;
}

// Resolves dot segments that may still be encoded, so that a drive behind them comes to the start.
std::u16string withoutDotSegments(std::u16string_view path) {
    std::u16string plain;
    plain.reserve(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        const std::u16string_view code = path.substr(i, 3);
        const bool dot = code == u"%2E" || code == u"%2e";
        plain.push_back(dot ? u'.' : path[i]);
        if (dot)
            i += 2;
    }
    return removeDotSegments(plain, true);
}

// Length of what a file path keeps whatever is taken against it: "/X:" or the share of a host,
// "/share"; 0 when there is neither.
std::size_t rootLength(const UriParts& parts) {
    if (hasDrive(parts))
        return 3;
    if (!parts.authority || parts.authority->empty() || parts.path.size() < 2)
        return 0;
    return std::min(parts.path.find(u'/', 1), parts.path.size());
}

// Takes separators and dot segments away from before the first name of an absolute path.
void eraseLeadingDots(std::u16string& path) {
    const std::u16string_view view(path);
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = std::min(view.find(u'/', start + 1), view.size());
        const std::u16string_view first = view.substr(start + 1, end - start - 1);
        const bool dots = first == u"." || first == u"..";
        if (end == view.size() && dots) {
            path = u"/";
            return;
        }
        if (end == view.size() || !(dots || first.empty()))
            break;
        start = end;
    }
    path.erase(0, start);
}

// Brings host and drive of a `file:` URI to their places.
void settleFile(UriParts& parts) {
    replaceAll(parts.path, u'\\', u'/');
    std::u16string host = parts.authority.value_or(u"");
    if (host.empty() && parts.path.starts_with(u"//") && parts.authority) {
        // file:////server/share
        const std::size_t start = std::min(parts.path.find_first_not_of(u'/'), parts.path.size());
        const std::size_t end = std::min(parts.path.find(u'/', start), parts.path.size());
        host = parts.path.substr(start, end - start);
        parts.path.erase(0, end);
    } else if (startsWithUriDrive(host)) {
        // file://C:/x
        parts.path = u"/" + host + parts.path;
        host.clear();
    }
    if (!parts.path.starts_with(u'/'))
        parts.path.insert(0, 1, u'/');
    if (host.empty())
        parts.path = withoutDotSegments(parts.path);
    const std::u16string_view rooted = std::u16string_view(parts.path).substr(1);
    parts.path = startsWithUriDrive(rooted) ? driveFilePath(rooted, true)
                                            : canonicalUriText(parts.path, UriCharacters::filePath);
    host = lowerHost(canonicalUriText(host, UriCharacters::authority));
    parts.authority = host == u"localhost" ? u"" : host;
}

std::u16string canonicalAuthority(const std::u16string& authority) {
    const std::u16string text = canonicalUriText(authority, UriCharacters::authority);
    const std::size_t host = text.rfind(u'@') + 1;
    return text.substr(0, host) + lowerHost(std::u16string_view(text).substr(host));
}

// A URI reference as canonical parts; dot segments stay for the resolution.
UriParts partsOfReference(std::u16string_view text, bool baseIsFile) {
    UriParts parts = splitUri(text);
    parts.scheme = lowerAscii(parts.scheme);
    const bool file = parts.scheme.empty() && baseIsFile;
    if (file) {
        replaceAll(parts.path, u'\\', u'/'); // as in `file:` URIs
        if (parts.path.starts_with(u'/'))
            parts.path = withoutDotSegments(parts.path);
        if (!parts.authority && parts.path.starts_with(u'/') &&
            startsWithUriDrive(std::u16string_view(parts.path).substr(1)))
            parts.scheme = kFileScheme;
    }
    if (parts.scheme == kFileScheme) {
        settleFile(parts);
    } else {
        parts.path =
            canonicalUriText(parts.path, file ? UriCharacters::filePath : UriCharacters::path);
        if (parts.authority)
            parts.authority = canonicalAuthority(*parts.authority);
    }
    for (auto* part : {&parts.query, &parts.fragment}) {
        if (*part)
            *part = canonicalUriText(**part, UriCharacters::query);
    }
    return parts;
}

bool readsAsPath(std::u16string_view text, URISTRTYPE type) {
    switch (type) {
    case URISTR_LOCAL:
        return true;
    case URISTR_URI:
        return false;
    case URISTR_URL:
        return isWindowsPath(text);
    case URISTR_DETECT:
        break;
    }
    return schemeLength(text) < 2; // one letter is a drive, or the start of a name
}

std::u16string canonicalUri(UriParts parts) {
    if (parts.scheme.empty() && (parts.authority || parts.path.starts_with(u'/'))) {
        parts.scheme = kFileScheme;
        settleFile(parts);
    }
    if (parts.scheme == kFileScheme && !parts.authority)
        parts.authority.emplace();
    if (parts.authority && parts.path.empty())
        parts.path = u"/";
    const bool file = isFileParts(parts);
    if (file || parts.path.starts_with(u'/')) {
        if (file && parts.authority && !parts.authority->empty())
            eraseLeadingDots(parts.path);
        const std::size_t root = file ? rootLength(parts) : 0; // ".." does not leave it
        parts.path = parts.path.substr(0, root) +
                     removeDotSegments(std::u16string_view(parts.path).substr(root), file);
    }
    return joinUri(parts);
}

std::u16string parseUri(std::u16string_view text, const KWUri* base, URISTRTYPE type) {
    if (type == URISTR_URL)
        text = trimWhere(text, [](char16_t c) { return c <= u' '; });
    if (text.empty())
        return {};
    const bool isPath = readsAsPath(text, type);
    if (!isPath && schemeLength(text) == kDataScheme.size() &&
        lowerAscii(text.substr(0, kDataScheme.size())) == kDataScheme)
        return std::u16string(kDataScheme).append(text.substr(kDataScheme.size()));

    UriParts baseParts;
    const bool hasBase = base != nullptr && !base->isEmpty() && !base->isDataScheme();
    if (hasBase)
        baseParts = splitUri(toView(base->getString()));
    bool otherDrive = false;
    if (isPath && isWindowsForm(baseParts) && isDriveRelative(text)) {
        if (hasDrive(baseParts) && toAsciiLower(text[0]) == toAsciiLower(baseParts.path[1]))
            text.remove_prefix(2);
        else
            otherDrive = true; // relative to a folder that only the other drive knows
    }
    UriParts parts = isPath ? partsOfPath(text, onWindows() || isWindowsForm(baseParts))
                            : partsOfReference(text, isFileParts(baseParts));
    if (hasBase && parts.scheme.empty() && !otherDrive) {
        const bool staysOnRoot = isFileParts(baseParts) && !parts.authority &&
                                 parts.path.starts_with(u'/') &&
                                 !startsWithUriDrive(std::u16string_view(parts.path).substr(1));
        if (staysOnRoot)
            parts.path.insert(0, baseParts.path, 0, rootLength(baseParts));
        parts = resolveUri(baseParts, parts);
    }
    return canonicalUri(std::move(parts));
}

// Where the path, or a piece of it, stands in a URI text.
struct PathRange {
    std::size_t start = 0;
    std::size_t end = 0;
};

PathRange pathRange(std::u16string_view text) {
    const std::size_t scheme = schemeLength(text);
    const auto end = std::find_if(text.begin(), text.end(),
                                  [](char16_t unit) { return unit == u'?' || unit == u'#'; });
    PathRange range{scheme == 0 ? 0 : scheme + 1, static_cast<std::size_t>(end - text.begin())};
    if (text.substr(range.start).starts_with(u"//"))
        range.start = std::min(text.find(u'/', range.start + 2), range.end);
    return range;
}

PathRange nameRange(std::u16string_view text) {
    PathRange range = pathRange(text);
    const std::size_t separator = text.substr(0, range.end).rfind(u'/');
    if (separator != std::u16string_view::npos && separator >= range.start)
        range.start = separator + 1;
    return range;
}

} // namespace

KWUri::KWUri() = default;
KWUri::KWUri(const KWUri& other) = default;
KWUri::KWUri(KWUri&& other) noexcept = default;
KWUri& KWUri::operator=(const KWUri& other) = default;
KWUri& KWUri::operator=(KWUri&& other) noexcept = default;
KWUri::~KWUri() = default;

KWUri::KWUri(const UnicodeString& text, URISTRTYPE type)
    : text_(toText(parseUri(toView(text), nullptr, type))) {}

KWUri::KWUri(const UnicodeString& text, const KWUri& base, URISTRTYPE type)
    : text_(toText(parseUri(toView(text), &base, type))) {}

KWUri KWUri::fromFileName(const KWUri& folder, const UnicodeString& name) {
    const std::u16string_view text = toView(name);
    const bool windows = onWindows() || isWindowsForm(splitUri(toView(folder.text_)));
    KWUri uri;
    if (text.empty() || text == u"." || text == u".." || !folder.isFile() ||
        text.find_first_of(windows ? u"/\\" : u"/") != std::u16string_view::npos)
        return uri;
    uri.text_ = folder.getBaseString() + toText(encodeUriText(text, UriCharacters::filePath));
    return uri;
}

UnicodeString KWUri::getBaseString() const {
    if (isDataScheme())
        return UnicodeString();
    const std::u16string_view text = toView(text_);
    const PathRange range = pathRange(text);
    const std::size_t separator = text.substr(0, range.end).rfind(u'/');
    if (separator == std::u16string_view::npos || separator < range.start)
        return UnicodeString();
    return toText(text.substr(0, separator + 1));
}

UnicodeString KWUri::getLocalPath() const {
    const std::u16string_view text = toView(text_);
    if (isDataScheme())
        return toText(text.substr(0, text.find(u',')));
    if (!isFile())
        return text_;
    const UriParts parts = splitUri(text);
    const bool windowsForm = isWindowsForm(parts);
    std::u16string path = parts.path;
    if (windowsForm || onWindows())
        replaceAll(path, u'/', u'\\');
    path = decodeUriText(path);
    if (hasDrive(parts))
        path.erase(0, 1);
    if (windowsForm && !parts.authority->empty())
        path.insert(0, u"\\\\" + decodeUriText(*parts.authority));
    return toText(path);
}

UnicodeString KWUri::getFileName() const {
    if (isDataScheme())
        return UnicodeString();
    const std::u16string_view text = toView(text_);
    const PathRange range = nameRange(text);
    return toText(decodeUriText(text.substr(range.start, range.end - range.start)));
}

UnicodeString KWUri::getExtension() const {
    const UnicodeString name = getFileName();
    const std::int32_t dot = name.lastIndexOf(u'.');
    return dot < 0 ? UnicodeString() : UnicodeString(name, dot);
}

void KWUri::setExtension(const UnicodeString& extension) {
    if (isDataScheme())
        return;
    std::u16string text(toView(text_));
    const PathRange range = nameRange(text);
    if (range.start >= range.end)
        return;
    const std::size_t dot = text.substr(0, range.end).rfind(u'.');
    const std::size_t from = dot == std::u16string::npos || dot < range.start ? range.end : dot;
    std::u16string tail = encodeUriText(toView(extension), UriCharacters::filePath);
    for (std::size_t i = tail.find(u'/'); i != std::u16string::npos; i = tail.find(u'/', i))
        tail.replace(i, 1, u"%2F");
    if (!tail.empty() && tail.front() != u'.')
        tail.insert(0, 1, u'.');
    const std::u16string name = text.substr(range.start, from - range.start) + tail;
    if (name != u"." && name != u"..") // these would be folders
        text_ = toText(text.replace(from, range.end - from, tail));
}

UnicodeString KWUri::getScheme() const {
    const std::u16string_view text = toView(text_);
    return toText(text.substr(0, schemeLength(text)));
}

bool KWUri::isAbsolute() const {
    return schemeLength(toView(text_)) != 0;
}

bool KWUri::isFile() const {
    const std::u16string_view text = toView(text_);
    const std::size_t length = schemeLength(text);
    return !text.empty() && (length == 0 || text.substr(0, length) == kFileScheme);
}

bool KWUri::isDataScheme() const {
    const std::u16string_view text = toView(text_);
    return text.starts_with(kDataScheme) && schemeLength(text) == kDataScheme.size();
}

KWUri KWUri::getModuleUri(const UnicodeString& moduleName, const UnicodeString& path,
                          UnicodeString* folder) {
    UnicodeString folderPath = toText(KWPlatform::system().moduleFolder(toPath(moduleName)));
    if (folder != nullptr)
        *folder = folderPath;
    toDirectory(folderPath, static_cast<wchar_t>(KWPlatform::preferredSeparator()));
    return KWUri(path, KWUri(folderPath, URISTR_LOCAL));
}

void KWUri::toDirectory(UnicodeString& text, wchar_t separator) {
    if (text.isEmpty())
        return;
    const auto wanted = static_cast<char16_t>(separator);
    const char16_t last = text.charAt(text.length() - 1);
    if (last == wanted)
        return;
    const bool otherSeparator =
        (last == u'/' || last == u'\\') && (onWindows() || isWindowsPath(toView(text)));
    if (otherSeparator)
        text.truncate(text.length() - 1);
    text.append(wanted);
}

} // namespace KWCommonNS
