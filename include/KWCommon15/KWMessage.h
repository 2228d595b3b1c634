#pragma once

#include "KWCommon15/KWExport.h"

namespace KWCommonNS {

/// A message made from a template and up to five arguments.
///
/// The placeholders {0} to {4} stand for the arguments, each as often as the template names it.
/// The template is read once from left to right: what an argument holds is never taken for a
/// placeholder. All else, also "{5}" and unpaired braces, stays as it is.
class KWCOMMON_API KWMessage {
public:
    /// Fills the template; arguments left out are empty texts.
    explicit KWMessage(const UnicodeString& messageTemplate, const UnicodeString& argument0 = {},
                       const UnicodeString& argument1 = {}, const UnicodeString& argument2 = {},
                       const UnicodeString& argument3 = {}, const UnicodeString& argument4 = {});

    /// The finished text.
    const UnicodeString& getMessage() const { return message_; }

private:
    UnicodeString message_;
};

} // namespace KWCommonNS
