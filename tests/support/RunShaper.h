#pragma once

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/GlyphIDArray2.h>
#include <KWFontService17/GlyphIDPosition.h>

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace KWTest {

/// Shapes runs through the public calls as a host does that walks the lookup order, for comparison
/// with other shapers. It knows glyphs and positions, and not which characters they come from.
class RunShaper {
public:
    struct Plan {
        std::string_view script = "latn";
        /// Empty for the script's default.
        std::string_view language{};
        /// Applied to every glyph.
        std::vector<std::string_view> features{};
        bool rtl = false;
        /// Gives each glyph one of `isol`, `init`, `medi` and `fina` by the joining of its
        /// character.
        bool joining = false;
    };

    /// What shapers without a wish apply to every glyph.
    static std::vector<std::string_view> commonFeatures();

    /// @param font  kept
    RunShaper(const KWFontService_NS::FS_FontInfo& font, const Plan& plan);

    /// The glyphs in logical order; valid until the next call. Marks have no width of their own.
    const std::vector<KWFontService_NS::GlyphIDPosition>&
    shape(const KWFontService_NS::UnicodeString& text);

private:
    using GlyphIDPosition = KWFontService_NS::GlyphIDPosition;

    enum class Form : std::uint8_t { None, Isolated, Initial, Medial, Final };
    struct Step {
        int index;
        /// None: the lookup is for every glyph.
        Form form;
    };
    struct FreeHandle {
        void operator()(KWFontService_NS::FS_GSUBGPOSInfo* info) const {
            KWFontService_NS::FS_FontInfo::deleteGSUBGPOSInfo(info);
        }
    };
    using TagAt = unsigned int (*)(const KWFontService_NS::FS_GSUBGPOSInfo*, int);

    std::vector<Step> stepsOf(const Plan& plan, TagAt tagAt) const;
    void findForms(const KWFontService_NS::UnicodeString& text);
    void substitute(const Step& step);
    /// Takes over what a lookup has made of the run.
    void readBack();
    void position();

    const KWFontService_NS::FS_FontInfo& font_;
    bool rtl_;
    bool joining_;
    std::unique_ptr<KWFontService_NS::FS_GSUBGPOSInfo, FreeHandle> info_;
    std::vector<Step> substitutions_;
    std::vector<Step> positionings_;

    KWFontService_NS::GlyphIDArray2 run_;
    KWFontService_NS::GlyphIDArray2 out_;
    /// What a run's glyphs are besides their ids.
    struct Slot {
        Form form = Form::None;
        /// Ligature component of a mark, from 1; 0 without one.
        short component = 0;
        short components = 1;
    };
    std::vector<Slot> slots_;
    std::vector<Slot> oldSlots_;
    std::vector<GlyphIDPosition> positions_;
};

} // namespace KWTest
