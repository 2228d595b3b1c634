#include "KWCommon15/KWErrorLevel.h"

#include <algorithm>
#include <array>

namespace KWCommonNS {

namespace {

constexpr std::array<std::uint16_t, 10> kRecordedCodes = {1024, 1025, 1026, 1027, 1028,
                                                          1029, 1035, 1935, 1936, 1942};

} // namespace

KWErrorLevel getErrorLevel(std::uint16_t code) noexcept {
    if (code == 0)
        return KWErrorLevel::none;
    return std::ranges::binary_search(kRecordedCodes, code) ? KWErrorLevel::recorded
                                                            : KWErrorLevel::thrown;
}

} // namespace KWCommonNS
