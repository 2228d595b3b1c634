#include "KWCommon15/KWNamedValue.h"

#include <algorithm>

namespace KWCommonNS {

const KWValue& KWNamedValueMap::get(KWName name) const {
    const auto at = std::ranges::lower_bound(entries_, name, {}, &KWNamedValue::name);
    return at != entries_.end() && at->name == name ? at->value : NULL_VALUE;
}

void KWNamedValueMap::set(KWName name, KWValue value) {
    const bool append = entries_.empty() || entries_.back().name < name;
    const auto at =
        append ? entries_.end() : std::ranges::lower_bound(entries_, name, {}, &KWNamedValue::name);
    const bool known = at != entries_.end() && at->name == name;
    if (value.isNull()) {
        if (known)
            entries_.erase(at);
    } else if (known) {
        at->value = std::move(value);
    } else {
        entries_.insert(at, {name, std::move(value)});
    }
}

bool KWNamedValueMapIterator::next() {
    atEnd_ = !hasNext();
    if (atEnd_)
        return false;
    ++next_;
    return true;
}

const KWNamedValue* KWNamedValueMapIterator::current() const {
    if (atEnd_ || next_ == 0 || next_ > map_->size())
        return nullptr;
    return &map_->begin()[static_cast<std::ptrdiff_t>(next_ - 1)];
}

KWName KWNamedValueMapIterator::getName() const {
    const KWNamedValue* entry = current();
    return entry ? entry->name : KWName();
}

const KWValue& KWNamedValueMapIterator::getValue() const {
    const KWNamedValue* entry = current();
    return entry ? entry->value : NULL_VALUE;
}

} // namespace KWCommonNS
