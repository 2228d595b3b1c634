#include "MathTable.h"

#include "LayoutTables.h"

namespace KWTest {

namespace {

using KWFontService_NS::FS_MATHConstants;

std::vector<std::uint16_t> glyphsOf(const auto& records) {
    std::vector<std::uint16_t> glyphs;
    glyphs.reserve(records.size());
    for (const auto& record : records)
        glyphs.push_back(record.glyph);
    return glyphs;
}

} // namespace

Bytes mathConstantsTable(const MathConstants& constants) {
    Bytes table;
    for (int i = 0; i <= static_cast<int>(FS_MATHConstants::radicalDegreeBottomRaisePercent); ++i) {
        const auto constant = static_cast<FS_MATHConstants>(i);
        const auto found = constants.find(constant);
        table.u16(found == constants.end() ? 0 : found->second);
        if (constant >= FS_MATHConstants::mathLeading &&
            constant <= FS_MATHConstants::radicalKernAfterDegree)
            table.u16(0); // deviceOffset
    }
    return table;
}

Bytes MathGlyphInfo::build() const {
    Bytes table;
    table.u16(italicsCorrections.empty() ? 0 : 8, "mathItalicsCorrectionInfoOffset");
    table.u16(0, "mathTopAccentAttachmentOffset");
    table.u16(0, "extendedShapeCoverageOffset");
    table.u16(0, "mathKernInfoOffset");
    if (italicsCorrections.empty())
        return table;
    table.u16(4 + 4 * italicsCorrections.size(), "italicsCorrectionCoverageOffset");
    table.u16(italicsCorrections.size());
    for (const ItalicsCorrection& correction : italicsCorrections)
        table.i16(correction.value).u16(0); // no device table
    return table.bytes(coverageTable(glyphsOf(italicsCorrections), coverageFormat));
}

Bytes MathConstruction::build() const {
    Bytes table;
    table.u16(hasAssembly ? 4 + 4 * variants.size() : 0, "glyphAssemblyOffset");
    table.u16(variants.size());
    for (const MathVariant& variant : variants)
        table.u16(variant.glyph).u16(variant.advance);
    if (hasAssembly) {
        table.i16(0).u16(0); // italics correction
        table.u16(1);        // parts
        table.u16(6).u16(0).u16(0).u16(500).u16(0);
    }
    return table;
}

Bytes MathVariants::build() const {
    std::vector<Bytes> constructions;
    for (const auto* direction : {&vertical, &horizontal})
        for (const MathConstruction& construction : *direction)
            constructions.push_back(construction.build());

    Bytes table;
    table.u16(20, "minConnectorOverlap");
    table.u16(0, "vertGlyphCoverageOffset").u16(0, "horizGlyphCoverageOffset");
    table.u16(vertical.size()).u16(horizontal.size());
    std::size_t offset = table.size() + 2 * constructions.size();
    for (const Bytes& construction : constructions) {
        table.u16(offset);
        offset += construction.size();
    }
    for (const Bytes& construction : constructions)
        table.bytes(construction);
    const auto addCoverage = [&](const char* field, const std::vector<MathConstruction>& of) {
        if (!of.empty())
            table.patchU16At(field, table.size())
                .bytes(coverageTable(glyphsOf(of), coverageFormat));
    };
    addCoverage("vertGlyphCoverageOffset", vertical);
    addCoverage("horizGlyphCoverageOffset", horizontal);
    return table;
}

Bytes Math::build() const {
    Bytes table;
    table.u32(0x00010000).u16(0, "constants").u16(0, "glyphInfo").u16(0, "variants");
    const auto add = [&table](const char* field, const Bytes& record) {
        table.patchU16At(field, table.size()).bytes(record);
    };
    if (constants)
        add("constants", mathConstantsTable(*constants));
    if (glyphInfo)
        add("glyphInfo", glyphInfo->build());
    if (variants)
        add("variants", variants->build());
    return table;
}

} // namespace KWTest
