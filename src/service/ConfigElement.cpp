#include "service/ConfigElement.h"

#include "service/ConfigErrors.h"

#include <algorithm>

namespace KWFontService_NS {

using KWCommonNS::KWXmlEvent;
using KWCommonNS::KWXmlParser;

const UnicodeString* ConfigElement::find(FS_Word attribute) const {
    return source_.parser.getAttribute(FS_Keyword::text(attribute));
}

const UnicodeString* ConfigElement::require(FS_Word attribute) const {
    const UnicodeString* const value = find(attribute);
    if (value != nullptr && !value->isEmpty())
        return value;
    complainOfEmpty(attribute);
    return nullptr;
}

const UnicodeString* ConfigElement::requireFileName(FS_Word attribute) const {
    const UnicodeString* const value = require(attribute);
    return value != nullptr && checkFileName(attribute, *value) ? value : nullptr;
}

bool ConfigElement::checkFileName(FS_Word attribute, const UnicodeString& value) const {
    if (KWUri(value, KWCommonNS::URISTR_LOCAL).getFileName() == value)
        return true;
    complain(FS_ERROR_NOT_A_BASE_FILE_NAME, attribute, value);
    return false;
}

void ConfigElement::complain(FS_ERROR code, FS_Word attribute, const UnicodeString& value) const {
    configError(code, FS_Keyword::text(name_), FS_Keyword::text(attribute), value, source_.file);
}

void ConfigElement::complainOfEmpty(FS_Word attribute) const {
    configError(FS_ERROR_EMPTY_VALUE, FS_Keyword::text(name_), FS_Keyword::text(attribute),
                source_.file);
}

void ConfigElement::checkAttributes(std::initializer_list<FS_Word> known) const {
    for (const auto& [name, value] : source_.parser.getAttributes()) {
        const FS_Word word = FS_Keyword::find(name);
        if (std::ranges::find(known, word) == known.end())
            configError(FS_ERROR_UNKNOWN_ATTRIBUTE, FS_Keyword::text(name_), UnicodeString(), name,
                        source_.file);
    }
}

ConfigResult
ConfigElement::readContent(const std::function<ConfigResult(FS_Word child)>& readChild) const {
    KWXmlParser& parser = source_.parser;
    for (;;) {
        const KWXmlEvent event = parser.nextEvent();
        if (event == KWXmlEvent::endOfInput)
            return ConfigResult::goesOn;
        const UnicodeString tag = parser.getName();
        if (event == KWXmlEvent::endTag) {
            if (tag != FS_Keyword::text(name_))
                configError(FS_ERROR_UNEXPECTED_END_TAG, tag, source_.file);
            return ConfigResult::goesOn;
        }
        if (event != KWXmlEvent::startTag)
            continue;
        const ConfigResult result = readChild(FS_Keyword::find(tag));
        if (result == ConfigResult::stops)
            return result;
        if (result == ConfigResult::unexpected)
            configError(FS_ERROR_UNEXPECTED_START_TAG, tag, source_.file);
    }
}

ConfigResult ConfigElement::finish(std::initializer_list<FS_Word> known) const {
    checkAttributes(known);
    return readContent([](FS_Word) { return ConfigResult::unexpected; });
}

} // namespace KWFontService_NS
