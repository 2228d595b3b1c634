#pragma once

#include "fonts/SfntFixture.h"
#include "fonts/SfntReader.h"

#include <sstream>
#include <string_view>

namespace KWTest {

/// One table in a stream, some bytes from its start, and what reading it complained of.
class TableInStream {
public:
    static constexpr std::uint32_t kOffset = 24;

    TableInStream(std::string_view tag, const Bytes& table)
        : stream_(Bytes().fill(kOffset, 0xEE).bytes(table.vector()).str()) {
        Bytes records;
        records.tag(tag).u32(0).u32(kOffset).u32(table.size());
        directory_ = KWFontService_NS::TTI_Directory(
            kTrueTypeVersion, KWCommonNS::ByteView(records.data(), records.size()), 0);
    }

    const KWFontService_NS::TTI_TableRecord& record() const { return directory_.records().front(); }
    KWFontService_NS::SfntReader reader() { return {stream_, directory_, error_, nullptr}; }
    Complaint complaint() const { return complaintOf(error_); }

private:
    std::istringstream stream_;
    KWFontService_NS::TTI_Directory directory_;
    KWCommonNS::KWError error_;
};

} // namespace KWTest
