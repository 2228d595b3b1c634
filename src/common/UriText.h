#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace KWCommonNS {

/// The parts of a URI reference (RFC 3986, section 3), percent-encoded as they stand in it.
struct UriParts {
    std::u16string scheme; ///< without the colon; empty: there is none
    std::optional<std::u16string> authority;
    std::u16string path;
    std::optional<std::u16string> query;
    std::optional<std::u16string> fragment;
};

/// What a percent-encoded text may hold as it is.
enum class UriCharacters {
    filePath,  ///< path of a file; ":" is encoded, so that only a drive has one
    path,      ///< path of any other scheme
    authority, ///< host, port and user
    query,     ///< query and fragment
};

/// Cuts a text into its parts; any text has some.
UriParts splitUri(std::u16string_view text);
std::u16string joinUri(const UriParts& parts);
/// Length of the scheme at the start of a text; 0 when there is none.
std::size_t schemeLength(std::u16string_view text);

/// Percent-encodes a plain text.
std::u16string encodeUriText(std::u16string_view text, UriCharacters characters);
/// Brings an encoded text into canonical form: what need not be encoded is not, what must be is,
/// digits are upper-case, and a "%" without two hexadecimal digits stands for itself.
std::u16string canonicalUriText(std::u16string_view text, UriCharacters characters);
/// Percent-decodes to text, by the rules of platform/PathText.h.
std::u16string decodeUriText(std::u16string_view text);
/// Percent-decodes to bytes; characters outside ASCII are UTF-8.
std::string decodeUriBytes(std::u16string_view text);

/// Resolves "." and ".." segments. What a ".." of an absolute path cannot go up is dropped, that of
/// a relative path is kept.
std::u16string removeDotSegments(std::u16string_view path, bool collapseSeparators);
/// Takes a reference without a scheme against a base (RFC 3986, section 5.2.2); dot segments stay.
UriParts resolveUri(const UriParts& base, const UriParts& reference);

/// "X:" with a separator or the end behind it.
bool startsWithDrive(std::u16string_view text);

/// A canonical authority in lower case but for the digits of "%XX".
std::u16string lowerHost(std::u16string_view text);

/// Decodes base64 (RFC 4648, section 4); white space is passed over, closing "=" may be missing.
std::optional<std::string> decodeBase64(std::string_view text);

} // namespace KWCommonNS
