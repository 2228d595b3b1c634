#pragma once

#include "KWCommon15/KWExport.h"

namespace KWCommonNS {

/// Root of the counted objects: class identity without run-time type information.
///
/// A descendant overrides all three operations; `isKindOf` asks its own id first and then its
/// base's `isKindOf`.
class KWCOMMON_API KWObjectBase {
public:
    static constexpr unsigned int kClassId = 0xDF537371U;

    virtual ~KWObjectBase();

    /// Id of the object's most derived class.
    virtual unsigned int getClassId() const;
    /// True for the object's own class id and those of its bases.
    virtual bool isKindOf(unsigned int id) const;
    /// Name of the object's most derived class.
    virtual UnicodeString getClassName() const;

protected:
    KWObjectBase() = default;
    KWObjectBase(const KWObjectBase&) = default;
    KWObjectBase& operator=(const KWObjectBase&) = default;
};

} // namespace KWCommonNS
