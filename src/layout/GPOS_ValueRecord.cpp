#include "layout/GPOS_ValueRecord.h"

#include "layout/LayoutArrays.h"

namespace KWFontService_NS {

TTI_Device GPOS_ValueRecord::device(unsigned int bit) const {
    return has(bit) ? TTI_Device::read(offsetTo(base_, field(bit))) : TTI_Device();
}

} // namespace KWFontService_NS
