#pragma once

#include <cstddef>

namespace KWCommonNS {

// Limits on what a document may make us do. Each is far above what honest documents need.

/// Open elements of an XML document. Settings nest less than ten deep; every level costs memory in
/// the parser, and a reader that complains of each level would complain without end.
constexpr std::size_t kXmlMaxDepth = 256;

/// Bytes of one tag, comment or declaration. The parser keeps an unfinished one whole and looks at
/// it anew with every piece that arrives, so time would grow with the square.
constexpr std::size_t kXmlMaxTokenBytes = std::size_t{1} << 20;

/// Bytes that entities may expand to before the ratio below is enforced; honest documents with a
/// few entities stay below it.
constexpr unsigned long long kXmlFreeExpansion = 256ULL << 10;

/// Expanded bytes to bytes read. Entities that hold entities multiply, and an attribute value is
/// built whole before anybody sees it.
constexpr float kXmlMaxExpansionRatio = 10.0F;

/// Events, and bytes in them, that one piece of input may give. A piece without entities stays far
/// below; the parser is not suspended instead, since expat loses its place in entities within
/// entities.
constexpr std::size_t kXmlMaxWaitingEvents = 32768;
constexpr std::size_t kXmlMaxWaitingBytes = std::size_t{4} << 20;

/// Bytes of name strings that one face may have read. Name records may all point at the same
/// 64 KiB, so the size of the table does not bound them; the largest `name` tables of real fonts
/// hold less than 256 KiB.
inline constexpr std::size_t kMaxNameBytes = std::size_t{4} << 20;

} // namespace KWCommonNS
