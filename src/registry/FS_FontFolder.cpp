#include "registry/FS_FontFolder.h"

#include "common/TextView.h"
#include "type1/NameKeys.h"

#include <tuple>

namespace KWFontService_NS {

namespace {

KWUri inDirectoryForm(const KWUri& folder) {
    UnicodeString text = folder.getString();
    // A query or a fragment is no part of a folder.
    const auto end = KWCommonNS::toView(text).find_first_of(u"?#");
    if (end != std::u16string_view::npos)
        text.truncate(static_cast<std::int32_t>(end));
    KWUri::toDirectory(text, L'/');
    return KWUri(text, KWCommonNS::URISTR_URI);
}

} // namespace

bool operator<(const FS_FontAliasTarget& a, const FS_FontAliasTarget& b) {
    return std::tie(a.lowerFileName, a.fileName, a.faceIndex) <
           std::tie(b.lowerFileName, b.fileName, b.faceIndex);
}

bool operator<(const FS_FontAlias& a, const FS_FontAlias& b) {
    return std::tie(a.familyName, a.weight, a.italic, a.stretch) <
           std::tie(b.familyName, b.weight, b.italic, b.stretch);
}

FS_FontFolder::FS_FontFolder(const KWUri& folder, bool scanBelow)
    : KWUri(inDirectoryForm(folder)), recursive(scanBelow) {}
FS_FontFolder::~FS_FontFolder() = default;

UnicodeString FS_FontFolder::pathKey() const {
    return lowerFileName(getLocalPath());
}

const FS_FontFileOptions* FS_FontFolder::findOptions(const UnicodeString& fileName) const {
    const auto found = fileOptions.find(fileName);
    return found != fileOptions.end() ? &found->second : nullptr;
}

FS_FontFileOptions& FS_FontFolder::optionsOf(const UnicodeString& fileName) {
    return fileOptions[fileName];
}

} // namespace KWFontService_NS
