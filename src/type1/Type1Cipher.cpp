#include "type1/Type1Cipher.h"

#include <vector>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

namespace {

constexpr unsigned int kMultiplier = 52845;
constexpr unsigned int kIncrement = 22719;

std::uint16_t nextKey(std::uint16_t key, std::uint8_t cipher) {
    return static_cast<std::uint16_t>((cipher + key) * kMultiplier + kIncrement);
}

using Cipher = void (*)(std::span<std::uint8_t>, std::uint16_t);

void applyTo(KWMemStream& stream, Cipher cipher, std::uint16_t key) {
    const std::size_t size = stream.size();
    const char* const contents = stream.data();
    std::vector<std::uint8_t> bytes;
    if (contents != nullptr)
        bytes.assign(contents, contents + size);
    cipher(bytes, key);
    stream.clear();
    stream.seekp(0);
    stream.write(reinterpret_cast<const char*>(bytes.data()),
                 static_cast<std::streamsize>(bytes.size()));
    stream.seekp(0);
    stream.seekg(0);
}

} // namespace

void type1Decrypt(std::span<std::uint8_t> bytes, std::uint16_t key) {
    for (std::uint8_t& byte : bytes) {
        const std::uint8_t cipher = byte;
        byte = static_cast<std::uint8_t>(cipher ^ (key >> 8));
        key = nextKey(key, cipher);
    }
}

void type1Encrypt(std::span<std::uint8_t> bytes, std::uint16_t key) {
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(byte ^ (key >> 8));
        key = nextKey(key, byte);
    }
}

void eexecDecrypt(KWMemStream& stream) {
    applyTo(stream, type1Decrypt, kEexecKey);
}
void eexecEncrypt(KWMemStream& stream) {
    applyTo(stream, type1Encrypt, kEexecKey);
}
void charStringDecrypt(KWMemStream& stream) {
    applyTo(stream, type1Decrypt, kCharStringKey);
}

} // namespace KWFontService_NS
