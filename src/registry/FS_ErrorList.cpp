#include "registry/FS_ErrorList.h"

#include "common/KWLimits.h"

namespace KWFontService_NS {

void FS_ErrorList::append(const KWError& error) {
    const std::lock_guard guard(lock_);
    if (errors_.size() < KWCommonNS::kMaxRecordedErrors)
        errors_.push_back(error);
}

std::size_t FS_ErrorList::size() const {
    const std::lock_guard guard(lock_);
    return errors_.size();
}

std::optional<KWError> FS_ErrorList::get(std::size_t index) const {
    const std::lock_guard guard(lock_);
    if (index >= errors_.size())
        return std::nullopt;
    return errors_[index];
}

} // namespace KWFontService_NS
