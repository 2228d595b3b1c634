#include "type1/Type1Cipher.h"

#include "support/Rng.h"
#include "support/Type1Font.h"

#include <gtest/gtest.h>

#include <vector>

namespace KWFontService_NS {
namespace {

using KWCommonNS::KWMemStream;
using KWTest::Bytes;
using KWTest::type1Encrypted;

Bytes bytesOf(KWMemStream& stream) {
    Bytes bytes;
    for (std::size_t i = 0; i < stream.size(); ++i)
        bytes.u8(static_cast<unsigned char>(stream.data()[i]));
    return bytes;
}

void fill(KWMemStream& stream, const Bytes& bytes) {
    stream.append(bytes.data(), bytes.size());
}

TEST(Type1Cipher, TheFirstStepsAreThoseOfTheFormat) {
    // c = 0 ^ (55665 >> 8); r = (c + 55665) * 52845 + 22719 = 44588 mod 65536 ...
    std::vector<std::uint8_t> bytes(3);
    type1Encrypt(bytes, kEexecKey);
    unsigned int r = 55665;
    for (const std::uint8_t byte : bytes) {
        EXPECT_EQ(byte, r >> 8);
        r = ((byte + r) * 52845U + 22719U) & 0xFFFF;
    }
    EXPECT_EQ(bytes[0], 0xD9);
}

TEST(Type1Cipher, AnEexecSectionIsDecryptedInPlaceWithItsLeadBytes) {
    const Bytes plain = Bytes::ofText("dup /Private 8 dict dup begin");
    KWMemStream stream;
    fill(stream, type1Encrypted(plain, 55665));
    stream.seekg(7);
    eexecDecrypt(stream);
    EXPECT_EQ(bytesOf(stream).slice(4, plain.size()), plain);
    EXPECT_EQ(stream.size(), plain.size() + 4);
    EXPECT_EQ(stream.tellg(), 0);
}

TEST(Type1Cipher, EncryptionBringsTheSameBytesBack) {
    KWTest::Rng random(7);
    Bytes plain;
    for (int i = 0; i < 1000; ++i)
        plain.u8(random.below(256));
    const Bytes cipher = type1Encrypted(plain, 55665);
    KWMemStream stream;
    fill(stream, cipher);
    eexecDecrypt(stream);
    EXPECT_FALSE(bytesOf(stream) == cipher);
    eexecEncrypt(stream);
    EXPECT_EQ(bytesOf(stream), cipher);
}

TEST(Type1Cipher, CharstringsHaveAKeyOfTheirOwn) {
    KWMemStream stream;
    fill(stream, type1Encrypted(Bytes{139, 13, 14}, 4330));
    charStringDecrypt(stream);
    EXPECT_EQ(bytesOf(stream).slice(4, 3), (Bytes{139, 13, 14}));
}

TEST(Type1Cipher, NothingStaysNothing) {
    KWMemStream stream;
    eexecDecrypt(stream);
    eexecEncrypt(stream);
    EXPECT_EQ(stream.size(), 0U);
}

} // namespace
} // namespace KWFontService_NS
