#include "common/XmlEncoding.h"

#include <unicode/ucnv.h>

#include <array>
#include <cstddef>
#include <memory>
#include <new>

namespace KWCommonNS {

namespace {

struct ConverterCloser {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

class Decoder {
public:
    enum class Result { character, incomplete, invalid };

    explicit Decoder(const char* name) {
        UErrorCode status = U_ZERO_ERROR;
        converter_.reset(ucnv_open(name, &status));
        ucnv_setToUCallBack(converter_.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                            &status);
        usable_ = U_SUCCESS(status) && isStateless();
    }

    bool isUsable() const { return usable_; }

    Result decode(const char* bytes, std::size_t count, UChar32& c) {
        ucnv_resetToUnicode(converter_.get());
        UErrorCode status = U_ZERO_ERROR;
        const char* at = bytes;
        c = ucnv_getNextUChar(converter_.get(), &at, bytes + count, &status);
        if (status == U_TRUNCATED_CHAR_FOUND)
            return Result::incomplete;
        return U_SUCCESS(status) && at == bytes + count ? Result::character : Result::invalid;
    }

    /// Length of the characters that begin with `lead`; 0 when there are none.
    int lengthAfter(char lead) { return lengthFrom({lead}, 1); }

    std::array<int, 256> lengths{};

private:
    bool isStateless() const {
        switch (ucnv_getType(converter_.get())) {
        case UCNV_SBCS:
        case UCNV_DBCS:
        case UCNV_MBCS:
        case UCNV_LATIN_1:
        case UCNV_US_ASCII:
            return true;
        default:
            return false;
        }
    }

    int lengthFrom(std::array<char, 3> bytes, std::size_t known) {
        if (known == bytes.size())
            return 0;
        std::array<bool, 256> open{};
        for (std::size_t next = 0; next < open.size(); ++next) {
            bytes[known] = static_cast<char>(next);
            UChar32 c = 0;
            const Result result = decode(bytes.data(), known + 1, c);
            if (result == Result::character)
                return static_cast<int>(known + 1);
            open[next] = result == Result::incomplete;
        }
        for (std::size_t next = 0; next < open.size(); ++next) {
            bytes[known] = static_cast<char>(next);
            if (const int length = open[next] ? lengthFrom(bytes, known + 1) : 0; length != 0)
                return length;
        }
        return 0;
    }

    std::unique_ptr<UConverter, ConverterCloser> converter_;
    bool usable_ = false;
};

extern "C" {

static int decodeCharacter(void* data, const char* bytes) {
    auto& decoder = *static_cast<Decoder*>(data);
    const int length = decoder.lengths[static_cast<unsigned char>(*bytes)];
    UChar32 c = 0;
    return decoder.decode(bytes, static_cast<std::size_t>(length), c) == Decoder::Result::character
               ? c
               : -1;
}

static void releaseDecoder(void* data) {
    delete static_cast<Decoder*>(data);
}
}

} // namespace

bool describeEncoding(const char* name, XML_Encoding& encoding) {
    std::unique_ptr<Decoder> decoder(new (std::nothrow) Decoder(name));
    if (decoder == nullptr || !decoder->isUsable())
        return false;
    for (std::size_t byte = 0; byte < 256; ++byte) {
        const char lead = static_cast<char>(byte);
        UChar32 c = 0;
        encoding.map[byte] = -1;
        const Decoder::Result result = decoder->decode(&lead, 1, c);
        if (result == Decoder::Result::character && c <= 0xFFFF) {
            encoding.map[byte] = c;
        } else if (result == Decoder::Result::incomplete) {
            if (const int length = decoder->lengthAfter(lead); length != 0) {
                decoder->lengths[byte] = length;
                encoding.map[byte] = -length;
            }
        }
    }
    encoding.convert = decodeCharacter;
    encoding.release = releaseDecoder;
    encoding.data = decoder.release();
    return true;
}

} // namespace KWCommonNS
