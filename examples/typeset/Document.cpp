#include "Document.h"

#include "Failure.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

namespace typeset {

namespace {

void checkUtf8(const std::string& bytes, const std::string& name) {
    // ICU's macros count in int32_t.
    if (bytes.size() > 0x40000000)
        throw Failure(ExitCode::text, name + " is larger than this example can take");
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const auto size = static_cast<std::int32_t>(bytes.size());
    int line = 1;
    for (std::int32_t i = 0; i < size;) {
        const std::int32_t start = i;
        UChar32 character = 0;
        U8_NEXT(data, i, size, character);
        if (character < 0) {
            std::ostringstream text;
            text << name << " is not UTF-8: line " << line << ", byte 0x" << std::hex
                 << std::uppercase << static_cast<int>(data[start]);
            throw Failure(ExitCode::text, text.str());
        }
        line += character == '\n';
    }
}

bool isBlank(UChar32 character) {
    return (u_isWhitespace(character) != 0) || u_charType(character) == U_CONTROL_CHAR;
}

/// Collapses blanks, drops soft hyphens (nothing here hyphenates) and composes accents, so that a
/// letter and its mark become the one character that fonts have a glyph for.
icu::UnicodeString tidy(const icu::UnicodeString& text) {
    icu::UnicodeString out;
    bool pendingBlank = false;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 character = text.char32At(i);
        if (isBlank(character)) {
            pendingBlank = !out.isEmpty();
        } else if (character != 0x00AD) {
            if (pendingBlank)
                out.append(u' ');
            pendingBlank = false;
            out.append(character);
        }
    }
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* composer = icu::Normalizer2::getNFCInstance(status);
    icu::UnicodeString composed =
        U_SUCCESS(status) ? composer->normalize(out, status) : icu::UnicodeString();
    return U_SUCCESS(status) ? composed : out;
}

} // namespace

icu::UnicodeString Document::title() const {
    const auto heading = std::find_if(blocks.begin(), blocks.end(), [](const Block& block) {
        return block.kind != BlockKind::paragraph;
    });
    return heading == blocks.end() ? icu::UnicodeString() : heading->text;
}

bool Document::hasRightToLeft() const {
    for (const Block& block : blocks) {
        for (std::int32_t i = 0; i < block.text.length(); i = block.text.moveIndex32(i, 1)) {
            const UCharDirection direction = u_charDirection(block.text.char32At(i));
            if (direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC)
                return true;
        }
    }
    return false;
}

Document parseDocument(const std::string& utf8, const std::string& name) {
    checkUtf8(utf8, name);
    Document document;
    std::string paragraph;
    const auto add = [&](BlockKind kind, const std::string& text) {
        icu::UnicodeString tidied = tidy(icu::UnicodeString::fromUTF8(text));
        if (!tidied.isEmpty())
            document.blocks.push_back({kind, std::move(tidied)});
    };
    const auto endParagraph = [&] {
        add(BlockKind::paragraph, paragraph);
        paragraph.clear();
    };
    std::istringstream lines(utf8.starts_with("\xEF\xBB\xBF") ? utf8.substr(3) : utf8);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("# ") || line.starts_with("## ")) {
            endParagraph();
            const bool title = line.starts_with("# ");
            add(title ? BlockKind::title : BlockKind::heading, line.substr(title ? 2 : 3));
        } else if (line.find_first_not_of(" \t\r") == std::string::npos) {
            endParagraph();
        } else {
            paragraph += line + '\n';
        }
    }
    endParagraph();
    if (document.blocks.empty())
        throw Failure(ExitCode::text, name + " holds no text");
    return document;
}

Document readDocument(const std::string& path) {
    if (path == "-") {
        return parseDocument(std::string(std::istreambuf_iterator<char>(std::cin), {}),
                             "standard input");
    }
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        throw Failure(ExitCode::text, path + " is a folder, not a text");
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    // An empty file makes `<<` fail, so the state of the source alone counts.
    if (file)
        bytes << file.rdbuf();
    if (!file || file.bad())
        throw Failure(ExitCode::text, "cannot read the text " + path);
    return parseDocument(bytes.str(), path);
}

} // namespace typeset
