#include "CffTable.h"

namespace KWTest {

namespace {

constexpr std::uint16_t kStandardStrings = 391;

// DICT operators; two-byte ones start with the escape
constexpr int kCharset = 15;
constexpr int kEncoding = 16;
constexpr int kCharStrings = 17;
constexpr int kPrivate = 18;
constexpr int kSubrs = 19;
constexpr int kDefaultWidthX = 20;
constexpr int kNominalWidthX = 21;
constexpr int kEscape = 12;
constexpr int kROS = 30;
constexpr int kFDArray = 36;
constexpr int kFDSelect = 37;

// Type 2 operators
constexpr int kHlineto = 6;
constexpr int kEndchar = 14;
constexpr int kRmoveto = 21;

Bytes shortNumber(int value) {
    return Bytes().u8(28).i16(value);
}

Bytes offset(std::size_t value) {
    return cffInteger(static_cast<std::int32_t>(value));
}

/// Where the sections of a table start, 0 where there is none.
struct Places {
    std::size_t encoding = 0;
    std::size_t charset = 0;
    std::size_t fdSelect = 0;
    std::size_t charStrings = 0;
    std::size_t fdArray = 0;
    std::vector<std::size_t> privates{}; // of the Font DICTs, then the Top DICT's own
};

Bytes privateOperator(const CffPrivate& dict, std::size_t at) {
    return Bytes().bytes(offset(dict.wholeDict().size())).bytes(offset(at)).u8(kPrivate);
}

Bytes topDictOf(const CffSections& table, const Places& places) {
    Bytes dict;
    dict.bytes(table.topDict);
    if (table.encoding)
        dict.bytes(offset(places.encoding)).u8(kEncoding);
    if (table.charset)
        dict.bytes(offset(places.charset)).u8(kCharset);
    if (table.fdSelect)
        dict.bytes(offset(places.fdSelect)).u8(kEscape).u8(kFDSelect);
    dict.bytes(offset(places.charStrings)).u8(kCharStrings);
    if (!table.fontDicts.empty())
        dict.bytes(offset(places.fdArray)).u8(kEscape).u8(kFDArray);
    if (table.privateDict)
        dict.bytes(privateOperator(*table.privateDict, places.privates.back()));
    return dict;
}

Bytes fdArrayOf(const CffSections& table, const Places& places) {
    std::vector<Bytes> items;
    for (const CffFontDict& fontDict : table.fontDicts) {
        Bytes& item = items.emplace_back();
        item.bytes(fontDict.dict);
        if (fontDict.privateDict)
            item.bytes(privateOperator(*fontDict.privateDict, places.privates[items.size() - 1]));
    }
    return cffIndex(items);
}

/// Writes the table with the places of the last time; the second time they are right.
Bytes writeTable(const CffSections& table, Places& places) {
    Bytes out;
    out.bytes(table.header).label("names").bytes(cffIndex(table.names));
    out.label("topDict").bytes(cffIndex({topDictOf(table, places)}));
    out.label("strings").bytes(cffIndex(table.strings));
    out.label("globalSubrs").bytes(cffIndex(table.globalSubrs));
    const auto section = [&out](const char* label, const Bytes& bytes, std::size_t& place) {
        place = out.size();
        out.label(label).bytes(bytes);
    };
    if (table.encoding)
        section("encoding", *table.encoding, places.encoding);
    if (table.charset)
        section("charset", *table.charset, places.charset);
    if (table.fdSelect)
        section("fdSelect", *table.fdSelect, places.fdSelect);
    section("charStrings", cffIndex(table.charStrings), places.charStrings);
    if (!table.fontDicts.empty())
        section("fdArray", fdArrayOf(table, places), places.fdArray);
    std::vector<const CffPrivate*> privates;
    for (const CffFontDict& fontDict : table.fontDicts)
        privates.push_back(fontDict.privateDict ? &*fontDict.privateDict : nullptr);
    if (table.privateDict)
        privates.push_back(&*table.privateDict);
    places.privates.resize(privates.size());
    for (std::size_t i = 0; i < privates.size(); ++i) {
        if (privates[i] == nullptr)
            continue;
        const std::string number = std::to_string(i);
        places.privates[i] = out.size();
        out.label("private" + number).bytes(privates[i]->wholeDict());
        if (!privates[i]->subrs.empty())
            out.label("subrs" + number).bytes(cffIndex(privates[i]->subrs));
    }
    return out;
}

} // namespace

Bytes CffPrivate::wholeDict() const {
    if (subrs.empty())
        return dict;
    constexpr std::size_t kOperatorSize = 6;
    return Bytes().bytes(dict).bytes(offset(dict.size() + kOperatorSize)).u8(kSubrs);
}

Bytes CffSections::build() const {
    Places places;
    places.privates.resize(fontDicts.size() + (privateDict ? 1 : 0));
    writeTable(*this, places);
    return writeTable(*this, places);
}

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

Bytes cffReal(std::string_view number) {
    std::vector<int> nibbles;
    for (const char c : number) {
        if (c == '-' && !nibbles.empty() && nibbles.back() == 11)
            nibbles.back() = 12;
        else
            nibbles.push_back(c == '.' ? 10 : c == 'E' ? 11 : c == '-' ? 14 : c - '0');
    }
    nibbles.push_back(15);
    if (nibbles.size() % 2 != 0)
        nibbles.push_back(15);
    Bytes real{30};
    for (std::size_t i = 0; i < nibbles.size(); i += 2)
        real.u8(nibbles[i] * 16 + nibbles[i + 1]);
    return real;
}

Bytes cffROS(int registrySID, int orderingSID, int supplement) {
    return Bytes()
        .bytes(cffInteger(registrySID))
        .bytes(cffInteger(orderingSID))
        .bytes(cffInteger(supplement))
        .u8(kEscape)
        .u8(kROS);
}

Bytes Cff::build() const {
    CffSections table;
    table.names = {Bytes::ofText(fontName)};
    table.charset = Bytes{0};
    for (const Glyph& glyph : glyphs) {
        table.charStrings.push_back(glyph.charstring);
        if (table.charStrings.size() == 1)
            continue; // .notdef stands in no charset
        table.charset->u16(kStandardStrings + table.strings.size());
        table.strings.push_back(Bytes::ofText(glyph.name));
    }
    table.privateDict = CffPrivate{.dict = Bytes()
                                               .bytes(cffInteger(defaultWidthX))
                                               .u8(kDefaultWidthX)
                                               .bytes(cffInteger(nominalWidthX))
                                               .u8(kNominalWidthX)};
    return table.build();
}

CffSections CffCID::sections() const {
    CffSections table;
    table.topDict = cffROS(kStandardStrings, kStandardStrings + 1, 0);
    table.strings = {Bytes::ofText("Adobe"), Bytes::ofText("Identity")};
    table.globalSubrs = globalSubrs;
    table.fontDicts = fontDicts;
    table.charset = Bytes{2};
    Bytes ranges;
    int rangeCount = 0;
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        table.charStrings.push_back(glyphs[i].charstring);
        if (i > 0)
            table.charset->u16(glyphs[i].cid).u16(0);
        if (i == 0 || glyphs[i].fontDict != glyphs[i - 1].fontDict) {
            ranges.u16(i).u8(glyphs[i].fontDict);
            ++rangeCount;
        }
    }
    table.fdSelect = Bytes().u8(3).u16(rangeCount).bytes(ranges).u16(glyphs.size());
    return table;
}

} // namespace KWTest
