#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

struct FT_FaceRec_;

namespace KWFontService_NS {

/// How much work the load of a Type 1 program may still put into its glyphs. FreeType bounds what
/// one glyph takes, and that generously: Subrs that call each other make minutes of a few kilobytes
/// when every glyph goes to that bound. So the operators that a glyph unfolds to are counted before
/// FreeType executes them (Adobe Type 1 Font Format, chapter 6; there are no loops).
///
/// Call with the glyph rendering lock held.
class Type1LoadBudget {
public:
    /// A face that is no Type 1 program has no budget.
    explicit Type1LoadBudget(FT_FaceRec_* face);

    /// Takes what loading the glyph costs; false when that is more than is left, and when it cannot
    /// be told.
    bool take(unsigned int glyph);

    /// Steps that are left.
    std::size_t left() const { return left_; }

private:
    using Bytes = std::vector<std::uint8_t>;
    /// How the walk through a charstring comes to its end.
    enum class End {
        returned, ///< the caller goes on
        finished, ///< the glyph is done, or FreeType goes no further
        refused,
    };

    bool pay(std::size_t steps);
    std::optional<Bytes> charString(unsigned int glyph) const;
    const Bytes* subr(int number);
    End walk(const Bytes& bytes, int depth);
    End runOperator(int op, int depth);
    End callSubr(int depth);
    End addAccent();
    End walkStandardGlyph(std::optional<int> code);
    void callOtherSubr();
    std::optional<int> pop();

    FT_FaceRec_* face_;
    std::size_t left_ = 0;
    std::map<int, std::optional<Bytes>> subrs_;

    // The glyph that is walked. An operand that is computed is unknown.
    std::vector<std::optional<int>> operands_;
    bool keepsHintSubr_ = false; ///< the result of hint replacement is still an operand
    bool isAccented_ = false;
};

} // namespace KWFontService_NS
