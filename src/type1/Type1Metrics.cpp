#include "type1/Type1Metrics.h"

#include <utility>

namespace KWFontService_NS {

Type1Metrics::Type1Metrics(std::vector<Type1CharMetric> records) : records_(std::move(records)) {}

void Type1Metrics::addCode(int code, std::size_t place) {
    byCode_.emplace(code, place);
}

void Type1Metrics::addName(std::size_t place) {
    byName_.emplace(records_[place].name, place);
}

void Type1Metrics::addAll() {
    byCode_.reserve(records_.size());
    byName_.reserve(records_.size());
    for (std::size_t place = 0; place < records_.size(); ++place) {
        addName(place);
        if (records_[place].code != Type1CharMetric::kUnencoded)
            addCode(records_[place].code, place);
    }
}

const Type1CharMetric* Type1Metrics::findCode(int code) const {
    const auto found = byCode_.find(code);
    return found != byCode_.end() ? &records_[found->second] : nullptr;
}

const Type1CharMetric* Type1Metrics::findName(std::string_view name) const {
    const auto found = byName_.find(name);
    return found != byName_.end() ? &records_[found->second] : nullptr;
}

} // namespace KWFontService_NS
