#pragma once

#include "SystemDouble.h"

namespace KWTest {

/// The real system with "/" between the parts of a path, for tests of what a path of posix means.
class UnixPaths final : public SystemDouble {
public:
    char16_t preferredSeparator() override { return u'/'; }
};

} // namespace KWTest
