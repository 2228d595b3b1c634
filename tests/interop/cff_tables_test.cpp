// The CFF tables of packaged fonts, as we and fontTools read them.

#include "cff/CFFDict.h"
#include "cff/Type1CMap.h"
#include "support/FontPackages.h"
#include "support/FontTables.h"
#include "support/ProcessRunner.h"
#include "type1/StandardStrings.h"

#include <KWCommon15/KWNamedValue.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::ProcessResult;

/// A sum that weighs each value with its place.
class OrderedSum {
public:
    void add(std::uint32_t value) { sum_ += ++place_ * value; }
    void add(std::string_view text) {
        for (const char c : text)
            add(std::uint32_t{static_cast<unsigned char>(c)});
    }
    std::uint32_t value() const { return sum_; }

private:
    std::uint32_t place_ = 0;
    std::uint32_t sum_ = 0;
};

std::string number(const KWValue& value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.6f", value.getRealValue());
    return text;
}

std::string numbers(const KWValue& array) {
    std::string text;
    for (const auto& [place, item] : array.getNamedValueMap())
        text += ' ' + number(item);
    return text;
}

/// The file has differences, fontTools what they lead to.
std::string runningSums(const KWValue& array) {
    std::string text;
    KWValue sum = 0;
    for (const auto& [place, item] : array.getNamedValueMap()) {
        sum += item;
        text += ' ' + number(sum);
    }
    return text;
}

std::string hexOf(std::string_view text) {
    std::string out;
    for (const char c : text) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", unsigned{static_cast<unsigned char>(c)});
        out += digits;
    }
    return out;
}

std::string checked(const CFFIndex& index) {
    OrderedSum sum;
    std::size_t length = 0;
    for (std::size_t i = 0; i < index.size(); ++i) {
        sum.add(index.text(i));
        length += index[i].size();
    }
    return std::to_string(index.size()) + ' ' + std::to_string(length) + ' ' +
           std::to_string(sum.value());
}

class Report {
public:
    explicit Report(const Bytes& table)
        : bytes_(table.str()), stream_(bytes_),
          file_(stream_, 0, static_cast<std::uint32_t>(bytes_.size())) {
        EXPECT_TRUE(cff_.readCFFTable(file_));
    }

    std::string lines() {
        out_ << "kind " << (cff_.isCID ? "CID" : "names") << '\n';
        FS_CIDSystemInfo info;
        if (cff_.getCIDSystemInfo(info))
            out_ << "ROS " << info.Registry << ' ' << info.Ordering << ' ' << info.Supplement
                 << '\n';
        out_ << "strings " << checked(cff_.strings) << '\n';
        topDict();
        glyphs();
        if (cff_.isCID) {
            fontDicts();
        } else {
            KWValue dict;
            CFFIndex subrs;
            EXPECT_TRUE(cff_.readLocalSubrs(file_, dict, subrs));
            privateDict("private", dict, subrs);
        }
        standard();
        return out_.str();
    }

private:
    const KWValue& top(FS_Word key) { return cff_.topDict.getNamedItem(cffKey(key)); }

    void topDict() {
        using enum FS_Word;
        for (const FS_Word key : {version, Notice, FullName, FamilyName, Weight, Copyright}) {
            if (!top(key).isNull())
                out_ << wordText(key) << ' '
                     << hexOf(cff_.getStringOfSID(
                            static_cast<unsigned short>(top(key).getIntegerValue())))
                     << '\n';
        }
        for (const FS_Word key :
             {ItalicAngle, UnderlinePosition, UnderlineThickness, CharstringType}) {
            if (!top(key).isNull())
                out_ << wordText(key) << ' ' << top(key).getIntegerValue() << '\n';
        }
        if (!top(FontMatrix).isNull())
            out_ << "FontMatrix" << numbers(top(FontMatrix)) << '\n';
        out_ << "FontBBox";
        for (const auto& [place, edge] : top(FontBBox).getNamedValueMap())
            out_ << ' ' << (edge.getIntegerValue() & 0xFFFF);
        out_ << '\n';
        if (!top(CIDCount).isNull())
            out_ << "CIDCount " << top(CIDCount).getIntegerValue() << '\n';
        if (!top(isFixedPitch).isNull())
            out_ << "isFixedPitch " << (top(isFixedPitch) == cffKey(true_) ? 1 : 0) << '\n';
    }

    void glyphs() {
        CFFIndexHead head;
        EXPECT_TRUE(Type1CMap::readIndexAt(
            file_, static_cast<std::uint32_t>(top(FS_Word::CharStrings).getIntegerValue()), head));
        out_ << "glyphs " << head.count() << '\n';
        OrderedSum values;
        OrderedSum names;
        OrderedSum programs;
        std::size_t length = 0;
        for (unsigned i = 0; i < head.count(); ++i) {
            const auto gid = static_cast<unsigned short>(i);
            const unsigned short value = cff_.getSIDOfGlyph(gid);
            if (gid > 0) {
                EXPECT_EQ(cff_.getGlyphOfCID(value), gid);
            }
            values.add(std::uint32_t{value});
            names.add(i > 0 ? "\n" : "");
            names.add(cff_.getStringOfSID(value));
            std::vector<std::uint8_t> program;
            EXPECT_TRUE(Type1CMap::readCharString(file_, head, i, program));
            length += program.size();
            for (const std::uint8_t byte : program)
                programs.add(std::uint32_t{byte});
        }
        out_ << "charset " << values.value() << '\n';
        if (!cff_.isCID) {
            out_ << "names " << names.value() << "\nencoding ";
            if (cff_.encodingCodes.empty()) {
                out_ << "StandardEncoding\n";
            } else {
                OrderedSum codes;
                for (const std::uint8_t code : cff_.encodingCodes)
                    codes.add(std::uint32_t{code});
                out_ << codes.value() << '\n';
            }
        }
        CFFIndex subrs;
        EXPECT_TRUE(Type1CMap::readGlobalSubrs(file_, subrs));
        out_ << "global subrs " << checked(subrs) << '\n';
        out_ << "charstrings " << head.count() << ' ' << length << ' ' << programs.value() << '\n';
    }

    void fontDicts() {
        std::vector<FDRange> ranges;
        EXPECT_TRUE(cff_.readFDSelect(file_, ranges));
        OrderedSum selected;
        for (unsigned gid = 0; !ranges.empty() && gid <= ranges.back().last; ++gid)
            selected.add(std::uint32_t{getFDOfGlyph(ranges, static_cast<std::uint16_t>(gid), 255)});
        out_ << "selected " << selected.value() << '\n';
        std::vector<CFFFontDict> dicts;
        EXPECT_TRUE(cff_.readFDArray(file_, dicts));
        for (std::size_t i = 0; i < dicts.size(); ++i) {
            const std::string label = "fd " + std::to_string(i);
            const KWValue& name = dicts[i].dict.getNamedItem(cffKey(FS_Word::FontName));
            out_ << label << " name "
                 << cff_.getStringOfSID(static_cast<unsigned short>(name.getIntegerValue()))
                 << '\n';
            privateDict(label, dicts[i].privateDict, *dicts[i].localSubrs);
        }
    }

    /// Key order is that of the words.
    void privateDict(const std::string& label, const KWValue& dict, const CFFIndex& subrs) {
        for (const auto& [name, value] : dict.getNamedValueMap()) {
            const auto key = static_cast<FS_Word>(KWCommonNS::KWNameEnum(name));
            if (key == FS_Word::Subrs)
                continue;
            out_ << label << ' ' << wordText(key);
            if (value.isCompound())
                out_ << runningSums(value);
            else if (value.isName())
                out_ << ' ' << number(value == cffKey(FS_Word::true_) ? 1 : 0);
            else
                out_ << ' ' << number(value);
            out_ << '\n';
        }
        out_ << label << " subrs " << checked(subrs) << '\n';
    }

    void standard() {
        OrderedSum strings;
        for (std::uint16_t sid = 0; sid < kStandardStringCount; ++sid) {
            strings.add(sid > 0 ? "\n" : "");
            strings.add(standardString(sid));
        }
        OrderedSum encoding;
        for (int code = 0; code < 256; ++code) {
            encoding.add(code > 0 ? "\n" : "");
            encoding.add(standardString(standardEncodingSID(static_cast<std::uint8_t>(code))));
        }
        out_ << "standard " << strings.value() << ' ' << encoding.value() << '\n';
    }

    static std::string wordText(FS_Word key) {
        std::string text;
        return FS_Keyword::text(key).toUTF8String(text);
    }

    std::string bytes_;
    std::istringstream stream_;
    CFFStream file_;
    Type1CMap cff_;
    std::ostringstream out_;
};

class CffTablesOf : public testing::TestWithParam<const char*> {};

TEST_P(CffTablesOf, AreReadAsFontToolsReadsThem) {
    const std::filesystem::path font = KWTest::packagedFont(GetParam());
    std::ifstream script(std::string(KW_INTEROP_SCRIPTS) + "/cff_tables.py");
    std::ostringstream source;
    source << script.rdbuf();
    const ProcessResult theirs = KWTest::runPython(source.str(), {font.string()});
    ASSERT_TRUE(theirs.ok()) << theirs.describe();
    EXPECT_EQ(Report(KWTest::fontTable(font, "CFF ")).lines(), theirs.output);
}

INSTANTIATE_TEST_SUITE_P(PackagedFonts, CffTablesOf,
                         testing::Values("NotoSansCJK", "NotoSerifCJK", "LMRoman10", "LMMono10",
                                         "TeXGyreTermesMath", "C059-Roman", "NimbusSans",
                                         "D050000L", "LinLibertine"),
                         [](const auto& parameter) {
                             std::string name = parameter.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace KWFontService_NS
