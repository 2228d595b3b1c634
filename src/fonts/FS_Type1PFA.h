#pragma once

#include "fonts/FS_Type1Printer.h"

namespace KWFontService_NS {

/// A font program as hexadecimal text (.pfa).
class FS_Type1PFA final : public FS_Type1Printer {
public:
    explicit FS_Type1PFA(const KWUri& uri);

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    FS_FontFileType getFontFileType(int faceIndex) const override;

protected:
    std::optional<Type1FileError> scanHead(std::istream& stream,
                                           PrinterFontHead& head) const override;
    bool readSections(std::istream& stream, Type1Sections& sections) const override;
};

} // namespace KWFontService_NS
