#pragma once

#include "layout/LayoutArrays.h"

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace KWFontService_NS {

/// What a context does at one of its glyphs (OpenType, Sequence Lookup Record).
struct TTI_LookupRecord {
    /// Counts the glyphs of the input.
    std::uint16_t sequenceIndex;
    std::uint16_t lookupListIndex;
};

/// The lookup records of a rule, read in place.
class TTI_LookupRecords {
public:
    static constexpr std::size_t kRecordSize = 4;

    TTI_LookupRecords() = default;
    /// @param data  `count` records
    TTI_LookupRecords(const std::uint8_t* data, std::size_t count) : words_(data, 2 * count) {}

    std::size_t size() const { return words_.size() / 2; }
    /// @param i  below `size()`
    TTI_LookupRecord operator[](std::size_t i) const { return {words_[2 * i], words_[2 * i + 1]}; }

private:
    U16List words_;
};

/// A rule of a context: glyph ids in format 1, classes in format 2.
struct TTI_ContextRule {
    /// What follows the first glyph.
    U16List input;
    TTI_LookupRecords records;

    /// Nothing when the rule counts no input or does not lie in the table whole.
    static std::optional<TTI_ContextRule> read(KWCommonNS::ByteView rule);
};

/// A rule of a chain context.
struct TTI_ChainContextRule {
    /// From the glyph before the first one backwards.
    U16List backtrack;
    /// What follows the first glyph.
    U16List input;
    U16List lookahead;
    TTI_LookupRecords records;

    /// Nothing when the rule counts no input or does not lie in the table whole.
    static std::optional<TTI_ChainContextRule> read(KWCommonNS::ByteView rule);
};

/// The rules that start with one glyph or class, in the order they are tried.
template <class Rule>
class TTI_RuleSet {
public:
    TTI_RuleSet() = default;
    explicit TTI_RuleSet(KWCommonNS::ByteView table)
        : table_(table), offsets_(table, 2, table.u16(0).value_or(0)) {}

    std::size_t size() const { return offsets_.size(); }
    /// Nothing for a bad rule.
    /// @param i  below `size()`
    std::optional<Rule> operator[](std::size_t i) const {
        const std::uint16_t offset = offsets_[i];
        return offset != 0 ? Rule::read(table_.from(offset)) : std::nullopt;
    }

private:
    KWCommonNS::ByteView table_;
    U16List offsets_;
};

/// The rule sets of a subtable: its table holds a count at `countField`, then the offsets.
template <class Rule>
class TTI_RuleSets {
public:
    TTI_RuleSets(KWCommonNS::ByteView table, std::size_t countField)
        : table_(table), offsets_(table, countField + 2, table.u16(countField).value_or(0)) {}

    std::size_t size() const { return offsets_.size(); }
    /// Empty when the subtable has no rules for the index, which may be any number.
    TTI_RuleSet<Rule> operator[](int index) const {
        const auto place = static_cast<std::size_t>(index);
        if (index < 0 || place >= offsets_.size() || offsets_[place] == 0)
            return {};
        return TTI_RuleSet<Rule>(table_.from(offsets_[place]));
    }

private:
    KWCommonNS::ByteView table_;
    U16List offsets_;
};

using TTI_ContextRuleSet = TTI_RuleSet<TTI_ContextRule>;
using TTI_ContextRuleSets = TTI_RuleSets<TTI_ContextRule>;
using TTI_ChainContextRuleSet = TTI_RuleSet<TTI_ChainContextRule>;
using TTI_ChainContextRuleSets = TTI_RuleSets<TTI_ChainContextRule>;

/// Reads arrays that follow each other, each where the one before it ends. A miss is told once, at
/// the end.
class SequentialArrays {
public:
    SequentialArrays(KWCommonNS::ByteView table, std::size_t start)
        : next_(table.from(start).data()), left_(table.from(start).size()) {}

    /// The number that comes next, 0 on a miss.
    std::size_t count() {
        const std::uint8_t* start = take(2);
        return start != nullptr ? KWCommonNS::ByteView::loadU16(start) : 0;
    }
    U16List numbers(std::size_t count) {
        const std::uint8_t* start = take(2 * count);
        return start != nullptr ? U16List(start, count) : U16List();
    }
    TTI_LookupRecords records(std::size_t count) {
        const std::uint8_t* start = take(TTI_LookupRecords::kRecordSize * count);
        return start != nullptr ? TTI_LookupRecords(start, count) : TTI_LookupRecords();
    }
    /// The same with their count in front.
    U16List countedNumbers() { return numbers(count()); }

    /// False when the table does not hold all that was asked for.
    bool whole() const { return whole_; }

private:
    /// Where `bytes` more are; null from the first miss on.
    const std::uint8_t* take(std::size_t bytes) {
        whole_ = whole_ && bytes <= left_;
        if (!whole_)
            return nullptr;
        left_ -= bytes;
        next_ += bytes;
        return next_ - bytes;
    }

    const std::uint8_t* next_;
    std::size_t left_;
    bool whole_ = true;
};

} // namespace KWFontService_NS
