#include "cff/CFFNumbers.h"

#include "cff/CFFDict.h"
#include "common/ByteView.h"

#include <array>
#include <cstdint>
#include <string>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

namespace {

constexpr std::uint8_t kShortInteger = 28;
constexpr std::uint8_t kDictLongInteger = 29;
constexpr std::uint8_t kDictReal = 30;
constexpr std::uint8_t kFixed = 255;

void writeByte(KWMemStream& output, int byte) {
    output += static_cast<char>(byte);
}

bool isShort(int value) {
    return value >= -0x8000 && value <= 0x7FFF;
}

/// The nibbles of a number's decimal text, with the one that ends it.
std::string nibblesOf(const std::string& text) {
    std::string nibbles;
    for (std::size_t i = 0; i < text.size(); ++i) {
        switch (text[i]) {
        case '-':
            nibbles.push_back(14);
            break;
        case '.':
            nibbles.push_back(10);
            break;
        case 'e':
        case 'E':
            nibbles.push_back(11);
            if (i + 1 < text.size() && text[i + 1] == '-') {
                nibbles.back() = 12;
                ++i;
            }
            break;
        default:
            nibbles.push_back(static_cast<char>(text[i] & 0x0F));
        }
    }
    nibbles.push_back(15);
    if (nibbles.size() % 2 != 0)
        nibbles.push_back(15);
    return nibbles;
}

} // namespace

std::size_t encodeCFFInteger(int value, std::span<std::uint8_t, 5> out) {
    const auto twoBytes = [](std::uint8_t* to, int number) {
        ByteView::storeU16(to, static_cast<std::uint16_t>(number));
    };
    if (value >= -107 && value <= 107) {
        out[0] = static_cast<std::uint8_t>(value + 139);
        return 1;
    }
    if (value >= -1131 && value <= 1131) {
        twoBytes(out.data(), value > 0 ? (247 << 8) + (value - 108) : (251 << 8) + (-value - 108));
        return 2;
    }
    if (isShort(value)) {
        out[0] = kShortInteger;
        twoBytes(&out[1], value);
        return 3;
    }
    out[0] = kFixed;
    ByteView::storeU32(&out[1], static_cast<std::uint32_t>(value));
    return 5;
}

std::size_t encodeDictInteger(int value, std::span<std::uint8_t, 5> out) {
    const std::size_t size = encodeCFFInteger(value, out);
    if (!isShort(value))
        out[0] = kDictLongInteger;
    return size;
}

void writeCFFInteger(KWMemStream& output, int value) {
    std::array<std::uint8_t, 5> bytes;
    output.append(bytes.data(), encodeCFFInteger(value, bytes));
}

void writeDictValue(KWMemStream& output, const KWValue& value) {
    if (value.isName()) {
        const bool isTrue = value.getNameValue() == cffKey(FS_Word::true_) ||
                            value.getNameValue() == KWCommonNS::KWNameEnum::True;
        writeCFFInteger(output, isTrue ? 1 : 0);
    } else if (value.isInteger()) {
        std::array<std::uint8_t, 5> bytes;
        output.append(bytes.data(), encodeDictInteger(value.getIntegerValue(), bytes));
    } else {
        std::string text;
        value.toString().toUTF8String(text);
        const std::string nibbles = nibblesOf(text);
        writeByte(output, kDictReal);
        for (std::size_t i = 0; i < nibbles.size(); i += 2)
            writeByte(output, nibbles[i] * 16 + nibbles[i + 1]);
    }
}

} // namespace KWFontService_NS
