#pragma once

#include "KWCommon15/KWExport.h"

#include <cstdint>

namespace KWCommonNS {

/// What becomes of a failure. The numbers are part of the interface.
enum class KWErrorLevel : std::uint16_t {
    none = 0,       ///< code 0, no error
    recorded = 896, ///< the failure is kept in a list and the work goes on
    thrown = 1024,  ///< the failure is thrown and ends the work
};

/// Level of a 16-bit error code: `recorded` for 1024 to 1029, 1035, 1935, 1936 and 1942, `none`
/// for 0, `thrown` for every other code. Thread-safe.
KWCOMMON_API KWErrorLevel getErrorLevel(std::uint16_t code) noexcept;

} // namespace KWCommonNS
