#pragma once

#include "EmbedFixture.h"
#include "cff/CffFixture.h"
#include "cff/CharStringFixture.h"
#include "embed/CFFSubsetInPlace.h"
#include "embed/CFFSubsetRenumbered.h"
#include "support/CffTable.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace KWTest {

/// A `CFF ` table that a writer made, taken apart byte by byte.
class WrittenCff {
public:
    struct Index {
        std::vector<Bytes> items;
        std::size_t offSize = 0;
        std::size_t end = 0;
    };

    explicit WrittenCff(Bytes bytes) : table(std::move(bytes)) {
        names = indexAt(4);
        topDicts = indexAt(names.end);
        strings = indexAt(topDicts.end);
        globals = indexAt(strings.end);
        charStrings = indexAt(offset(17));
    }

    Index indexAt(std::size_t at) const {
        Index index;
        const std::size_t count = table.u16At(at);
        if (count == 0) {
            index.end = at + 2;
            return index;
        }
        index.offSize = table.u8At(at + 2);
        const auto offsetOf = [&](std::size_t i) {
            std::size_t value = 0;
            for (std::size_t k = 0; k < index.offSize; ++k)
                value = value << 8 | table.u8At(at + 3 + i * index.offSize + k);
            return value;
        };
        const std::size_t data = at + 2 + (count + 1) * index.offSize;
        for (std::size_t i = 0; i < count; ++i)
            index.items.push_back(table.slice(data + offsetOf(i), offsetOf(i + 1) - offsetOf(i)));
        index.end = data + offsetOf(count);
        return index;
    }

    /// The last operand of an operator of the Top DICT; 0 where it does not stand.
    std::size_t offset(KWFontService_NS::CFFOperator op) const {
        return operand(topDicts.items.at(0), op);
    }
    /// The last operand of an operator of any DICT, or one before it.
    static std::size_t operand(const Bytes& dict, KWFontService_NS::CFFOperator op,
                               std::size_t fromTheEnd = 0) {
        for (KWFontService_NS::CFFDictWalker walk(viewOf(dict)); walk.next();)
            if (walk.op() == op && walk.operands().size() > fromTheEnd)
                return static_cast<std::size_t>(
                    walk.operands()[walk.operands().size() - 1 - fromTheEnd].getIntegerValue());
        return 0;
    }
    static std::vector<KWFontService_NS::CFFOperator> operators(const Bytes& dict) {
        std::vector<KWFontService_NS::CFFOperator> all;
        for (KWFontService_NS::CFFDictWalker walk(viewOf(dict)); walk.next();)
            all.push_back(walk.op());
        return all;
    }

    /// The Private DICT that a DICT names.
    Bytes privateOf(const Bytes& dict) const {
        return table.slice(operand(dict, 18), operand(dict, 18, 1));
    }
    /// The Local Subr INDEX of that Private DICT.
    Index subrsOf(const Bytes& dict) const {
        return indexAt(operand(dict, 18) + operand(privateOf(dict), 19));
    }
    const Bytes& topDict() const { return topDicts.items.at(0); }

    Bytes table;
    Index names;
    Index topDicts;
    Index strings;
    Index globals;
    Index charStrings;
};

/// What the writer for documents makes of a table; empty when it says no.
inline Bytes renumbered(const Bytes& table, const Glyphs& glyphs) {
    LoadedCff font(table);
    KWCommonNS::KWMemStream output;
    if (!font.ok || !KWFontService_NS::subsetCFFRenumbered(font.file(), font, glyphs, output))
        return {};
    return bytesOf(output);
}
inline Bytes renumbered(const CffSections& table, const Glyphs& glyphs) {
    return renumbered(table.build(), glyphs);
}

/// The call of a subr of a small INDEX.
inline Bytes callOf(int index, bool isGlobal = false) {
    return Bytes{139 + subrNumber(index), isGlobal ? 29 : 10};
}

/// Bytes behind each other.
template <class... Parts>
Bytes joined(const Parts&... parts) {
    Bytes all;
    (all.bytes(parts), ...);
    return all;
}

} // namespace KWTest
