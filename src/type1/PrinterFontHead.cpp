#include "type1/PrinterFontHead.h"

#include "common/AsciiChars.h"
#include "common/KWLimits.h"
#include "common/StreamBytes.h"
#include "type1/PfbSegment.h"
#include "type1/Type1Lines.h"
#include "type1/WeightText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <istream>
#include <span>
#include <vector>

namespace KWFontService_NS {

namespace {

using KWCommonNS::kMaxPrinterFontLine;

/// The rest of a line behind its key, cut to the value.
struct Value {
    std::string_view text;
    std::string_view following; ///< the word behind it
    char opener = 0; ///< the parenthesis, bracket or brace that it stood in, without them here
};

using Handler = bool (*)(PrinterFontHead& head, const Value& value);

struct KeyRow {
    std::string_view key;
    Handler handler;
};

// --- handlers that both forms share -------------------------------------------------------------

bool setPostScriptName(PrinterFontHead& head, const Value& value) {
    std::string_view name = value.text;
    if (name.starts_with('/'))
        name.remove_prefix(1);
    head.postScriptName = textOfBytes(name);
    return true;
}

template <UnicodeString PrinterFontHead::*Field>
bool setText(PrinterFontHead& head, const Value& value) {
    head.*Field = textOfBytes(value.text);
    return true;
}

bool setWeight(PrinterFontHead& head, const Value& value) {
    head.weightName = textOfBytes(value.text);
    head.weight = weightFromText(head.weightName);
    return true;
}

template <float PrinterFontHead::*Field>
bool setNumber(PrinterFontHead& head, const Value& value) {
    head.*Field = leadingNumber(value.text);
    return true;
}

bool setFixedPitch(PrinterFontHead& head, const Value& value) {
    head.isFixedPitch = holdsTrue(value.text);
    return true;
}

bool setFontBBox(PrinterFontHead& head, const Value& value) {
    const auto box = readType1Box(value.text);
    if (box)
        head.fontBBox = *box;
    return box.has_value();
}

void setStandardEncoding(PrinterFontHead& head) {
    head.isStandardEncoding =
        head.encodingName.isEmpty() || head.encodingName == u"StandardEncoding";
}

// --- the two forms ------------------------------------------------------------------------------

bool setPFAEncoding(PrinterFontHead& head, const Value& value) {
    setText<&PrinterFontHead::encodingName>(head, value);
    setStandardEncoding(head);
    head.isSymbolic = !head.isStandardEncoding;
    return true;
}

bool setPFBEncoding(PrinterFontHead& head, const Value& value) {
    setText<&PrinterFontHead::encodingName>(head, value);
    if (value.following != "def")
        head.encodingName = UnicodeString("FontSpecific");
    return true;
}

bool setPFBFontBBox(PrinterFontHead& head, const Value& value) {
    const bool isBox = value.opener == '{' || value.opener == '[';
    return !isBox || setFontBBox(head, value);
}

// Real fonts write `isFixedPitch`, which is another key: of few is the pitch known.
constexpr auto makeKeys(Handler encoding, Handler fontBBox) {
    return std::to_array<KeyRow>({
        {"FontName", setPostScriptName},
        {"FullName", setText<&PrinterFontHead::fullName>},
        {"FamilyName", setText<&PrinterFontHead::familyName>},
        {"Weight", setWeight},
        {"ItalicAngle", setNumber<&PrinterFontHead::italicAngle>},
        {"IsFixedPitch", setFixedPitch},
        {"UnderlinePosition", setNumber<&PrinterFontHead::underlinePosition>},
        {"UnderlineThickness", setNumber<&PrinterFontHead::underlineThickness>},
        {"Encoding", encoding},
        {"FontBBox", fontBBox},
    });
}
constexpr auto kPFAKeys = makeKeys(setPFAEncoding, setFontBBox);
constexpr auto kPFBKeys = makeKeys(setPFBEncoding, setPFBFontBBox);

template <class Keys>
Handler findHandler(const Keys& keys, std::string_view key) {
    const auto found = std::ranges::find(keys, key, &KeyRow::key);
    return found != keys.end() ? found->handler : nullptr;
}

/// The bracket that closes one of the three kinds; 0 for another character.
constexpr char closingBracket(char ch) {
    switch (ch) {
    case '(':
        return ')';
    case '[':
        return ']';
    case '{':
        return '}';
    default:
        return 0;
    }
}

/// What lies between the bracket that a text begins with and the last one that closes it, or the
/// end of the text.
std::string_view insideBrackets(std::string_view text) {
    const std::size_t close = text.rfind(closingBracket(text.front()));
    return close != std::string_view::npos ? text.substr(1, close - 1) : text.substr(1);
}

bool isBracketed(std::string_view text) {
    return !text.empty() && closingBracket(text.front()) != 0;
}

// --- hexadecimal text ---------------------------------------------------------------------------

/// Cuts a word off the end of a text, if it ends in that word.
bool dropLastWord(std::string_view& text, std::string_view word) {
    if (!text.ends_with(word))
        return false;
    const std::string_view rest = text.substr(0, text.size() - word.size());
    if (!rest.empty() && !isType1Separator(rest.back()) &&
        std::string_view(")]}").find(rest.back()) == std::string_view::npos)
        return false;
    text = trimSeparators(rest);
    return true;
}

/// The value as it is assigned, without what assigns it.
std::string_view withoutDefinition(std::string_view text) {
    text = trimSeparators(text);
    if (dropLastWord(text, "def"))
        dropLastWord(text, "readonly");
    else if (!dropLastWord(text, "ND"))
        dropLastWord(text, "|-");
    return text;
}

/// The first word of a line, and what is behind it.
struct Key {
    std::string_view word;
    std::string_view rest;
    bool isGlued = false; ///< a delimiter of PostScript ends it: `/FontBBox{0 0 9 9}`
};

Key cutKey(std::string_view line) {
    Key key{.word = cutWord(line), .rest = line};
    const std::size_t delimiter = key.word.find_first_of("([{/", 1);
    if (delimiter != std::string_view::npos) {
        key.rest = {key.word.data() + delimiter, key.rest.size() + key.word.size() - delimiter};
        key.word = key.word.substr(0, delimiter);
        key.isGlued = true;
    }
    return key;
}

// --- segments -----------------------------------------------------------------------------------

Type1FileError badHeader(const char* what, std::uint8_t byte) {
    char hex[3] = {};
    std::snprintf(hex, sizeof hex, "%02X", unsigned{byte});
    return {FS_ERROR_FONT_FILE, UnicodeString(what).append(UnicodeString(hex))};
}

Value segmentValue(std::string_view rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    Value value;
    if (isBracketed(rest)) {
        value.opener = rest.front();
        value.text = insideBrackets(rest);
    } else {
        value.text = cutWord(rest);
        value.following = cutWord(rest);
    }
    return value;
}

/// The key of a line that begins with a slash, cut off with it.
std::string_view cutSegmentKey(std::string_view& line) {
    line.remove_prefix(1);
    const auto end =
        std::ranges::find_if_not(line, [](char ch) { return KWCommonNS::isAlpha(ch); });
    const std::string_view key = line.substr(0, static_cast<std::size_t>(end - line.begin()));
    line.remove_prefix(key.size());
    return key;
}

/// Cuts a line off the text, and the line ends behind it.
std::string_view cutLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(line.size());
    text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
    return line.substr(0, kMaxPrinterFontLine);
}

std::optional<Type1FileError> readSegment(std::string_view text, PrinterFontHead& head) {
    while (!text.empty()) {
        std::string_view line = cutLine(text);
        if (line.starts_with('/')) {
            const std::string_view key = cutSegmentKey(line);
            const Handler handler = findHandler(kPFBKeys, key);
            if (handler != nullptr && !handler(head, segmentValue(line)))
                return Type1FileError{FS_ERROR_FONT_FILE, textOfBytes(key)};
        } else if (line.starts_with("dup")) {
            head.isSymbolic = true; // an entry of an Encoding of the font's own
        }
    }
    setStandardEncoding(head);
    return std::nullopt;
}

} // namespace

std::optional<Type1FileError> scanPFAHead(std::istream& stream, PrinterFontHead& head) {
    Type1Lines lines(stream, kMaxPrinterFontLine, Type1LineEnd::LF);
    for (std::string_view line; lines.next(line);) {
        const Key key = cutKey(line);
        if (key.word.empty())
            continue;
        const Handler handler =
            key.word.starts_with('/') ? findHandler(kPFAKeys, key.word.substr(1)) : nullptr;
        if (handler != nullptr) {
            Value value;
            value.text = withoutDefinition(key.rest);
            if (handler == setFontBBox && isBracketed(value.text))
                value.text = insideBrackets(value.text);
            const bool isTaken = handler(head, value);
            if (!isTaken && !key.isGlued)
                return Type1FileError{FS_ERROR_FONT_FILE, UnicodeString()};
        }
        // A glued key is strictly another word: its value is a help, and no reason to refuse.
        if ((handler == nullptr || key.isGlued) &&
            line.find("currentfile") != std::string_view::npos)
            break;
    }
    return std::nullopt;
}

std::optional<Type1FileError> scanPFBHead(std::istream& stream, PrinterFontHead& head) {
    std::vector<std::uint8_t> bytes;
    if (KWCommonNS::appendFromStream(stream, kPfbHeaderSize, bytes) < kPfbHeaderSize)
        return Type1FileError{FS_ERROR_FONT_READ, UnicodeString()};
    if (bytes[0] != kPfbMark)
        return badHeader("Header bad signature: ", bytes[0]);
    if (bytes[1] != kPfbText)
        return badHeader("Header bad segmentType: ", bytes[1]);
    const std::uint32_t length =
        pfbLength(std::span(bytes).subspan<kPfbTypeSize, kPfbLengthSize>());
    bytes.clear();
    if (KWCommonNS::appendFromStream(stream, length, bytes) < length)
        return Type1FileError{FS_ERROR_FONT_FILE, UnicodeString("SegmentData read error")};
    return readSegment({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, head);
}

} // namespace KWFontService_NS
