#pragma once

#include <cstdint>

namespace KWCommonNS {

/// The numbers of the common names.
///
/// 0 is no name. Numbers from 1 to 1023 belong to the program: the library gives none of them a
/// text, so a program with a keyword table of its own may use its numbers as keys of a compound
/// value. Numbers from 0x10000 on are given to interned texts at run time.
enum class KWNameEnum : std::int32_t {
    None = 0,
    Normal = 1098,
    False = 1120,
    No = 1121,
    True = 1122,
    Yes = 1123,
    Off = 2358,
    On = 2360,
};

} // namespace KWCommonNS
