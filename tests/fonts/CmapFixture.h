#pragma once

#include "fonts/SfntFixture.h"
#include "fonts/TTI_Cmap.h"

namespace KWTest {

/// A `cmap` read from a file that ends with it.
struct CmapReading {
    KWFontService_NS::TTI_Cmap cmap;
    KWCommonNS::KWError error;
    bool macFont;
    bool ok;

    /// @param end  bytes of the table that the file keeps
    explicit CmapReading(const Bytes& table, std::size_t end = ~std::size_t{0},
                         bool startAsMacFont = false)
        : macFont(startAsMacFont) {
        SfntBuilder sfnt;
        sfnt.table("cmap", table).unpadded();
        Bytes file = sfnt.build();
        if (end < table.size())
            file.truncate(sfnt.offsetOf("cmap") + end);
        read(file, false);
    }
    explicit CmapReading(const Cmap& table) : CmapReading(table.build()) {}

    /// One record with its subtable.
    static CmapReading of(const Bytes& subtable, std::uint16_t platformID = 3,
                          std::uint16_t encodingID = 1) {
        return CmapReading(Cmap{.records = {{platformID, encodingID, subtable}}});
    }
    /// The same with the file cut off `kept` bytes into the subtable.
    static CmapReading cut(const Bytes& subtable, std::size_t kept) {
        const Bytes table = Cmap{.records = {{3, 1, subtable}}}.build();
        return CmapReading(table, table.size() - subtable.size() + kept);
    }

    void read(const Bytes& file, bool embedded) {
        std::istringstream stream(file.str());
        const KWFontService_NS::TTI_Directory directory(
            file.u32At(0), KWCommonNS::ByteView(file.data() + 12, std::size_t{file.u16At(4)} * 16),
            0);
        KWFontService_NS::SfntReader reader(stream, directory, error, nullptr);
        ok = cmap.read(reader, embedded, macFont);
    }

    Complaint complaint() const { return complaintOf(error); }
    unsigned short operator()(int ch) const { return cmap.lookupGlyph(ch, false); }
    unsigned short withGlyphZero(int ch) const { return cmap.lookupGlyph(ch, true); }
};

inline constexpr unsigned short kMissing = 0xFFFF;

} // namespace KWTest
