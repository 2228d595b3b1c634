#pragma once

#include "KWCommon15/KWExport.h"

#include <string>

namespace KWCommonNS {

/// A text with its 8-bit form beside it.
///
/// The bytes are UTF-8. A byte `b` that is not part of well-formed UTF-8 is the lone code unit
/// U+DC00 + b (U+DC80 to U+DCFF) in the text, so file names of any bytes come through unharmed
/// both ways. Changing the text through its base class leaves the bytes as they were.
class KWCOMMON_API KWCStr : public UnicodeString {
public:
    /// From bytes up to their NUL; null counts as empty.
    KWCStr(const char* bytes);
    /// From a text. One that has no 8-bit form (a lone surrogate outside U+DC80 to U+DCFF, or a
    /// NUL) leaves the bytes empty and hasBytes() false.
    explicit KWCStr(const UnicodeString& text);
    KWCStr(const KWCStr& other);
    KWCStr& operator=(const KWCStr& other);
    ~KWCStr() override;

    /// The 8-bit form, NUL-terminated; lives as long as this object.
    const char* c_str() const { return bytes_.c_str(); }
    const std::string& getBytes() const { return bytes_; }
    /// False when the text could not be expressed in bytes.
    bool hasBytes() const { return hasBytes_; }

private:
    std::string bytes_;
    bool hasBytes_ = true;
};

} // namespace KWCommonNS
