#include "embed/OtherSubrs.h"

namespace KWFontService_NS {

// Operands come with the first one on top. The points of a flex wait on the operand stack for its
// end, each where the interpreter moved to in a copy of the path.
//
//   0   flatness x y: the seven points lie below. Where reference point and joint are less than
//       flatness / 100 pixels apart a line is drawn, else both curves. Leaves y x.
//   1   keeps the path from the moves that follow
//   2   notes a point
//   3   the number of a Subr with other hints: who can replace hints is asked to, for all others
//       it is the Subr that does nothing
//   12  22 operands of counter control
//   13  the end of counter control: an interpreter that runs it does not know its operands and
//       lets them lie, as it does with the places 4 to 11 that no one calls
const char* const kOtherSubrs = "/OtherSubrs\n"
                                "[systemdict /internaldict known\n"
                                "{{1183615869 systemdict /internaldict get exec\n"
                                "dup /startlock known\n"
                                "{/startlock get exec}\n"
                                "{dup /strtlck known\n"
                                "{/strtlck get exec}\n"
                                "{pop pop 3}\n"
                                "ifelse}\n"
                                "ifelse}}\n"
                                "{{pop 3}}\n"
                                "ifelse\n"
                                "executeonly\n"
                                "{grestore\n"
                                "10 index 17 index sub\n"
                                "10 index 17 index sub\n"
                                "dtransform dup mul exch dup mul add sqrt\n"
                                "100 mul gt\n"
                                "{16 2 roll lineto 12 {pop} repeat}\n"
                                "{16 2 roll 12 6 roll curveto curveto pop pop}\n"
                                "ifelse\n"
                                "} executeonly\n"
                                "{gsave} executeonly\n"
                                "{currentpoint} executeonly\n"
                                "4 -1 roll\n"
                                "8 {{}} repeat\n"
                                "{22 {pop} repeat} executeonly\n"
                                "{systemdict /internaldict known\n"
                                "{}\n"
                                "{}\n"
                                "ifelse\n"
                                "} executeonly\n"
                                "] noaccess def";

} // namespace KWFontService_NS
