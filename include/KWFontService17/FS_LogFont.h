#pragma once

#include <KWFontService17/FS_Types.h>

#include <cstdint>

namespace KWFontService_NS {

/// The logical description of a face: what a font dialog shows and a request repeats.
class KWFONTSERVICE_API FS_LogFont {
public:
    FS_LogFont() = default;
    FS_LogFont(UnicodeString faceName, int weight, bool italic);
    /// From a Windows record (FS_WindowsRecords.h): weight, italic, and the face name without one
    /// leading "@", the mark of a vertical face.
    FS_LogFont(const tagLOGFONTW& font);

    const UnicodeString& getFaceName() const { return faceName; }
    /// CSS weight, 100 to 900.
    int getWeight() const { return weight; }
    bool isItalic() const { return italic; }

    /// By face name in code unit order, then weight, then italic. Nothing is normalised.
    bool operator<(const FS_LogFont& other) const;

protected:
    int weight = 400;
    bool italic = false;
    UnicodeString faceName;
};

/// A logical description together with what an enumeration reports beyond it; the file type, the
/// embedding status and the flags are 0 in every other record.
class KWFONTSERVICE_API FS_EnumLogFontEx : public FS_LogFont {
public:
    FS_EnumLogFontEx() = default;
    explicit FS_EnumLogFontEx(const FS_LogFont& font);
    FS_EnumLogFontEx(UnicodeString faceName, UnicodeString fullName, int weight, bool italic);
    /// From a Windows record (FS_WindowsRecords.h): its logical font, and the full name without one
    /// leading "@".
    FS_EnumLogFontEx(const tagENUMLOGFONTEXW& font);

    const UnicodeString& getFullName() const { return fullName; }
    /// The type of the font's file, not of what it wraps.
    FS_FontFileType getFileType() const { return static_cast<FS_FontFileType>(fileType); }
    FS_EMBEDSTATUS getEmbedding() const { return static_cast<FS_EMBEDSTATUS>(embedding); }
    /// How the font came into the service, bits of `FS_FontMark`.
    unsigned int getFlags() const { return static_cast<unsigned int>(flags); }

protected:
    UnicodeString fullName;
    std::int32_t fileType = 0;
    std::int32_t embedding = 0;
    std::int32_t flags = 0;
};

} // namespace KWFontService_NS
