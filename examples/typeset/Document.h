#pragma once

#include <unicode/unistr.h>

#include <string>
#include <vector>

namespace typeset {

enum class BlockKind { title, heading, paragraph };

struct Block {
    BlockKind kind = BlockKind::paragraph;
    icu::UnicodeString text; // one line, blanks collapsed, composed (NFC)
};

/// A text, taken apart into headings and paragraphs.
struct Document {
    std::vector<Block> blocks;

    /// The first heading, empty when there is none.
    icu::UnicodeString title() const;
    /// Whether some of the text runs from right to left, which the layout does not do.
    bool hasRightToLeft() const;
};

/// Reads a file, or standard input for "-". Throws `Failure` (text) when it cannot be read, is not
/// UTF-8, or holds nothing to set.
Document readDocument(const std::string& path);

/// @param name  what messages call the text
Document parseDocument(const std::string& utf8, const std::string& name);

} // namespace typeset
