#pragma once

#include <algorithm>
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
    bool next(std::string_view& line) {
        // Nearly every line lies whole in the piece and ends with LF. The next CR is known, so that
        // a file without any is searched for LF alone.
        const std::size_t length = rest().find('\n');
        if (afterCR_ || length == std::string_view::npos || at_ + length >= nextCR_)
            return nextInPieces(line);
        line = rest().substr(0, std::min(length, longestLine_));
        at_ += length + 1;
        return true;
    }

private:
    std::string_view rest() const { return {piece_.data() + at_, end_ - at_}; }
    bool fill();
    void findCR();
    std::size_t findEnd();
    bool nextInPieces(std::string_view& line);

    std::istream& stream_;
    std::size_t longestLine_;
    Type1LineEnd lineEnd_;
    bool afterCR_ = false;
    std::array<char, 16384> piece_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
    std::size_t nextCR_ = 0; ///< the first one that is a line end; `end_` when there is none
    std::string line_;
};

} // namespace KWFontService_NS
