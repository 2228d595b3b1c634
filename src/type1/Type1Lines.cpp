#include "type1/Type1Lines.h"

#include <algorithm>

namespace KWFontService_NS {

bool Type1Lines::fill() {
    stream_.read(piece_.data(), static_cast<std::streamsize>(piece_.size()));
    at_ = 0;
    end_ = static_cast<std::size_t>(stream_.gcount());
    return end_ != 0;
}

std::size_t Type1Lines::findEnd() const {
    const std::string_view rest(piece_.data() + at_, end_ - at_);
    const std::size_t found =
        lineEnd_ == Type1LineEnd::LF ? rest.find('\n') : rest.find_first_of("\r\n");
    return found != std::string_view::npos ? at_ + found : end_;
}

bool Type1Lines::next(std::string_view& line) {
    line_.clear();
    bool isLine = false;
    while (at_ != end_ || fill()) {
        if (afterCR_ && piece_[at_] == '\n') {
            afterCR_ = false;
            ++at_;
            continue;
        }
        afterCR_ = false;
        isLine = true;
        const std::size_t lineEnd = findEnd();
        line_.append(piece_.data() + at_, std::min(lineEnd - at_, longestLine_ - line_.size()));
        at_ = lineEnd;
        if (at_ == end_)
            continue;
        afterCR_ = piece_[at_++] == '\r';
        break;
    }
    line = line_;
    return isLine;
}

} // namespace KWFontService_NS
