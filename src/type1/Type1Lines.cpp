#include "type1/Type1Lines.h"

namespace KWFontService_NS {

bool Type1Lines::fill() {
    stream_.read(piece_.data(), static_cast<std::streamsize>(piece_.size()));
    at_ = 0;
    end_ = static_cast<std::size_t>(stream_.gcount());
    return end_ != 0;
}

std::size_t Type1Lines::findEnd() const {
    std::string_view rest(piece_.data() + at_, end_ - at_);
    // One search for each character: these are fast, and a search for either is not.
    rest = rest.substr(0, rest.find('\n'));
    if (lineEnd_ == Type1LineEnd::CROrLF)
        rest = rest.substr(0, rest.find('\r'));
    return at_ + rest.size();
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
        const std::size_t lineEnd = findEnd();
        const std::string_view part(piece_.data() + at_, lineEnd - at_);
        at_ = lineEnd;
        const bool isWhole = at_ != end_;
        if (isWhole)
            afterCR_ = piece_[at_++] == '\r';
        if (isWhole && !isLine) {
            line = part.substr(0, longestLine_);
            return true;
        }
        isLine = true;
        line_.append(part.substr(0, longestLine_ - line_.size()));
        if (isWhole)
            break;
    }
    line = line_;
    return isLine;
}

} // namespace KWFontService_NS
