#pragma once

#include "fonts/FS_OperationMacros.h"
#include "fonts/FS_TrueTypeInfo.h"

#include <KWFontService17/FS_BaseFont.h>

#include <KWCommon15/KWUtil.h>

namespace KWFontService_NS {

/// Answers the face-wise operations of a font by the table holder of the face asked for.
/// `Derived::face(int)` gives that holder, or null for an index out of range.
template <class Derived, class Base = FS_BaseFont>
class FS_FaceForwarder : public Base {
public:
#define FS_FORWARD(result, name, parameters, arguments, qualifier, missing)                        \
    result name(FS_PARAMETERS parameters int faceIndex) qualifier override {                       \
        auto* holder = static_cast<qualifier Derived*>(this)->face(faceIndex);                     \
        return holder ? holder->name arguments : missing;                                          \
    }
#define FS_FORWARD_ALL FS_FORWARD
#define FS_FORWARD_NODFONT(...)
#define FS_FORWARD_CFF(...)
#define FS_FORWARD_OWN(...)
#define FS_OPERATION(faces, wrapper, facade, ...) FS_FORWARD_##faces(__VA_ARGS__)
#include "fonts/FS_FaceOperations.inc"
#undef FS_FORWARD_ALL
#undef FS_FORWARD_NODFONT

protected:
    using Base::Base;
};

/// The same with the operations that a dfont does not offer.
template <class Derived, class Base = FS_BaseFont>
class FS_FullFaceForwarder : public FS_FaceForwarder<Derived, Base> {
public:
#define FS_FORWARD_ALL(...)
#define FS_FORWARD_NODFONT FS_FORWARD
#define FS_OPERATION(faces, wrapper, facade, ...) FS_FORWARD_##faces(__VA_ARGS__)
#include "fonts/FS_FaceOperations.inc"
#undef FS_FORWARD_NODFONT
#undef FS_FORWARD_CFF

protected:
    using FS_FaceForwarder<Derived, Base>::FS_FaceForwarder;
};

/// Adds the operations of faces with `CFF ` outlines to a font that forwards the others.
template <class Derived, class Base>
class FS_CffFaceForwarder : public Base {
public:
    using Base::getType1EmbedFont; // one of the two is written anew
#define FS_FORWARD_NODFONT(...)
#define FS_FORWARD_CFF FS_FORWARD
#define FS_OPERATION(faces, wrapper, facade, ...) FS_FORWARD_##faces(__VA_ARGS__)
#include "fonts/FS_FaceOperations.inc"
#undef FS_FORWARD_ALL
#undef FS_FORWARD_NODFONT
#undef FS_FORWARD_CFF
#undef FS_FORWARD_OWN
#undef FS_FORWARD

protected:
    using Base::Base;
};

} // namespace KWFontService_NS
