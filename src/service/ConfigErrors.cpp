#include "service/ConfigErrors.h"

#include "registry/FS_FontService.h"

#include <KWCommon15/KWErrorLevel.h>
#include <KWCommon15/KWLang.h>
#include <KWCommon15/KWMessage.h>
#include <KWCommon15/KWUtil.h>

namespace KWFontService_NS {

namespace {

using KWCommonNS::KWMessage;

struct TemplateRow {
    FS_ERROR code;
    const char* text;
};

constexpr const char* kUnknownCodeTemplate = "FontServiceModule error: {0}";

constexpr TemplateRow kTemplates[] = {
    {FS_ERROR_NOT_SPECIFIED, "{0} is not specified."},
    {FS_ERROR_CONFIG_NOT_FOUND, "FontConfig file is not found: {0}"},
    {FS_ERROR_NO_FONT_FOLDER, "No <font-folder> in {0}"},
    {FS_ERROR_UNEXPECTED_START_TAG, "Unexpected start tag: <{0}> in {1}"},
    {FS_ERROR_UNEXPECTED_END_TAG, "Unexpected end tag: </{0}> in {1}"},
    {FS_ERROR_INVALID_EXTENSION, "Invalid font file extension: <{0} {1}=\"{2}\"> in {3}"},
    {FS_ERROR_UNKNOWN_ATTRIBUTE, "Unknown attribute: <{0} {2}> in {3}"},
    {FS_ERROR_INVALID_VALUE, "Invalid value: <{0} {1}=\"{2}\"> in {3}"},
    {FS_ERROR_EMPTY_VALUE, "Empty value: <{0} {1}> in {2}"},
    {FS_ERROR_NOT_A_FILE_PATH, "No-file path is not allowed: <{0} {1}=\"{2}\"> in {3}"},
    {FS_ERROR_RELATIVE_PATH, "Relative path is not allowed: <{0} {1}=\"{2}\"> in {3}"},
    {FS_ERROR_ALREADY_REGISTERED, "Already registered value: <{0} {1}=\"{2}\"> in {3}"},
    {FS_ERROR_NOT_A_BASE_FILE_NAME, "Font file must be base file name: <{0} {1}=\"{2}\"> in {3}"},
    {FS_ERROR_NOT_AN_INTEGER, "Not an integer value: <{0} {1}=\"{2}\"> in {3}"},
};

KWError errorOf(FS_ERROR code, const KWMessage& message) {
    return KWError(code, message.getMessage());
}

UnicodeString numberText(FS_ERROR code) {
    UnicodeString text;
    KWCommonNS::KWUtil::formatNumber(code, UnicodeString(), text, 1, KWLang(),
                                     KWCommonNS::KWNameEnum::None);
    return text;
}

} // namespace

KWError makeConfigError(FS_ERROR code, const UnicodeString& argument0,
                        const UnicodeString& argument1, const UnicodeString& argument2,
                        const UnicodeString& argument3) {
    for (const TemplateRow& row : kTemplates) {
        if (row.code == code) {
            return errorOf(code, KWMessage(UnicodeString(row.text), argument0, argument1, argument2,
                                           argument3));
        }
    }
    return errorOf(FS_ERROR_UNKNOWN_CODE,
                   KWMessage(UnicodeString(kUnknownCodeTemplate), numberText(code)));
}

void configError(FS_ERROR code, const UnicodeString& argument0, const UnicodeString& argument1,
                 const UnicodeString& argument2, const UnicodeString& argument3) {
    const KWError error = makeConfigError(code, argument0, argument1, argument2, argument3);
    if (error.getLevel() != KWCommonNS::KWErrorLevel::recorded)
        throw error;
    if (FS_FontService* const service = g_fontService.load(std::memory_order_acquire))
        service->errors.append(error);
}

} // namespace KWFontService_NS
