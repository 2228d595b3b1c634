#pragma once

#include <array>
#include <cstddef>
#include <istream>
#include <string>
#include <string_view>

namespace KWFontService_NS {

/// What ends a line. A CR that does not is one of its characters.
enum class Type1LineEnd {
    LF,
    CROrLF, ///< CRLF counts as one
};

/// Reads a text line by line, without the line ends. Of a line that is longer than the limit the
/// rest is passed by, so memory is bounded whatever the file is.
class Type1Lines {
public:
    Type1Lines(std::istream& stream, std::size_t longestLine, Type1LineEnd lineEnd)
        : stream_(stream), longestLine_(longestLine), lineEnd_(lineEnd) {}

    /// The next line, alive until the next call; false at the end of the stream.
    bool next(std::string_view& line);

private:
    bool fill();
    std::size_t findEnd() const;

    std::istream& stream_;
    std::size_t longestLine_;
    Type1LineEnd lineEnd_;
    bool afterCR_ = false;
    std::array<char, 16384> piece_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
    std::string line_;
};

} // namespace KWFontService_NS
