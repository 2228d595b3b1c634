#include "embed/Type1Subset.h"

#include "type1/GlyphNames.h"
#include "type1/Type1CharString.h"
#include "type1/Type1Cipher.h"
#include "type1/Type1Text.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <charconv>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_set>
#include <utility>
#include <vector>

namespace KWFontService_NS {

namespace {

constexpr std::string_view kNotdef = ".notdef";

/// An entry of CharStrings.
struct Entry {
    std::string_view name;
    std::string_view charString; ///< as it is encrypted
    std::string_view text;       ///< from the slash of the name to the next entry
    bool selected = false;
};

/// Goes through the words of the section.
class Words {
public:
    explicit Words(std::string_view text) : text_(text) {}

    std::size_t at() const { return at_; }
    std::string_view rest() const { return text_.substr(at_); }
    bool startsWith(std::string_view word) const { return rest().starts_with(word); }
    void skip(std::size_t count) { at_ += count; }

    void skipBlanks() {
        while (startsWith(" "))
            ++at_;
    }
    void skipSeparators() {
        while (at_ < text_.size() && isType1Separator(text_[at_]))
            ++at_;
    }
    /// Up to a separator or a slash.
    std::string_view word() {
        const std::size_t start = at_;
        while (at_ < text_.size() && !isType1Separator(text_[at_]) && text_[at_] != '/')
            ++at_;
        return text_.substr(start, at_ - start);
    }
    /// As large as there is for one that is larger; nothing where no digit is.
    std::optional<std::size_t> number() {
        std::size_t value = 0;
        const std::string_view digits = rest();
        const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (result.ec == std::errc::invalid_argument)
            return std::nullopt;
        at_ += static_cast<std::size_t>(result.ptr - digits.data());
        return result.ec == std::errc() ? value : static_cast<std::size_t>(-1);
    }
    /// "ND", "|-", or "def" with what some fonts have before it.
    bool endOfEntry() {
        skipSeparators();
        const std::string_view first = word();
        if (first == "noaccess" || first == "readonly" || first == "executeonly") {
            skipSeparators();
            return word() == "def";
        }
        return !first.empty();
    }

private:
    std::string_view text_;
    std::size_t at_ = 0;
};

/// An encrypted section taken apart: what is before the number of entries, the entries, what is
/// behind them.
struct CharStringsSection {
    std::string_view head;
    std::vector<Entry> entries;
    std::string_view tail;
    int lenIV = static_cast<int>(kType1LeadBytes);

    bool read(std::string_view section);

private:
    bool readEntry(Words& words);
};

bool CharStringsSection::read(std::string_view section) {
    constexpr std::string_view kKey = "/CharStrings";
    constexpr std::string_view kBegin = "dict dup begin";
    constexpr std::string_view kLenIV = "/lenIV";
    const std::size_t key = section.find(kKey);
    if (key == std::string_view::npos)
        return false;
    Words words(section);
    words.skip(key + kKey.size());
    words.skipBlanks();
    head = section.substr(0, words.at());
    const auto count = words.number();
    if (!count || *count == 0 || !words.startsWith(" "))
        return false;
    words.skipBlanks();
    if (!words.startsWith(kBegin))
        return false;
    words.skip(kBegin.size());
    words.skipSeparators();

    const std::size_t lenIVAt = head.find(kLenIV);
    if (lenIVAt != std::string_view::npos)
        lenIV = leadingInteger(head.substr(lenIVAt + kLenIV.size()));

    while (entries.size() < *count && words.startsWith("/")) {
        if (!readEntry(words))
            return false;
    }
    tail = words.rest();
    return !entries.empty();
}

bool CharStringsSection::readEntry(Words& words) {
    const std::string_view text = words.rest();
    const std::size_t start = words.at();
    Entry entry;
    words.skip(1);
    entry.name = words.word();
    words.skipSeparators();
    const auto length = words.number();
    words.skipSeparators();
    // "RD" or "-|", and one blank
    if (!length || words.word().empty() || words.rest().empty())
        return false;
    words.skip(1);
    if (*length > words.rest().size())
        return false;
    entry.charString = words.rest().substr(0, *length);
    words.skip(*length);
    if (!words.endOfEntry())
        return false;
    words.skipSeparators();
    entry.text = text.substr(0, words.at() - start);
    entries.push_back(entry);
    return true;
}

/// Alive as long as what they were taken from.
using Names = std::unordered_set<std::string_view>;

/// Selects the first entry of each name.
void select(std::vector<Entry>& entries, Names names) {
    for (Entry& entry : entries) {
        if (names.empty())
            break;
        const auto found = names.find(entry.name);
        if (found == names.end())
            continue;
        entry.selected = true;
        names.erase(found);
    }
}

void selectCodes(std::vector<Entry>& entries, std::string_view codes,
                 const Type1CodeNames& source) {
    std::array<std::string, 256> nameOfCode; // what `names` refers to
    std::bitset<256> seen;
    Names names;
    for (const char ch : codes) {
        const auto code = static_cast<unsigned char>(ch);
        if (seen.test(code))
            continue;
        seen.set(code);
        nameOfCode[code] = source.nameOf(code);
        if (!nameOfCode[code].empty())
            names.insert(nameOfCode[code]);
    }
    select(entries, std::move(names));
}

class SeacReader {
public:
    explicit SeacReader(int lenIV) : lenIV_(lenIV) {}

    std::optional<Type1Seac> read(std::string_view charString) {
        bytes_.assign(charString.begin(), charString.end());
        if (lenIV_ < 0) // not encrypted
            return findType1Seac(bytes_);
        type1Decrypt(bytes_, kCharStringKey);
        const auto lead = static_cast<std::size_t>(lenIV_);
        return lead < bytes_.size() ? findType1Seac(std::span(bytes_).subspan(lead)) : std::nullopt;
    }

private:
    int lenIV_;
    std::vector<std::uint8_t> bytes_;
};

void addPart(int code, Names& names) {
    constexpr int kLastByte = 0xFF;
    if (code < 0 || code > kLastByte)
        return;
    const std::string_view name = standardName(static_cast<std::uint8_t>(code));
    if (!name.empty())
        names.insert(name);
}

/// The names of the parts that the selected glyphs are made of.
Names partsOf(const CharStringsSection& section) {
    Names names;
    SeacReader reader(section.lenIV);
    for (const Entry& entry : section.entries) {
        if (!entry.selected)
            continue;
        if (const auto seac = reader.read(entry.charString)) {
            addPart(seac->base, names);
            addPart(seac->accent, names);
        }
    }
    return names;
}

} // namespace

std::string Type1CodeNames::nameOf(unsigned char code) const {
    std::string name;
    if (fontNumber == 0 && builtInNames != nullptr) {
        const auto found = builtInNames->find(code);
        if (found != builtInNames->end() && !found->second.empty())
            return found->second;
    }
    if (codes != nullptr && codes->getType1GlyphName(fontNumber, code, name) && !name.empty())
        return name;
    const Type1CharMetric* const metric = metrics != nullptr ? metrics->findCode(code) : nullptr;
    if (metric != nullptr && !metric->name.empty())
        return metric->name;
    return fontNumber == 0 ? std::string(standardName(code)) : std::string();
}

bool subsetEexecSection(std::string_view section, std::string_view codes,
                        const Type1CodeNames& names, KWMemStream& output) {
    CharStringsSection parts;
    if (!parts.read(section))
        return false;
    for (Entry& entry : parts.entries)
        entry.selected = entry.name == kNotdef;
    selectCodes(parts.entries, codes, names);
    select(parts.entries, partsOf(parts));

    const auto write = [&output](std::string_view text) {
        output.append(text.data(), text.size());
    };
    const auto count = std::ranges::count(parts.entries, true, &Entry::selected);
    write(parts.head);
    output += std::to_string(count) + " dict dup begin\n";
    for (const Entry& entry : parts.entries) {
        if (entry.selected)
            write(entry.text);
    }
    write(parts.tail);
    return !output.fail();
}

} // namespace KWFontService_NS
