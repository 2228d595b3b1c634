#pragma once

#include "cff/Type1CMap.h"
#include "support/CffTable.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace KWTest {

/// A table in the middle of a stream, with bytes of others around it.
class TableStream {
public:
    explicit TableStream(const Bytes& bytes)
        : stream_("before" + bytes.str() + "behind"),
          table(stream_, 6, static_cast<std::uint32_t>(bytes.size())) {}

    /// As if the file were gone.
    void lose() { stream_.str({}); }

private:
    std::istringstream stream_;

public:
    KWFontService_NS::CFFStream table;
};

/// What a load keeps of a table.
class LoadedCff : public KWFontService_NS::Type1CMap {
public:
    explicit LoadedCff(const Bytes& bytes) : stream_(bytes), ok(readCFFTable(stream_.table)) {}
    explicit LoadedCff(const CffSections& table) : LoadedCff(table.build()) {}

    KWFontService_NS::CFFStream& file() { return stream_.table; }

private:
    TableStream stream_;

public:
    const bool ok;
};

inline Bytes bytesOf(KWCommonNS::ByteView view) {
    return Bytes(std::vector<std::uint8_t>(view.data(), view.data() + view.size()));
}

} // namespace KWTest
