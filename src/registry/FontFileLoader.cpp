#include "registry/FontFileLoader.h"

#include "fonts/FontStream.h"
#include "fonts/FontTyping.h"

#include <new>
#include <utility>

namespace KWFontService_NS {

namespace {

std::uint32_t marksOf(unsigned int flags) {
    std::uint32_t marks = 0;
    if ((flags & FS_LOAD_EUDC) != 0)
        marks |= FS_FONTMARK_EUDC;
    if ((flags & FS_LOAD_REGISTRY) != 0)
        marks |= FS_FONTMARK_REGISTRY;
    return marks;
}

FS_FontFileType typeOfExtension(const FS_FontService& service, const UnicodeString& extension,
                                int mode) {
    const auto known = service.fileTypeByExtension.find(extension);
    if (known != service.fileTypeByExtension.end())
        return known->second;
    switch (mode) {
    case FS_FILETYPE_REQUEST_TYPE1:
        return FS_FILETYPE_PFM;
    case FS_FILETYPE_REQUEST_TRUETYPE:
        return FS_FILETYPE_TRUETYPE;
    default:
        return FS_FILETYPE_UNKNOWN;
    }
}

} // namespace

FS_FontFile::FS_FontFile(const KWUri& fileUri)
    : uri(fileUri), lowerName(lowerFileName(fileUri.getFileName())) {}

FS_FontFile::FS_FontFile(const FS_FontFolder& folder, const UnicodeString& fileName)
    : uri(KWUri::fromFileName(folder, fileName)), lowerName(lowerFileName(fileName)) {}

UnicodeString FS_FontFile::extension() const {
    const std::int32_t dot = lowerName.lastIndexOf(u'.');
    return dot >= 0 ? UnicodeString(lowerName, dot) : UnicodeString();
}

const FS_FontFolder& folderOfFile(FS_FontService& service, const KWUri& file) {
    auto folder =
        std::make_unique<FS_FontFolder>(KWUri(file.getBaseString(), KWCommonNS::URISTR_URI), false);
    const FS_FontFolder* const known = service.findFolder(folder->pathKey());
    return known != nullptr ? *known : *service.addFolder(std::move(folder));
}

FS_FontFileType fontFileType(const FS_FontService& service, const UnicodeString& extension,
                             int mode, std::istream* stream) {
    if (mode == FS_FILETYPE_REQUEST_SFNT || mode == FS_FILETYPE_REQUEST_OPENTYPE)
        return stream != nullptr ? sfntTypeOf(*stream) : FS_FILETYPE_TRUETYPE;
    const FS_FontFileType type = typeOfExtension(service, extension, mode);
    if (stream == nullptr)
        return type;
    switch (type) {
    case FS_FILETYPE_TRUETYPE:
        return sfntTypeOf(*stream);
    case FS_FILETYPE_OPENTYPE:
    case FS_FILETYPE_OPENTYPE_CID:
        return sfntTypeOf(*stream) == FS_FILETYPE_TRUETYPE ? FS_FILETYPE_TRUETYPE : type;
    default:
        return type;
    }
}

bool isFontFile(const FS_FontService& service, const FS_FontFolder& folder,
                const FS_FontFile& file) {
    if (!service.fileTypeByExtension.contains(file.extension()))
        return false;
    const FS_FontFileOptions* const options = folder.findOptions(file.lowerName);
    return options == nullptr || !options->fontExclude;
}

KWPtr<FS_BaseFont> createFontObject(const FS_FontFolder* folder, const FS_FontFile& file,
                                    FS_FontFileType type) {
    try {
        KWPtr<FS_BaseFont> font = createFontObject(file.uri, type);
        if (font && folder != nullptr)
            font->setFontEntrySettings(folder->findOptions(file.lowerName));
        return font;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

FS_BaseFont* loadFont(FS_FontService& service, const FS_FontFolder& folder, const FS_FontFile& file,
                      unsigned int flags) {
    const std::unique_ptr<std::istream> stream = openFontStream(file.uri);
    if (!stream)
        return nullptr;
    const int mode = (flags & FS_LOAD_EUDC) != 0 ? FS_FILETYPE_REQUEST_TRUETYPE : 0;
    const FS_FontFileType type = fontFileType(service, file.extension(), mode, stream.get());
    KWPtr<FS_BaseFont> font = createFontObject(&folder, file, type);
    return font ? takeFont(service, std::move(font), *stream, flags) : nullptr;
}

FS_BaseFont* takeFont(FS_FontService& service, KWPtr<FS_BaseFont> font, std::istream& stream,
                      unsigned int flags) {
    font->setMarks(marksOf(flags));
    KWError error;
    const bool usable = font->scanFont(error, stream);
    if (error.isError())
        service.errors.append(error);
    if (!usable)
        return nullptr;

    KWCommonNS::KWMutex mutex(g_fontServiceLock);
    mutex.lock();
    service.fontPool.fonts.push_back(font);
    if ((flags & FS_LOAD_EUDC) == 0)
        service.fontPool.registerFont(font);
    return font.get();
}

} // namespace KWFontService_NS
