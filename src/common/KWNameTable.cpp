#include "KWCommon15/KWNameTable.h"

#include "KWCommon15/KWEmptyString.h"
#include "common/CssChars.h"
#include "common/TextView.h"

#include <array>
#include <deque>
#include <iterator>
#include <mutex>
#include <shared_mutex>
#include <string_view>
#include <unordered_map>

namespace KWCommonNS {

namespace {

struct CommonName {
    KWNameEnum name;
    std::u16string_view text;
};

constexpr CommonName kCommonNames[] = {
    {KWNameEnum::Normal, u"normal"}, {KWNameEnum::False, u"false"}, {KWNameEnum::No, u"no"},
    {KWNameEnum::True, u"true"},     {KWNameEnum::Yes, u"yes"},     {KWNameEnum::Off, u"off"},
    {KWNameEnum::On, u"on"},
};

constexpr std::size_t kFirstInterned = 0x10000;

class SharedNames {
public:
    SharedNames() {
        for (std::size_t i = 0; i < commonTexts_.size(); ++i)
            commonTexts_[i] = toText(kCommonNames[i].text);
    }

    const UnicodeString& text(KWNameEnum name) const {
        const auto number = static_cast<std::int32_t>(name);
        if (number >= static_cast<std::int32_t>(kFirstInterned)) {
            const std::size_t index = static_cast<std::size_t>(number) - kFirstInterned;
            const std::shared_lock lock(lock_);
            return index < texts_.size() ? texts_[index] : KWEmptyString::getEmptyString();
        }
        for (std::size_t i = 0; i < commonTexts_.size(); ++i) {
            if (kCommonNames[i].name == name)
                return commonTexts_[i];
        }
        return KWEmptyString::getEmptyString();
    }

    KWNameEnum intern(const UnicodeString& text) {
        {
            const std::shared_lock lock(lock_);
            if (const auto known = names_.find(toView(text)); known != names_.end())
                return known->second;
        }
        const std::unique_lock lock(lock_);
        if (const auto known = names_.find(toView(text)); known != names_.end())
            return known->second;
        const auto name = static_cast<KWNameEnum>(kFirstInterned + texts_.size());
        // A copy of its own: the caller's text may alias memory that does not live as long.
        const UnicodeString& kept = texts_.emplace_back(text.getBuffer(), text.length());
        names_.emplace(toView(kept), name);
        return name;
    }

private:
    std::array<UnicodeString, std::size(kCommonNames)> commonTexts_;
    mutable std::shared_mutex lock_;
    std::deque<UnicodeString> texts_; // never moves an element, so views of them stay valid
    std::unordered_map<std::u16string_view, KWNameEnum> names_;
};

/// Never destroyed: objects that die at process exit may still ask for names.
SharedNames& sharedNames() {
    static SharedNames& names = *new SharedNames;
    return names;
}

} // namespace

const UnicodeString& KWNameTable::getSharedNameString(KWNameEnum name) {
    return sharedNames().text(name);
}

KWNameEnum KWNameTable::findCommonName(const UnicodeString& text) {
    for (const CommonName& row : kCommonNames) {
        if (row.text == toView(text))
            return row.name;
    }
    return KWNameEnum::None;
}

KWNameEnum KWNameTable::findKeyword(const UnicodeString& text) {
    for (const CommonName& row : kCommonNames) {
        if (equalsWord(toView(text), row.text))
            return row.name;
    }
    return KWNameEnum::None;
}

KWNameEnum KWNameTable::intern(const UnicodeString& text) {
    if (text.isEmpty())
        return KWNameEnum::None;
    const KWNameEnum common = findCommonName(text);
    return common == KWNameEnum::None ? sharedNames().intern(text) : common;
}

} // namespace KWCommonNS
