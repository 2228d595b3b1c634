#include "embed/SfntWriter.h"
#include "fonts/FS_MultiFaceFont.h"
#include "fonts/FontStream.h"

namespace KWFontService_NS {

bool FS_MultiFaceFont::getEmbedFontStream(KWMemStream& output, std::istream* stream,
                                          int faceIndex) {
    const FS_TrueTypeInfo* const info = face(faceIndex);
    if (info == nullptr)
        return false;
    std::unique_ptr<std::istream> own;
    if (stream == nullptr) {
        own = openFontStream(getUri());
        stream = own.get();
    }
    return stream != nullptr && writeWholeSfnt(*stream, info->getTableDirectory(), output);
}

} // namespace KWFontService_NS
