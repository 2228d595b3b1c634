#pragma once

#include "KWCommon15/KWExport.h"

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

namespace KWCommonNS {

/// How a text is read when a KWUri is made from it. The numbers are part of the interface.
enum URISTRTYPE : int {
    /// Local path or URI, told by the text: a scheme of two and more characters makes a URI,
    /// everything else is a local path.
    URISTR_DETECT = 0,
    /// A path of a file system. "%", "#" and "?" are ordinary characters. "C:\x", "C:/x", "C:"
    /// and "\\server\share\x" are Windows forms on every platform; in them "/" and "\" both
    /// separate. In other paths "\" separates on Windows only.
    URISTR_LOCAL = 1,
    /// A URI reference (RFC 3986). Characters that may not stand in one are percent-encoded.
    URISTR_URI = 2,
    /// A URL as style sheets give it: trimmed, a Windows form is a local path, everything else
    /// a URI reference.
    URISTR_URL = 4,
};

/// A URI, in the main that of a file.
///
/// The text is kept in one canonical form: lower-case scheme and host, percent-encoding only where
/// RFC 3986 needs it (and for ":" in file names), with upper-case digits; dot segments and repeated
/// separators of files are resolved by the text alone, without regard to links; the letter of a
/// drive is upper-case. ".." does not go above a drive, nor above the first segment (the share) of
/// a file on a host. Characters outside
/// ASCII are percent-encoded UTF-8; bytes that are not UTF-8 pass unharmed from a file name through
/// the URI and back (see KWCStr for their form in a text). A relative file is a reference without a
/// scheme, opened against the process's current folder. The text makes the same KWUri again when it
/// is read with URISTR_URI; with URISTR_DETECT that of a relative file would be a path. The text of
/// a `data:` URI is kept as given.
///
/// A value; one object is used by one thread at a time.
class KWCOMMON_API KWUri {
public:
    /// What a fetch learns about the resource.
    struct KWCOMMON_API ContentInfo {
        ContentInfo() = default;
        /// Copy of `*other`; an empty record when it is null.
        explicit ContentInfo(const ContentInfo* other);

        UnicodeString mediaType; ///< "type/subtype" in lower case; empty when not known (files)
        UnicodeString charset;   ///< `charset` parameter as given; empty when there is none
    };

    /// Opens resources of schemes that the library does not read itself. It answers a new stream,
    /// which the caller of getIStream() then owns, or null. It may fill `info` and, on failure,
    /// `errorText`; neither is null. It may be called from several threads at once and may throw;
    /// an exception passes through getIStream(). The font service may hold locks while it calls, so
    /// a fetcher must not wait for font calls of another thread.
    using Fetcher = std::function<std::unique_ptr<std::istream>(const KWUri& uri, ContentInfo& info,
                                                                UnicodeString& errorText)>;

    /// The empty URI.
    KWUri();
    /// From a text alone.
    explicit KWUri(const UnicodeString& text, URISTRTYPE type = URISTR_DETECT);
    /// From a text, taken against `base` when it is relative (RFC 3986, section 5). The part of
    /// `base` behind its last separator does not count. A rooted path without a drive stays on the
    /// drive or share of `base`. A path "X:name" is taken against a `base` on the drive X; against
    /// a Windows form elsewhere it stays relative. An empty text gives the empty URI; an empty
    /// `base`, or a `data:` one, is as none.
    KWUri(const UnicodeString& text, const KWUri& base, URISTRTYPE type = URISTR_DETECT);
    KWUri(const KWUri& other);
    KWUri(KWUri&& other) noexcept;
    KWUri& operator=(const KWUri& other);
    KWUri& operator=(KWUri&& other) noexcept;
    virtual ~KWUri();

    /// A file right in the folder `folder` (see toDirectory()), by the exact name that the file
    /// system gave: no character of it means anything but itself. A name that is empty, ".", "..",
    /// or holds "/" gives the empty URI.
    static KWUri fromFileName(const KWUri& folder, const UnicodeString& name);

    /// The URI text; empty for the empty URI. Relative files have no scheme.
    const UnicodeString& getString() const { return text_; }
    /// The text up to and including the last "/" of the path: the folder. No query, no fragment.
    /// Empty for the empty URI, for a relative file without a folder and for `data:`.
    UnicodeString getBaseString() const;
    /// Files: the path in the form that the file system takes, with "\" as the separator in
    /// Windows forms. An encoded separator is decoded too, but such a file cannot be opened.
    /// `data:`: the text up to the comma. Other schemes: the URI text.
    UnicodeString getLocalPath() const;
    /// Last segment of the path, decoded; empty for a folder and for `data:`.
    UnicodeString getFileName() const;
    /// The file name from its last dot on, dot included; empty when there is no dot.
    UnicodeString getExtension() const;
    /// Replaces the extension, or adds one; a missing dot is supplied. An empty one removes the
    /// extension. Nothing happens without a file name, or when the new one would be "." or "..".
    /// Query and fragment stay.
    void setExtension(const UnicodeString& extension);

    /// True for the empty URI.
    bool isEmpty() const { return text_.isEmpty(); }
    /// True when it stands by itself: it has a scheme. A full local path has the scheme `file`.
    bool isAbsolute() const;
    /// True for `file:` and for relative files. False for the empty URI.
    bool isFile() const;
    /// True when isFile() and a regular file is there, links followed; a folder is none.
    bool isFileExists() const;
    /// True for `data:`.
    bool isDataScheme() const;
    /// Scheme in lower case without the colon; empty when there is none.
    UnicodeString getScheme() const;

    /// Opens the resource for reading: regular files, `data:`, and through the fetcher any other
    /// scheme. The library opens no network connection of its own; a path to a share, or into a
    /// folder that is mounted from elsewhere, goes to the operating system, which may. Streams of
    /// files and of `data:` are seekable; a file is read piecewise where it is asked, so a file
    /// that is cut short while open gives short reads.
    /// @param info      filled with what is known about the resource; may be null
    /// @param errorText receives the reason when the answer is null; may be null
    /// @return          a stream that the caller owns and deletes; null on failure
    std::istream* getIStream(ContentInfo* info = nullptr, UnicodeString* errorText = nullptr) const;

    /// Takes a path against the folder of a loaded module.
    /// @param moduleName the module's file name on Windows, such as "KWFontService17.dll";
    /// elsewhere
    ///                   its shared library, or the program when it is linked in statically
    /// @param path       an absolute path or URI stays as it is; empty gives the empty URI
    /// @param folder     receives the local path of the module's folder; may be null
    static KWUri getModuleUri(const UnicodeString& moduleName, const UnicodeString& path,
                              UnicodeString* folder = nullptr);
    /// Makes a path or URI text end in `separator`. A separator of the other kind at the end of a
    /// Windows form is replaced. An empty text stays empty.
    static void toDirectory(UnicodeString& text, wchar_t separator);

    /// Registers the process's fetcher; an empty one takes it away. There is none at the start.
    /// Thread-safe; fetches under way end with the fetcher they began with.
    static void setFetcher(Fetcher fetcher);

    bool operator==(const KWUri& other) const { return text_ == other.text_; }

private:
    UnicodeString text_;
};

} // namespace KWCommonNS
