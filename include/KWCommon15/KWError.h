#pragma once

#include "KWCommon15/KWErrorLevel.h"
#include "KWCommon15/KWExport.h"

#include <cstdint>

namespace KWCommonNS {

/// Error codes that the companion library itself raises. Other libraries have ranges of their own.
enum KWErrorCode : std::uint16_t {
    KWERR_NONE = 0,        ///< no error
    KWERR_XML_SYNTAX = 900 ///< an XML text does not parse, or goes past a limit of the parser
};

/// An error record: a plain value that is copied, assigned and thrown.
class KWCOMMON_API KWError {
public:
    /// No error: code 0, empty texts, -1 for both numbers.
    KWError();
    /// @param code        what happened; 0 means no error
    /// @param message     text for people
    /// @param secondText  further text, "" when there is none
    /// @param firstValue  a number that goes with it, -1 when there is none
    /// @param secondValue another one, -1 when there is none
    /// @param thirdText   further text, "" when there is none
    explicit KWError(std::uint16_t code, const UnicodeString& message = UnicodeString(),
                     const UnicodeString& secondText = UnicodeString(), int firstValue = -1,
                     int secondValue = -1, const UnicodeString& thirdText = UnicodeString());
    KWError(const KWError& other);
    KWError& operator=(const KWError& other);
    virtual ~KWError();

    std::uint16_t getCode() const { return code_; }
    const UnicodeString& getMessage() const { return message_; }
    const UnicodeString& getSecondText() const { return secondText_; }
    /// Line for KWERR_XML_SYNTAX, counted from 1; -1 when there is none.
    int getFirstValue() const { return firstValue_; }
    /// Column for KWERR_XML_SYNTAX, counted from 1; -1 when there is none.
    int getSecondValue() const { return secondValue_; }
    const UnicodeString& getThirdText() const { return thirdText_; }
    /// Level of the code, as getErrorLevel() has it.
    KWErrorLevel getLevel() const { return getErrorLevel(code_); }
    /// True when the code is not 0.
    bool isError() const { return code_ != KWERR_NONE; }
    /// Back to no error.
    void clear();

private:
    std::uint16_t code_ = KWERR_NONE;
    UnicodeString message_;
    UnicodeString secondText_;
    int firstValue_ = -1;
    int secondValue_ = -1;
    UnicodeString thirdText_;
};

} // namespace KWCommonNS
