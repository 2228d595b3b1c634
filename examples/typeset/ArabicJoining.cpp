#include "ArabicJoining.h"

#include <cstddef>

namespace typeset {

namespace {

bool canJoinBefore(UJoiningType type) {
    return type == U_JT_DUAL_JOINING || type == U_JT_RIGHT_JOINING || type == U_JT_JOIN_CAUSING;
}

bool canJoinAfter(UJoiningType type) {
    return type == U_JT_DUAL_JOINING || type == U_JT_LEFT_JOINING || type == U_JT_JOIN_CAUSING;
}

UDecompositionType formOf(bool before, bool after) {
    if (before)
        return after ? U_DT_MEDIAL : U_DT_FINAL;
    return after ? U_DT_INITIAL : U_DT_ISOLATED;
}

} // namespace

std::vector<UDecompositionType> joiningForms(const icu::UnicodeString& text) {
    std::vector<UDecompositionType> forms(static_cast<std::size_t>(text.length()), U_DT_NONE);
    std::int32_t last = -1; // the letter before, over marks and the like
    UJoiningType lastType = U_JT_NON_JOINING;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const auto type =
            static_cast<UJoiningType>(u_getIntPropertyValue(text.char32At(i), UCHAR_JOINING_TYPE));
        if (type == U_JT_TRANSPARENT)
            continue;
        const bool joined = last >= 0 && canJoinAfter(lastType) && canJoinBefore(type);
        if (joined) {
            UDecompositionType& before = forms[static_cast<std::size_t>(last)];
            if (before != U_DT_NONE)
                before = formOf(joinsBefore(before), true);
        }
        // What joins letters, such as a tatweel, has no forms of its own.
        if (type != U_JT_NON_JOINING && type != U_JT_JOIN_CAUSING)
            forms[static_cast<std::size_t>(i)] = formOf(joined, false);
        last = i;
        lastType = type;
    }
    return forms;
}

bool joinsBefore(UDecompositionType form) {
    return form == U_DT_MEDIAL || form == U_DT_FINAL;
}

bool joinsAfter(UDecompositionType form) {
    return form == U_DT_MEDIAL || form == U_DT_INITIAL;
}

UDecompositionType formOfLigature(UDecompositionType first, UDecompositionType last) {
    return first == U_DT_NONE || last == U_DT_NONE ? first
                                                   : formOf(joinsBefore(first), joinsAfter(last));
}

} // namespace typeset
