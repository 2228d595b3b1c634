#pragma once

#include <cstddef>
#include <string>

namespace typeset {

/// A number with at most three decimals.
std::string decimalText(double value);

/// In capital hexadecimal digits.
/// @param bytes  how many bytes the digits stand for
std::string hexText(unsigned value, int bytes);

/// Bytes in hexadecimal digits, in lines.
std::string hexLines(const std::string& bytes, std::size_t bytesInLine);

/// The bytes that hexadecimal digits stand for; other characters count for nothing.
std::string bytesOfHex(const std::string& digits);

} // namespace typeset
