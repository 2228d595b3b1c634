#pragma once

#include "cff/CFFStream.h"
#include "fonts/TTI_Directory.h"

#include <KWFontService17/FS_BaseFont.h>

#include <istream>
#include <memory>
#include <optional>

namespace KWFontService_NS {

/// The stream of the caller, or one of the font's own for the length of a call.
class SourceStream {
public:
    /// @param given  of the caller, or null
    /// @param owner  the font whose file is opened then; null for none
    SourceStream(std::istream* given, const FS_BaseFont* owner);

    /// False when there is nothing to read.
    explicit operator bool() const { return stream_ != nullptr; }
    std::istream& operator*() const { return *stream_; }

private:
    std::unique_ptr<std::istream> own_;
    std::istream* stream_;
};

/// The `CFF ` table that a directory names. Nothing where it claims more than the file has, so that
/// what a writer does is in proportion to bytes that exist.
std::optional<CFFStream> cffTable(std::istream& stream, const TTI_TableRecord& record);

} // namespace KWFontService_NS
