#pragma once

#include "KWCommon15/KWObjectBase.h"

#include <atomic>

namespace KWCommonNS {

/// Base of objects with an intrusive reference count.
///
/// A new object has count 0: it belongs to nobody until somebody calls addRef() or puts it into a
/// KWPtr. Copying an object copies no references. The count may be changed from any thread.
class KWCOMMON_API KWRCObject : public KWObjectBase {
public:
    static constexpr unsigned int kClassId = 0xD18D040AU;

    ~KWRCObject() override;

    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    UnicodeString getClassName() const override;

    /// Adds a reference.
    /// @return the count after it
    int addRef() const;
    /// Drops a reference; the last one destroys the object. Dropping from a count of 0 destroys
    /// an object that nobody ever held.
    /// @return the count that is left; the object is gone when it is 0
    int release() const;
    /// The count at this moment; another thread may change it at once.
    int getRefCount() const;

protected:
    KWRCObject() = default;
    KWRCObject(const KWRCObject& other);
    KWRCObject& operator=(const KWRCObject& other);

private:
    mutable std::atomic<int> refCount_{0};
};

} // namespace KWCommonNS
