#include "fonts/TTI_Math.h"

#include "layout/LayoutArrays.h"
#include "layout/LayoutBudget.h"

#include <KWFontService17/FS_Types.h>

#include <KWCommon15/KWUtil.h>

namespace KWFontService_NS {

using KWCommonNS::ByteView;
using KWCommonNS::KWLength;
using KWCommonNS::KWUtil;

namespace {

constexpr std::size_t kConstantsSize = 214;
constexpr std::size_t kGlyphInfoSize = 8;
constexpr std::size_t kVariantsHeaderSize = 10;
constexpr std::size_t kListHeaderSize = 4; // of italics corrections and of constructions
constexpr std::size_t kValueRecordSize = 4;
constexpr std::size_t kVariantSize = 4;

// The constants before and after those that are value records are bare numbers.
constexpr int kFirstValueRecord = static_cast<int>(FS_MATHConstants::mathLeading);
constexpr int kLastValueRecord = static_cast<int>(FS_MATHConstants::radicalKernAfterDegree);

bool isPercentage(FS_MATHConstants constant) {
    return constant == FS_MATHConstants::scriptPercentScaleDown ||
           constant == FS_MATHConstants::scriptScriptPercentScaleDown ||
           constant == FS_MATHConstants::radicalDegreeBottomRaisePercent;
}

bool isUnsigned(FS_MATHConstants constant) {
    return constant == FS_MATHConstants::delimitedSubFormulaMinHeight ||
           constant == FS_MATHConstants::displayOperatorMinHeight;
}

/// The object whose offset stands at `field`, from the start of `table`; empty when the offset is 0
/// or less than `size` bytes are left there.
ByteView objectAt(ByteView table, std::size_t field, std::size_t size) {
    const std::uint16_t offset = table.u16(field).value_or(0);
    const ByteView object = offset != 0 ? table.from(offset) : ByteView();
    return object.contains(0, size) ? object : ByteView();
}

KWLength perEm(int value, int unitsPerEm) {
    return unitsPerEm == 0 ? KWUtil::getNaNf()
                           : static_cast<float>(value) / static_cast<float>(unitsPerEm);
}

} // namespace

void TTI_Math::read(ByteView table) {
    if (const ByteView object = objectAt(table, 4, kConstantsSize); !object.empty())
        constants_ = std::make_unique<MATHConstants>(object);
    if (const ByteView object = objectAt(table, 6, kGlyphInfoSize); !object.empty())
        glyphInfo_ = std::make_unique<MATHGlyphInfo>(object);
    if (const ByteView object = objectAt(table, 8, kVariantsHeaderSize); !object.empty()) {
        LayoutBudget budget(table.size());
        variants_ = std::make_unique<MATHVariants>(object, budget);
    }
}

TTI_Math::MATHConstants::MATHConstants(ByteView table) {
    const std::uint8_t* p = table.data();
    for (int i = 0; i < static_cast<int>(kConstants); ++i) {
        values[static_cast<std::size_t>(i)] = ByteView::loadU16(p);
        p += i >= kFirstValueRecord && i <= kLastValueRecord ? kValueRecordSize : 2;
    }
}

TTI_Math::MATHGlyphInfo::MATHGlyphInfo(ByteView table) {
    const ByteView list = objectAt(table, 0, kListHeaderSize);
    italicsCorrectionCoverage = KeptTable<TTI_Coverage>(objectAt(list, 0, 2));
    const std::size_t count =
        heldRecords(list, kListHeaderSize, list.u16(2).value_or(0), kValueRecordSize);
    italicsCorrections.reserve(count);
    const std::uint8_t* p = list.from(kListHeaderSize).data();
    for (std::size_t i = 0; i < count; ++i, p += kValueRecordSize)
        italicsCorrections.push_back(ByteView::loadI16(p));
}

TTI_Math::MATHVariants::MATHVariants(ByteView table, LayoutBudget& budget)
    : vertGlyphCoverage(objectAt(table, 2, 2)), horizGlyphCoverage(objectAt(table, 4, 2)) {
    const std::size_t vertCount = ByteView::loadU16(table.data() + 6);
    const std::size_t horizCount = ByteView::loadU16(table.data() + 8);
    vertGlyphConstruction = readConstructions(table, kVariantsHeaderSize, vertCount, budget);
    horizGlyphConstruction =
        readConstructions(table, kVariantsHeaderSize + 2 * vertCount, horizCount, budget);
    variants_.shrink_to_fit();
}

std::vector<TTI_Math::Construction>
TTI_Math::MATHVariants::readConstructions(ByteView table, std::size_t field, std::size_t count,
                                          LayoutBudget& budget) {
    std::vector<Construction> constructions(heldRecords(table, field, count, 2));
    for (Construction& construction : constructions) {
        const ByteView object = objectAt(table, field, kListHeaderSize);
        field += 2;
        const std::size_t held =
            heldRecords(object, kListHeaderSize, object.u16(2).value_or(0), kVariantSize);
        // Constructions may lie upon each other.
        if (!budget.spend(kListHeaderSize + kVariantSize * held))
            break;
        construction = {static_cast<std::uint32_t>(variants_.size()),
                        static_cast<std::uint16_t>(held)};
        const std::uint8_t* p = object.from(kListHeaderSize).data();
        for (std::size_t i = 0; i < held; ++i, p += kVariantSize)
            variants_.push_back({ByteView::loadU16(p), ByteView::loadU16(p + 2)});
    }
    return constructions;
}

KWLength TTI_Math::constant(FS_MATHConstants constant, int unitsPerEm) const {
    const auto index = static_cast<std::size_t>(constant);
    if (!constants_ || index >= kConstants)
        return KWUtil::getNaNf();
    const std::uint16_t stored = constants_->values[index];
    const int value = isUnsigned(constant) ? int{stored} : static_cast<std::int16_t>(stored);
    return isPercentage(constant) ? static_cast<float>(value) / 100.0F : perEm(value, unitsPerEm);
}

KWLength TTI_Math::italicsCorrection(unsigned short gid, int unitsPerEm) const {
    if (!glyphInfo_ || !glyphInfo_->italicsCorrectionCoverage)
        return KWUtil::getNaNf();
    const auto index =
        static_cast<std::size_t>(glyphInfo_->italicsCorrectionCoverage->coverageIndex(gid));
    if (index >= glyphInfo_->italicsCorrections.size())
        return KWUtil::getNaNf();
    return perEm(glyphInfo_->italicsCorrections[index], unitsPerEm);
}

std::span<const TTI_Math::Variant> TTI_Math::MATHVariants::variantsOf(unsigned short gid,
                                                                      bool vertical) const {
    const auto& coverage = vertical ? vertGlyphCoverage : horizGlyphCoverage;
    const auto& constructions = vertical ? vertGlyphConstruction : horizGlyphConstruction;
    if (!coverage)
        return {};
    const auto index = static_cast<std::size_t>(coverage->coverageIndex(gid));
    if (index >= constructions.size())
        return {};
    return std::span(variants_).subspan(constructions[index].firstVariant,
                                        constructions[index].variantCount);
}

unsigned short TTI_Math::variant(unsigned short gid, int size, bool vertical) const {
    if (!variants_)
        return FS_NO_GLYPH;
    const std::span<const Variant> variants = variants_->variantsOf(gid, vertical);
    if (variants.empty())
        return FS_NO_GLYPH;
    // The last variant is no choice of its own, only what is left for too large a minimum.
    const std::span<const Variant> choices = variants.first(variants.size() - 1);

    if (size < 0) {
        const std::int64_t most = -std::int64_t{size};
        unsigned short fitting = FS_NO_GLYPH;
        for (const Variant& choice : choices) {
            if (choice.advanceMeasurement > most)
                break;
            fitting = choice.variantGlyph;
        }
        return fitting;
    }
    int least = size;
    if (least == 0) {
        // Across and along the line alike: callers ask it for operators, which grow both ways.
        if (!constants_)
            return FS_NO_GLYPH;
        least = constants_
                    ->values[static_cast<std::size_t>(FS_MATHConstants::displayOperatorMinHeight)];
    }
    for (const Variant& choice : choices)
        if (choice.advanceMeasurement >= least)
            return choice.variantGlyph;
    return variants.back().variantGlyph;
}

} // namespace KWFontService_NS
