#include "service/ConfigEudcReader.h"

#include "service/ConfigValues.h"

#include <algorithm>
#include <utility>

namespace KWFontService_NS {

namespace {

constexpr int kEudcEnd = 0x10000;

/// Nothing when the text is no integer, which ends the read. A limit out of range is reported, and
/// taken nevertheless.
std::optional<int> limitOf(const ConfigElement& element, FS_Word attribute,
                           const UnicodeString& text) {
    const std::optional<int> limit = integerOf(text);
    if (!limit)
        element.complain(FS_ERROR_NOT_AN_INTEGER, attribute, text);
    else if (*limit < 1 || *limit >= kEudcEnd)
        element.complain(FS_ERROR_INVALID_VALUE, attribute, text);
    return limit;
}

ConfigResult readMap(const ConfigSource& source) {
    const ConfigElement element(source, FS_Word::eudcMap);
    const UnicodeString* const family = element.require(FS_Word::familyName);
    if (family == nullptr)
        return ConfigResult::stops;
    const UnicodeString* const path = element.require(FS_Word::filePath);
    if (path == nullptr)
        return ConfigResult::stops;
    source.service.eudcMap.emplace(*family, KWUri(*path, source.service.configUri));
    return element.finish({FS_Word::familyName, FS_Word::filePath});
}

ConfigResult readRange(const ConfigSource& source) {
    const ConfigElement element(source, FS_Word::eudcRange);
    const UnicodeString* const start = element.require(FS_Word::start);
    if (start == nullptr)
        return ConfigResult::stops;
    const std::optional<int> first = limitOf(element, FS_Word::start, *start);
    if (!first)
        return ConfigResult::stops;
    const UnicodeString* const end = element.find(FS_Word::end);
    const std::optional<int> last = end != nullptr ? limitOf(element, FS_Word::end, *end) : first;
    if (!last)
        return ConfigResult::stops;
    source.service.addEudcRange(std::min(*first, *last), std::max(*first, *last));
    source.service.eudcRangeGiven = true;
    return element.finish({FS_Word::start, FS_Word::end});
}

ConfigResult readSystemDefault(const ConfigSource& source) {
    const ConfigElement element(source, FS_Word::eudcSystemDefault);
    const UnicodeString* const path = element.require(FS_Word::filePath);
    if (path == nullptr)
        return ConfigResult::stops;
    source.service.eudcSystemDefault = KWUri(*path, source.service.configUri);
    return element.finish({FS_Word::filePath});
}

} // namespace

ConfigResult readEudcProcessing(const ConfigSource& source) {
    const ConfigElement element(source, FS_Word::eudcProcessing);
    setIfRead(source.service.eudcProcessing, element.value(FS_Word::mapping, switchOf));
    element.checkAttributes({FS_Word::mapping});
    bool defaultSeen = false;
    return element.readContent([&](FS_Word child) {
        switch (child) {
        case FS_Word::eudcMap:
            return readMap(source);
        case FS_Word::eudcRange:
            return readRange(source);
        case FS_Word::eudcSystemDefault:
            return std::exchange(defaultSeen, true) ? ConfigResult::unexpected
                                                    : readSystemDefault(source);
        default:
            return ConfigResult::unexpected;
        }
    });
}

} // namespace KWFontService_NS
