#include "MetricsFiles.h"

namespace KWTest {

namespace {

void little16(Bytes& bytes, int value) {
    bytes.u8(value & 0xFF).u8((value >> 8) & 0xFF);
}

void little32(Bytes& bytes, std::size_t value) {
    for (int shift = 0; shift < 32; shift += 8)
        bytes.u8((value >> shift) & 0xFF);
}

} // namespace

AfmFile AfmFile::latin() {
    AfmFile file;
    file.charMetrics = {
        "C 32 ; WX 250 ; N space ; B 0 0 0 0 ;",
        "C 65 ; WX 600 ; N A ; B 20 0 580 700 ;",
        "C 66 ; WX 650 ; N B ; B 80 0 600 700 ;",
        "C 194 ; WX 300 ; N acute ; B 100 750 200 900 ;",
        "C -1 ; WX 600 ; N Aacute ; B 20 0 580 900 ;",
    };
    file.kernPairs = {"KPX A B -80", "KPX B A -40"};
    return file;
}

std::string AfmFile::build() const {
    std::vector<std::string> lines = {
        "StartFontMetrics 2.0",       "Comment built for a test",         "FontName " + fontName,
        "FullName " + fullName,       "FamilyName " + familyName,         "Weight " + weight,
        "ItalicAngle " + italicAngle, "EncodingScheme " + encodingScheme, "FontBBox " + fontBBox,
    };
    const auto add = [&](const std::vector<std::string>& more) {
        lines.insert(lines.end(), more.begin(), more.end());
    };
    add(extraLines);
    if (!charMetrics.empty()) {
        lines.push_back("StartCharMetrics " + std::to_string(charMetrics.size()));
        add(charMetrics);
        lines.emplace_back("EndCharMetrics");
    }
    if (!kernPairs.empty()) {
        add({"StartKernData", "StartKernPairs " + std::to_string(kernPairs.size())});
        add(kernPairs);
        add({"EndKernPairs", "EndKernData"});
    }
    lines.emplace_back("EndFontMetrics");
    std::string text;
    for (const std::string& line : lines)
        text += line + lineEnd;
    return text;
}

PfmFile PfmFile::latin() {
    PfmFile file;
    for (int code = file.firstChar; code <= file.lastChar; ++code)
        file.extents.push_back(static_cast<std::uint16_t>(300 + code));
    file.kernPairs = {{'A', 'B', -80}, {'B', 'A', -40}};
    return file;
}

Bytes PfmFile::build() const {
    constexpr std::size_t kExtensionSize = 30;
    constexpr std::size_t kTextMetricsSize = 52;
    const std::size_t textMetrics = kHeaderSize + kExtensionSize;
    const std::size_t names = textMetrics + (hasTextMetrics ? kTextMetricsSize : 0);
    const std::size_t namesSize =
        hasNames ? deviceName.size() + faceName.size() + postScriptName.size() + 3 : 0;
    const std::size_t extentTable = names + namesSize;
    const std::size_t kernTable = extentTable + 2 * extents.size();

    Bytes file;
    little16(file, 0x0100);
    little32(file, kernTable + (kernPairs.empty() ? 0 : 2 + 4 * kernPairs.size()));
    file.text(copyright).zero(66 - file.size());
    for (const int value : {0x81, 10, 300, 300, ascent, internalLeading, 0})
        little16(file, value);
    file.u8(italic ? 1 : 0).u8(0).u8(0);
    little16(file, weight);
    file.u8(charSet);
    little16(file, pixWidth);
    little16(file, pixHeight);
    file.u8(pitchAndFamily);
    little16(file, avgWidth);
    little16(file, maxWidth);
    file.u8(firstChar).u8(lastChar).u8(0).u8(breakChar);
    little16(file, 0);
    little32(file, hasNames ? names : 0);
    little32(file, hasNames ? names + deviceName.size() + 1 : 0);
    file.zero(8);

    little16(file, static_cast<int>(kExtensionSize));
    little32(file, hasTextMetrics ? textMetrics : 0);
    little32(file, extents.empty() ? 0 : extentTable);
    little32(file, 0);
    little32(file, kernPairs.empty() ? 0 : kernTable);
    file.zero(12);

    if (hasTextMetrics) {
        Bytes metrics;
        little16(metrics, static_cast<int>(kTextMetricsSize));
        metrics.zero(10);
        little16(metrics, masterUnits);
        little16(metrics, 700);
        little16(metrics, xHeight);
        metrics.zero(30);
        little16(metrics, static_cast<int>(kernPairs.size()));
        little16(metrics, 0);
        file.bytes(metrics.vector());
    }
    if (hasNames)
        file.text(deviceName).u8(0).text(faceName).u8(0).text(postScriptName).u8(0);
    for (const std::uint16_t width : extents)
        little16(file, width);
    if (!kernPairs.empty()) {
        little16(file, static_cast<int>(kernPairs.size()));
        for (const KernPair& pair : kernPairs) {
            file.u8(pair.first).u8(pair.second);
            little16(file, pair.amount);
        }
    }
    return file;
}

Bytes& patchLittle16(Bytes& bytes, std::size_t offset, int value) {
    return bytes.patchU8At(offset, value & 0xFF).patchU8At(offset + 1, (value >> 8) & 0xFF);
}

Bytes& patchLittle32(Bytes& bytes, std::size_t offset, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8)
        bytes.patchU8At(offset++, (value >> shift) & 0xFF);
    return bytes;
}

} // namespace KWTest
