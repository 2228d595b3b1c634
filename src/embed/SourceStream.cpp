#include "embed/SourceStream.h"

#include "embed/EmbedSource.h"
#include "fonts/FontStream.h"

namespace KWFontService_NS {

SourceStream::SourceStream(std::istream* given, const FS_BaseFont* owner) : stream_(given) {
    if (given == nullptr && owner != nullptr) {
        own_ = openFontStream(owner->getUri());
        stream_ = own_.get();
    }
}

std::optional<CFFStream> cffTable(std::istream& stream, const TTI_TableRecord& record) {
    if (!EmbedSource(stream).contains(record.offset, record.length))
        return std::nullopt;
    return CFFStream(stream, record.offset, record.length);
}

} // namespace KWFontService_NS
