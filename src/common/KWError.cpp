#include "KWCommon15/KWError.h"

namespace KWCommonNS {

KWError::KWError() = default;

KWError::KWError(std::uint16_t code, const UnicodeString& message, const UnicodeString& secondText,
                 int firstValue, int secondValue, const UnicodeString& thirdText)
    : code_(code), message_(message), secondText_(secondText), firstValue_(firstValue),
      secondValue_(secondValue), thirdText_(thirdText) {}

KWError::KWError(const KWError& other) = default;
KWError& KWError::operator=(const KWError& other) = default;
KWError::~KWError() = default;

void KWError::clear() {
    *this = KWError();
}

} // namespace KWCommonNS
