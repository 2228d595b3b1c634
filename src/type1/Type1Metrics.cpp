#include "type1/Type1Metrics.h"

#include <utility>

namespace KWFontService_NS {

Type1Metrics::Type1Metrics(std::vector<Type1CharMetric> records) : records_(std::move(records)) {}

void Type1Metrics::addCode(int code, std::size_t place) {
    byCode_.add(code, place);
}

void Type1Metrics::addName(std::size_t place) {
    byName_.add(records_[place].name, place);
}

void Type1Metrics::sort() {
    byCode_.sort();
    byName_.sort();
}

void Type1Metrics::addAll() {
    byCode_.reserve(records_.size());
    byName_.reserve(records_.size());
    for (std::size_t place = 0; place < records_.size(); ++place) {
        addName(place);
        if (records_[place].code != Type1CharMetric::kUnencoded)
            addCode(records_[place].code, place);
    }
    sort();
}

const Type1CharMetric* Type1Metrics::findCode(int code) const {
    return recordAt(byCode_.find(code, records_.size()));
}

const Type1CharMetric* Type1Metrics::findName(std::string_view name) const {
    return recordAt(byName_.find(name, records_.size()));
}

} // namespace KWFontService_NS
