#pragma once

// Unwrap the parenthesised columns of FS_FaceOperations.inc.

/// `(int a, int b)` becomes `int a, int b,`, ready for the face index; `()` becomes nothing.
#define FS_PARAMETERS(...) __VA_ARGS__ __VA_OPT__(, )
/// The same without the closing comma.
#define FS_LIST(...) __VA_ARGS__
