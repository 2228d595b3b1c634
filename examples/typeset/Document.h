#pragma once

#include <KWFontService17/KWFontService.h>

#include <unicode/unistr.h>

#include <string>
#include <vector>

namespace typeset {

enum class BlockKind { title, heading, paragraph };

/// How a paragraph is set, by the lines that begin with "@ " before it.
struct BlockStyle {
    bool columns = false;      // vertical writing
    double scale = 1;          // of the size of the text
    unsigned int language = 0; // OpenType tag; 0: that of the document
    KWFontService_NS::FS_FontFeatureSettings features;
};

struct Block {
    BlockKind kind = BlockKind::paragraph;
    icu::UnicodeString text; // one line, blanks collapsed, composed (NFC)
    BlockStyle style;
};

/// A text, taken apart into headings and paragraphs.
struct Document {
    std::vector<Block> blocks;

    /// The first heading, empty when there is none.
    icu::UnicodeString title() const;
};

/// Reads a file, or standard input for "-". Throws `Failure` (text) when it cannot be read, is not
/// UTF-8, says what makes no sense, or holds nothing to set.
Document readDocument(const std::string& path);

/// @param name  what messages call the text
Document parseDocument(const std::string& utf8, const std::string& name);

} // namespace typeset
