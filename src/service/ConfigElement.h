#pragma once

#include "registry/FS_FontService.h"
#include "type1/FS_Keyword.h"

#include <KWFontService17/FS_Error.h>

#include <KWCommon15/KWXmlUtil.h>

#include <functional>
#include <initializer_list>
#include <optional>

namespace KWFontService_NS {

/// What the readers of all elements work with.
struct ConfigSource {
    FS_FontService& service;
    KWCommonNS::KWXmlParser& parser;
    UnicodeString file; ///< local path of the configuration
    const char* homePath;
};

/// What a reader answers of a start tag.
enum class ConfigResult {
    goesOn,     ///< the element was read up to its end
    stops,      ///< the read of the whole file ends; the complaint is made
    unexpected, ///< the element may not stand here, and nothing of it was read
};

/// An element of the configuration: reads its attributes, and then its content.
///
/// It is made at the start tag. Texts of attributes live until the content is read. Complaints go
/// to configError(); those that end the read may be thrown by it, and else the operation answers
/// nothing or false, upon which the reader of the element answers `stops`.
class ConfigElement {
public:
    ConfigElement(const ConfigSource& source, FS_Word name) : source_(source), name_(name) {}

    /// The value of an attribute; null when it does not stand there.
    const UnicodeString* find(FS_Word attribute) const;
    /// The same of an attribute that may not be missing or empty; complains and answers null.
    const UnicodeString* require(FS_Word attribute) const;
    /// The same of an attribute that names a file without a folder.
    const UnicodeString* requireFileName(FS_Word attribute) const;
    /// Whether a value is a file name without a folder; complains when it is not.
    bool checkFileName(FS_Word attribute, const UnicodeString& value) const;

    /// A value by its grammar of ConfigValues.h. Nothing when the attribute does not stand there
    /// or, with a complaint, when it has no such value.
    /// @param reportedAs  the attribute that the complaint names
    template <typename T>
    std::optional<T> value(FS_Word attribute, std::optional<T> (*grammar)(const UnicodeString&),
                           FS_Word reportedAs) const {
        const UnicodeString* const text = find(attribute);
        std::optional<T> result = text != nullptr ? grammar(*text) : std::nullopt;
        if (text != nullptr && !result)
            complain(FS_ERROR_INVALID_VALUE, reportedAs, *text);
        return result;
    }
    template <typename T>
    std::optional<T> value(FS_Word attribute,
                           std::optional<T> (*grammar)(const UnicodeString&)) const {
        return value(attribute, grammar, attribute);
    }

    void complain(FS_ERROR code, FS_Word attribute, const UnicodeString& value) const;
    void complainOfEmpty(FS_Word attribute) const;
    /// Complains of every attribute but these.
    void checkAttributes(std::initializer_list<FS_Word> known) const;

    /// Reads up to the end tag, with `readChild` at each start tag.
    ConfigResult readContent(const std::function<ConfigResult(FS_Word child)>& readChild) const;
    /// Checks the attributes, and reads up to the end tag of an element that has no children.
    ConfigResult finish(std::initializer_list<FS_Word> known) const;

private:
    const ConfigSource& source_;
    FS_Word name_;
};

/// Sets a member to a value, if one was read.
template <typename T>
void setIfRead(T& member, const std::optional<T>& value) {
    if (value)
        member = *value;
}

} // namespace KWFontService_NS
