#include "CIDFontCipher.h"

#include "NumberText.h"

#include <cstddef>
#include <utility>

namespace typeset {

namespace {

constexpr std::size_t kBytesInLine = 32;

/// The data section of a CIDFont: maps of where charstrings lie, and the charstrings.
class Data {
public:
    explicit Data(std::string bytes) : bytes_(std::move(bytes)) {}

    /// Enciphers what lies between the places that neighbours of a map tell.
    /// @param map     where the map is
    /// @param skip    bytes of an entry before the place
    /// @param width   bytes of the place
    void encipher(std::size_t map, std::size_t skip, std::size_t width, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t entry = map + i * (skip + width) + skip;
            encipher(placeAt(entry, width), placeAt(entry + width + skip, width));
        }
    }
    const std::string& bytes() const { return bytes_; }

private:
    std::size_t placeAt(std::size_t at, std::size_t width) const {
        std::size_t place = 0;
        for (std::size_t i = 0; i < width; ++i)
            place = place << 8 | static_cast<unsigned char>(bytes_.at(at + i));
        return place;
    }
    // Adobe Type 1 Font Format, chapter 7.
    void encipher(std::size_t begin, std::size_t end) {
        unsigned key = 4330;
        for (std::size_t i = begin; i < end; ++i) {
            const unsigned byte = static_cast<unsigned char>(bytes_.at(i)) ^ (key >> 8);
            bytes_[i] = static_cast<char>(byte);
            key = ((byte + key) * 52845 + 22719) & 0xFFFF;
        }
    }

    std::string bytes_;
};

std::size_t numberBehind(const std::string& text, const std::string& key) {
    return std::stoul(text.substr(text.find(key) + key.size(), 10));
}

} // namespace

std::string withCipher(const std::string& font) {
    const std::string lead = " StartData\n";
    const std::size_t start = font.find(lead) + lead.size();
    const std::size_t end = font.find('>', start);
    Data data(bytesOfHex(font.substr(start, end - start)));
    data.encipher(0, numberBehind(font, "/FDBytes "), numberBehind(font, "/GDBytes "),
                  numberBehind(font, "/CIDCount "));
    data.encipher(numberBehind(font, "/SubrMapOffset "), 0, numberBehind(font, "/SDBytes "),
                  numberBehind(font, "/SubrCount "));
    return font.substr(0, start) + hexLines(data.bytes(), kBytesInLine) + font.substr(end);
}

} // namespace typeset
