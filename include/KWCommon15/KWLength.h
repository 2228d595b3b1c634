#pragma once

namespace KWCommonNS {

/// A length in ems. Not a number (`KWUtil::getNaNf`) where there is no length to give.
using KWLength = float;

} // namespace KWCommonNS
