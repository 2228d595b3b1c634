#pragma once

#include <ios>
#include <istream>
#include <sstream>
#include <string>

namespace KWTest {

/// Gives a text, and then breaks.
class BreakingStream : private std::stringbuf, public std::istream {
public:
    explicit BreakingStream(const std::string& text)
        : std::stringbuf(text), std::istream(static_cast<std::stringbuf*>(this)) {}

private:
    std::stringbuf::int_type underflow() override { throw 1; }
};

/// Reads and does not seek.
class UnseekableStream : private std::stringbuf, public std::istream {
public:
    explicit UnseekableStream(const std::string& text)
        : std::stringbuf(text), std::istream(static_cast<std::stringbuf*>(this)) {}

private:
    std::stringbuf::pos_type seekpos(std::stringbuf::pos_type, std::ios::openmode) override {
        return {std::stringbuf::off_type(-1)};
    }
};

} // namespace KWTest
