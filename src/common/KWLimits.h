#pragma once

#include <cstddef>
#include <cstdint>

namespace KWCommonNS {

// Limits on what a document may make us do. Each is far above what honest documents need.

/// Open elements of an XML document. Settings nest less than ten deep; every level costs memory in
/// the parser, and a reader that complains of each level would complain without end.
inline constexpr std::size_t kXmlMaxDepth = 256;

/// Bytes of one tag, comment or declaration. The parser keeps an unfinished one whole and looks at
/// it anew with every piece that arrives, so time grows with the square of it.
inline constexpr std::size_t kXmlMaxTokenBytes = std::size_t{128} << 10;

/// Entity and attribute-list declarations of a document. Each link of a chain of entities is a
/// level of recursion in the parser, and each attribute with a default value is added to every
/// element of its name.
inline constexpr std::size_t kXmlMaxDeclarations = 256;

/// Bytes that entities may expand to before expat looks at the ratio at all; honest documents with
/// a few entities stay below it.
inline constexpr unsigned long long kXmlFreeExpansion = 256ULL << 10;

/// Bytes that the entities of a document may expand to, and bytes that its attributes may hold by
/// default, however long it is. Entities that hold entities multiply, and an attribute value is
/// built whole before anybody sees it; a default value comes with every element of its name.
inline constexpr float kXmlMaxExpansion = 2097152.0F;

/// Events, and bytes in them, that one piece of input may give. A piece without entities stays far
/// below; the parser is not suspended instead, since expat loses its place in entities within
/// entities.
inline constexpr std::size_t kXmlMaxWaitingEvents = 32768;
inline constexpr std::size_t kXmlMaxWaitingBytes = std::size_t{4} << 20;

/// What an attribute counts for beside its bytes, since even an empty one that comes from a
/// declaration takes memory and time.
inline constexpr std::size_t kXmlAttributeCost = 64;

/// Bytes from the end of a memory stream to a put position past it, which the next write fills with
/// zeros. Offsets in files name such positions; a writer leaves room for a table, not for a disk.
inline constexpr std::size_t kMaxPutGap = std::size_t{64} << 20;

/// Bytes of name strings that one face may have read. Name records may all point at the same
/// 64 KiB, so the size of the table does not bound them; the largest `name` tables of real fonts
/// hold less than 256 KiB.
inline constexpr std::size_t kMaxNameBytes = std::size_t{4} << 20;

/// Faces of a collection or a dfont. The largest real collections have less than a hundred; a face
/// index has to fit 15 bits.
inline constexpr std::uint32_t kMaxFaces = 4096;

/// Family names that a document may give one font: each is entered under every style that rules
/// declare for the font.
inline constexpr std::size_t kMaxFontFaceNames = 64;

/// Fonts inside each other where a local font stands for a local font; each query passes them all.
inline constexpr int kMaxLocalFontDepth = 16;

/// Bytes that the scan of all faces of a file may read. Faces may share everything, so neither
/// their number nor the size of the file bounds what a scan keeps; a real face takes 5 to 20 KiB,
/// most of it names.
inline constexpr std::size_t kMaxFacesScanBytes = std::size_t{8} << 20;

/// What one read counts for at least, since a name of one letter takes memory, too.
inline constexpr std::size_t kFacesScanReadCost = 64;

/// Bytes of tables that loading the faces of one file may take: a multiple of the file, and some
/// megabytes besides. A host may load all of them at once, and thousands may share one table. What
/// real faces share is `glyf` or charstrings, of which a load reads nothing or little.
inline constexpr std::uint64_t kFacesLoadFactor = 64;
inline constexpr std::uint64_t kFacesLoadFreeBytes = std::uint64_t{64} << 20;

/// How large an sfnt may come out of a WOFF file: a multiple of the file, and some megabytes
/// besides. Fonts deflate to a half or a quarter; what zlib makes of a `loca` or `hmtx` of equal
/// entries, some hundredths, is small in either form. zlib itself goes to a thousandth.
inline constexpr std::uint64_t kWoffInflateFactor = 20;
inline constexpr std::uint64_t kWoffFreeBytes = std::uint64_t{16} << 20;

/// GSUB and GPOS extension subtables inside extension subtables. Honest fonts have one level; an
/// offset of 0 would unwrap itself for ever.
inline constexpr int kMaxExtensionDepth = 16;

/// Subtables that are asked for a vertical form. Honest fonts have a handful, and each is asked for
/// every character of a vertical text.
inline constexpr std::size_t kMaxVertSubtables = 1024;

/// How often reading a layout table may come back to its bytes, on average, and how many bytes any
/// table may have read. Offsets may share a part, and honest tables do (feature tables between
/// language systems, subtables between lookups); a hostile one can share so that a few kilobytes
/// unfold to gigabytes. Honest tables stay below a tenth: most is read in place when it is asked
/// for, and does not count.
inline constexpr std::size_t kLayoutReadsOfEachByte = 8;
inline constexpr std::size_t kLayoutFreeBytes = std::size_t{1} << 20;

/// What an object that is kept costs of the above at least, however few bytes of the file name it:
/// about what it takes of the heap.
inline constexpr std::size_t kLayoutObjectCost = 64;

/// Operands of a CFF DICT operator that are kept. The format allows 48.
inline constexpr std::size_t kMaxDictOperands = 513;

/// Characters of a real number in a CFF DICT that count. A double has 17 digits that matter.
inline constexpr std::size_t kMaxDictRealLength = 512;

/// Font DICTs of a CID-keyed CFF font: FDSelect numbers them with one byte.
inline constexpr std::size_t kMaxFontDicts = 256;

/// Operands and stems that a charstring is taken to have at most. The format allows 48 and 96, its
/// successor 513 operands.
inline constexpr int kMaxCharStringOperands = 513;
inline constexpr int kMaxCharStringStems = 2048;

/// Subrs inside subrs of charstrings. The format allows 10; one may call itself.
inline constexpr int kMaxSubrDepth = 16;

/// What it counts for to remember what a subr does, in bytes of charstrings: about what it takes of
/// the heap.
inline constexpr std::size_t kKnownSubrCost = 64;

/// Places where a charstring may end, in subrs that it calls. An honest one ends once.
inline constexpr std::size_t kMaxCharStringEnds = 4;

/// Bytes of a line at the head of a Type 1 font program that count. Real ones have less than 1 KiB;
/// a file without line ends is one line.
inline constexpr std::size_t kMaxPrinterFontLine = std::size_t{64} << 10;

/// The same for the lines of an AFM file, each of which says something of a single glyph or pair.
inline constexpr std::size_t kMaxMetricsLine = kMaxPrinterFontLine;

/// Glyphs of an AFM file. Glyph ids have 16 bits, and a line of four bytes makes a record of 80.
inline constexpr int kMaxCharMetrics = 65536;

/// Bytes of a name in a PFM file, its zero left out. Windows has room for 31 in a face name, and
/// PostScript for 127.
inline constexpr std::size_t kMaxPFMName = 1024;

/// Bytes of a glyph name in a list of glyph names. PostScript allows 127.
inline constexpr std::size_t kMaxGlyphNameLength = 1024;

/// Operators and operands that the load of a font program has executed for its glyphs: so many for
/// each byte of charstrings, and for any program. Subrs that call each other unfold a few hundred
/// bytes to more than anybody waits for. Real fonts take some four for a byte at most.
inline constexpr std::size_t kType1StepsOfAByte = 16;
inline constexpr std::size_t kType1FreeSteps = std::size_t{4} << 20;

/// The zeros that close the eexec section of a font program are 512; fewer than these, half a line,
/// may be part of it.
inline constexpr std::size_t kFewestClosingZeros = 32;

// What a writer of fonts may make us do.

/// Rounds of a glyph closure that read small gaps between glyphs, which saves reads. Each round may
/// then take the size of `glyf`; components of components of components are few.
inline constexpr int kClosureRoundsWithGaps = 3;

/// How many times its own size one call of a writer may read of a font file: `glyf` for each round
/// with gaps, for the others together and for the writing, and every other table once. Overlapping
/// lies would otherwise make gigabytes of a few thousand bytes.
inline constexpr std::uint64_t kMaxEmbedReadFactor = kClosureRoundsWithGaps + 3;

/// Bytes of charstrings and subrs that each step of a CFF writer may go through: so many for each
/// of the table, and whatever it has. What a subr does to the counts is remembered, so it is gone
/// through once for each count that it is entered with.
inline constexpr std::size_t kCharStringReads = 16;
inline constexpr std::size_t kFreeCharStringBytes = std::size_t{1} << 20;

/// Bytes that a CFF table may get for glyphs that are left out, times its own. They are as many
/// copies of the space, and a space is short.
inline constexpr std::uint64_t kMaxFillers = 16;

/// Problems that the service keeps for its host. A configuration may be wrong in every line, and a
/// host may read it again and again; nobody reads ten thousand messages.
inline constexpr std::size_t kMaxRecordedErrors = 10000;

/// Steps of work that one call to GSUB or GPOS may do for each glyph of its run, and for any run. A
/// step is about a search in a coverage: a subtable, a rule or a glyph of a context that is tried.
/// Honest fonts take some tens for a glyph and lookup at most, long contexts some hundreds for a
/// few glyphs; a hostile one can name 65,535 subtables of as many rules. The free part is some
/// hundredths of a second.
inline constexpr std::size_t kLayoutStepsOfAGlyph = 256;
inline constexpr std::size_t kLayoutFreeSteps = std::size_t{4} << 20;

/// How many glyphs a run may grow to in one call, for each glyph that it starts with, and whatever
/// it starts with. The longest honest sequences, from one Indic or symbol glyph, have about ten.
inline constexpr std::size_t kLayoutGrowth = 16;
inline constexpr std::size_t kLayoutFreeGlyphs = std::size_t{1} << 16;

/// Contexts within contexts. Honest fonts have two or three levels; a context may name itself.
inline constexpr int kMaxLayoutNesting = 64;

} // namespace KWCommonNS
