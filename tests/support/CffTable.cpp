#include "CffTable.h"

namespace KWTest {

namespace {

constexpr std::uint16_t kStandardStrings = 391;

// DICT operators
constexpr int kCharset = 15;
constexpr int kCharStrings = 17;
constexpr int kPrivate = 18;
constexpr int kDefaultWidthX = 20;
constexpr int kNominalWidthX = 21;

// Type 2 operators
constexpr int kHlineto = 6;
constexpr int kEndchar = 14;
constexpr int kRmoveto = 21;

Bytes shortNumber(int value) {
    return Bytes().u8(28).i16(value);
}

Bytes topDict(std::size_t charsetAt, std::size_t charStringsAt, std::size_t privateSize,
              std::size_t privateAt) {
    const auto offset = [](std::size_t value) {
        return cffInteger(static_cast<std::int32_t>(value));
    };
    return Bytes()
        .bytes(offset(charsetAt))
        .u8(kCharset)
        .bytes(offset(charStringsAt))
        .u8(kCharStrings)
        .bytes(offset(privateSize))
        .bytes(offset(privateAt))
        .u8(kPrivate);
}

} // namespace

Bytes cffIndex(const std::vector<Bytes>& objects) {
    Bytes index;
    index.u16(objects.size());
    if (objects.empty())
        return index;
    std::size_t dataSize = 0;
    for (const Bytes& object : objects)
        dataSize += object.size();
    const std::size_t offSize = dataSize < 0xFF ? 1 : dataSize < 0xFFFF ? 2 : 4;
    const auto putOffset = [&](std::size_t offset) {
        if (offSize == 1)
            index.u8(offset);
        else if (offSize == 2)
            index.u16(offset);
        else
            index.u32(offset);
    };
    index.u8(offSize);
    std::size_t offset = 1; // offsets count from the byte before the data
    putOffset(offset);
    for (const Bytes& object : objects) {
        offset += object.size();
        putOffset(offset);
    }
    for (const Bytes& object : objects)
        index.bytes(object);
    return index;
}

Bytes cffInteger(std::int32_t value) {
    return Bytes().u8(29).i32(value);
}

Bytes rectangleCharstring(int widthDifference, int xMin, int yMin, int xMax, int yMax) {
    Bytes charstring = shortNumber(widthDifference);
    if (xMin == xMax || yMin == yMax)
        return charstring.u8(kEndchar);
    return charstring.bytes(shortNumber(xMin))
        .bytes(shortNumber(yMin))
        .u8(kRmoveto)
        .bytes(shortNumber(xMax - xMin))
        .bytes(shortNumber(yMax - yMin))
        .bytes(shortNumber(xMin - xMax))
        .u8(kHlineto)
        .u8(kEndchar);
}

Bytes Cff::build() const {
    std::vector<Bytes> names;
    std::vector<Bytes> charstrings;
    Bytes charset;
    charset.u8(0);
    for (const Glyph& glyph : glyphs) {
        charstrings.push_back(glyph.charstring);
        if (charstrings.size() == 1)
            continue; // .notdef stands in no charset
        charset.u16(kStandardStrings + names.size());
        names.push_back(Bytes::ofText(glyph.name));
    }
    const Bytes charStringsIndex = cffIndex(charstrings);
    const Bytes privateDict = Bytes()
                                  .bytes(cffInteger(defaultWidthX))
                                  .u8(kDefaultWidthX)
                                  .bytes(cffInteger(nominalWidthX))
                                  .u8(kNominalWidthX);

    const Bytes header{1, 0, 4, 4};
    const Bytes nameIndex = cffIndex({Bytes::ofText(fontName)});
    const Bytes stringIndex = cffIndex(names);
    const Bytes globalSubrs = cffIndex({});

    const std::size_t topDictIndexSize = cffIndex({topDict(0, 0, 0, 0)}).size();
    const std::size_t charsetAt = header.size() + nameIndex.size() + topDictIndexSize +
                                  stringIndex.size() + globalSubrs.size();
    const std::size_t charStringsAt = charsetAt + charset.size();
    const std::size_t privateAt = charStringsAt + charStringsIndex.size();

    return Bytes()
        .bytes(header)
        .bytes(nameIndex)
        .bytes(cffIndex({topDict(charsetAt, charStringsAt, privateDict.size(), privateAt)}))
        .bytes(stringIndex)
        .bytes(globalSubrs)
        .bytes(charset)
        .bytes(charStringsIndex)
        .bytes(privateDict);
}

} // namespace KWTest
