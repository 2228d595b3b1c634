#pragma once

#include "layout/TTI_Device.h"

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace KWFontService_NS {

/// A point of a glyph that another one is attached to (OpenType, Anchor Table), in font units with
/// y upwards. All formats answer the design coordinates.
class GPOS_Anchor {
public:
    /// Nothing when the format is none of 1 to 3 or the table lacks a coordinate.
    static std::optional<GPOS_Anchor> read(KWCommonNS::ByteView table);

    std::int16_t x() const { return x_; }
    std::int16_t y() const { return y_; }

protected:
    GPOS_Anchor(std::int16_t x, std::int16_t y) : x_(x), y_(y) {}

private:
    std::int16_t x_;
    std::int16_t y_;
};

/// An anchor that names a point of the outline, which nothing looks at.
class GPOS_AnchorFormat2 : public GPOS_Anchor {
public:
    /// Nothing for another format.
    static std::optional<GPOS_AnchorFormat2> read(KWCommonNS::ByteView table);

    std::uint16_t anchorPoint() const { return anchorPoint_; }

private:
    GPOS_AnchorFormat2(const GPOS_Anchor& anchor, std::uint16_t anchorPoint)
        : GPOS_Anchor(anchor), anchorPoint_(anchorPoint) {}

    std::uint16_t anchorPoint_;
};

/// An anchor with device tables, which positioning does not apply.
class GPOS_AnchorFormat3 : public GPOS_Anchor {
public:
    /// Nothing for another format.
    static std::optional<GPOS_AnchorFormat3> read(KWCommonNS::ByteView table);

    TTI_Device xDevice() const;
    TTI_Device yDevice() const;

private:
    GPOS_AnchorFormat3(const GPOS_Anchor& anchor, KWCommonNS::ByteView table)
        : GPOS_Anchor(anchor), table_(table) {}

    KWCommonNS::ByteView table_;
};

/// Anchors in rows, one row for each glyph or ligature component, one column for each class of
/// marks: a count of the rows, then the offsets of the anchors.
class GPOS_AnchorMatrix {
public:
    GPOS_AnchorMatrix() = default;
    GPOS_AnchorMatrix(KWCommonNS::ByteView table, std::uint16_t classCount)
        : table_(table), rows_(table.u16(0).value_or(0)), classCount_(classCount) {}

    std::size_t rows() const { return rows_; }
    /// Nothing also for a row or a class that does not exist.
    std::optional<GPOS_Anchor> anchor(std::size_t row, std::size_t markClass) const;

private:
    KWCommonNS::ByteView table_;
    std::uint16_t rows_ = 0;
    std::uint16_t classCount_ = 0;
};

/// The class of a mark, and the point that is attached.
struct GPOS_Mark {
    std::uint16_t markClass;
    GPOS_Anchor anchor;
};

/// A mark of a MarkArray table; nothing also when it has no anchor.
/// @param index  its coverage index
std::optional<GPOS_Mark> readMark(KWCommonNS::ByteView markArray, std::size_t index);

} // namespace KWFontService_NS
