#include "type1/Type1Lines.h"

#include <algorithm>

namespace KWFontService_NS {

bool Type1Lines::fill() {
    stream_.read(piece_.data(), static_cast<std::streamsize>(piece_.size()));
    at_ = 0;
    end_ = static_cast<std::size_t>(stream_.gcount());
    findCR();
    return end_ != 0;
}

void Type1Lines::findCR() {
    nextCR_ = end_;
    if (lineEnd_ == Type1LineEnd::CROrLF)
        nextCR_ = at_ + std::min(rest().find('\r'), end_ - at_);
}

std::size_t Type1Lines::findEnd() {
    if (nextCR_ < at_)
        findCR();
    return std::min(at_ + std::min(rest().find('\n'), end_ - at_), nextCR_);
}

bool Type1Lines::nextInPieces(std::string_view& line) {
    line_.clear();
    bool isLine = false;
    while (at_ != end_ || fill()) {
        if (afterCR_ && piece_[at_] == '\n') {
            afterCR_ = false;
            ++at_;
            continue;
        }
        const std::size_t lineEnd = findEnd();
        const std::string_view part(piece_.data() + at_, lineEnd - at_);
        const bool isWhole = lineEnd != end_;
        afterCR_ = isWhole && lineEnd == nextCR_;
        at_ = lineEnd + (isWhole ? 1 : 0);
        isLine = true;
        line_.append(part.substr(0, longestLine_ - line_.size()));
        if (isWhole)
            break;
    }
    line = line_;
    return isLine;
}

} // namespace KWFontService_NS
