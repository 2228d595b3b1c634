#include "Document.h"

#include "Failure.h"
#include "FeaturePlan.h"
#include "Numbers.h"

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

/// Puts an Arabic shadda before the vowel signs of its letter, as fonts expect them and as they
/// stand above each other (UAX #53); the canonical order has it behind.
void putShaddaFirst(icu::UnicodeString& text) {
    constexpr char16_t kShadda = 0x0651;
    for (std::int32_t i = text.indexOf(kShadda); i > 0; i = text.indexOf(kShadda, i + 1)) {
        std::int32_t first = i;
        while (first > 0 && u_getCombiningClass(text.charAt(first - 1)) >= 27 &&
               u_getCombiningClass(text.charAt(first - 1)) <= 32)
            --first;
        text.remove(i, 1).insert(first, kShadda);
    }
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
    putShaddaFirst(composed);
    return U_SUCCESS(status) ? composed : out;
}

/// Reads "@ vertical" and the like, without the "@ ".
void readStyle(const std::string& text, BlockStyle& style) {
    std::istringstream words(text);
    std::string word;
    std::string value;
    words >> word;
    std::getline(words >> std::ws, value);
    while (!value.empty() && (value.back() == ' ' || value.back() == '\r'))
        value.pop_back();
    if (word == "vertical" && value.empty()) {
        style.columns = true;
    } else if (word == "size") {
        style.scale = parseNumber(ExitCode::text, "@ size", value, 0.5, 4.0);
    } else if (word == "language" && !value.empty()) {
        style.language = parseLanguage(ExitCode::text, value);
    } else if (word == "features" && !value.empty()) {
        style.features = parseFeatures(ExitCode::text, value);
    } else {
        throw Failure(ExitCode::text, "'@ " + text +
                                          "' says nothing: there are @ vertical, "
                                          "@ size N, @ language TAG, @ features LIST");
    }
}

} // namespace

icu::UnicodeString Document::title() const {
    const auto heading = std::find_if(blocks.begin(), blocks.end(), [](const Block& block) {
        return block.kind != BlockKind::paragraph;
    });
    return heading == blocks.end() ? icu::UnicodeString() : heading->text;
}

Document parseDocument(const std::string& utf8, const std::string& name) {
    checkUtf8(utf8, name);
    Document document;
    std::string paragraph;
    BlockStyle style; // of the next paragraph
    const auto add = [&](BlockKind kind, const std::string& text, const BlockStyle& how) {
        icu::UnicodeString tidied = tidy(icu::UnicodeString::fromUTF8(text));
        if (tidied.isEmpty())
            return false;
        document.blocks.push_back({kind, std::move(tidied), how});
        return true;
    };
    const auto endParagraph = [&] {
        if (add(BlockKind::paragraph, paragraph, style))
            style = {};
        paragraph.clear();
    };
    std::istringstream lines(utf8.starts_with("\xEF\xBB\xBF") ? utf8.substr(3) : utf8);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("# ") || line.starts_with("## ")) {
            endParagraph();
            const bool title = line.starts_with("# ");
            add(title ? BlockKind::title : BlockKind::heading, line.substr(title ? 2 : 3), {});
        } else if (line.starts_with("@ ")) {
            endParagraph();
            readStyle(line.substr(2), style);
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
