#include "bench/Subjects.h"

#include "fonts/FontTyping.h"
#include "support/Paths.h"

#include <hb-ot.h>

#include <algorithm>
#include <stdexcept>

namespace KWBench {

using KWCommonNS::KWPtr;
using KWFontService_NS::FS_BaseFont;
using KWFontService_NS::KWError;
using KWFontService_NS::KWUri;
using KWFontService_NS::UnicodeString;

Subject::Subject(const std::filesystem::path& file)
    : path(file), blob(hb_blob_create_from_file(file.c_str())), face(hb_face_create(blob.get(), 0)),
      font(hb_font_create(face.get())) {
    if (!ours.createFont(KWTest::fileUri(file)))
        throw std::runtime_error("cannot open " + file.string());
    if (FT_Init_FreeType(&ftLibrary) != 0 || FT_New_Face(ftLibrary, file.c_str(), 0, &ftFace) != 0)
        throw std::runtime_error("FreeType cannot open " + file.string());
}

Subject::~Subject() {
    FT_Done_FreeType(ftLibrary);
}

Subject& latinSubject() {
    static Subject subject(KWTest::packagedFont("DejaVuSans"));
    return subject;
}

Subject& cjkSubject() {
    static Subject subject(KWTest::packagedFont("IPAGothic"));
    return subject;
}

Subject& cjkSubsetSubject() {
    static Subject subject(KWTest::packagedFont("ARPLSungtiL"));
    return subject;
}

const UnicodeString& latinText() {
    static const UnicodeString text = [] {
        const UnicodeString line(u"The quick brown fox jumps over the lazy dog; Ça ira, naïve "
                                 u"Öltür: 0123456789 (Łódź, Žižkov). ");
        UnicodeString result;
        while (result.length() < 4000)
            result.append(line);
        return result;
    }();
    return text;
}

const UnicodeString& cjkText() {
    static const UnicodeString text = [] {
        // Characters in the order of running text are spread over the block; so are these.
        UnicodeString result;
        const FT_Face face = cjkSubject().ftFace;
        for (std::uint32_t i = 0; result.length() < 4000; ++i) {
            const UChar32 kana = static_cast<UChar32>(0x3042 + i % 80);
            const UChar32 kanji = static_cast<UChar32>(0x4E00 + i * 7919 % 0x5000);
            for (const UChar32 ch : {kana, kanji}) {
                if (FT_Get_Char_Index(face, static_cast<FT_ULong>(ch)) != 0)
                    result.append(ch);
            }
        }
        return result;
    }();
    return text;
}

std::vector<hb_codepoint_t> codePoints(const UnicodeString& text) {
    std::vector<hb_codepoint_t> result;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1))
        result.push_back(static_cast<hb_codepoint_t>(text.char32At(i)));
    return result;
}

std::vector<unsigned short> spreadGlyphs(hb_face_t* face, std::size_t count) {
    const std::size_t all = hb_face_get_glyph_count(face);
    count = std::min(count, all);
    std::vector<unsigned short> glyphs;
    for (std::size_t i = 0; i < count; ++i)
        glyphs.push_back(static_cast<unsigned short>(i * all / count));
    return glyphs;
}

KWPtr<FS_BaseFont> scanFile(const KWUri& uri) {
    const std::unique_ptr<std::istream> stream(uri.getIStream(nullptr, nullptr));
    if (!stream)
        return {};
    KWPtr<FS_BaseFont> font =
        KWFontService_NS::createFontObject(uri, KWFontService_NS::sfntTypeOf(*stream));
    KWError error;
    return font->scanFont(error, *stream) ? font : KWPtr<FS_BaseFont>();
}

const std::vector<std::filesystem::path>& installedFonts() {
    static const std::vector<std::filesystem::path> fonts = [] {
        std::vector<std::filesystem::path> result;
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator("/usr/share/fonts")) {
            const std::string extension = entry.path().extension().string();
            if (entry.is_regular_file() && (extension == ".ttf" || extension == ".otf"))
                result.push_back(entry.path());
        }
        std::sort(result.begin(), result.end());
        return result;
    }();
    return fonts;
}

} // namespace KWBench
