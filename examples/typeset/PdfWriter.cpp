#include "PdfWriter.h"

#include "PageContent.h"
#include "Progress.h"
#include "shared/OutputFile.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFWriter.hh>

namespace typeset {

namespace {

QPDFObjectHandle name(const std::string& text) {
    return QPDFObjectHandle::newName("/" + text);
}
QPDFObjectHandle integer(std::size_t value) {
    return QPDFObjectHandle::newInteger(static_cast<long long>(value));
}
QPDFObjectHandle real(double value) {
    return QPDFObjectHandle::newReal(value, 3, true);
}

/// @param simple  the one of the simple fonts that it is about; null when there are none
QPDFObjectHandle makeDescriptor(QPDF& pdf, const PdfFont& font, const SimpleFont* simple) {
    QPDFObjectHandle box = QPDFObjectHandle::newArray();
    for (const double edge : font.box)
        box.appendItem(real(edge));
    const std::string& bytes = simple != nullptr ? simple->bytes : font.program.bytes;
    QPDFObjectHandle file = QPDFObjectHandle::newStream(&pdf, bytes);
    const char* key = "/FontFile3";
    switch (font.program.kind) {
    case FontProgram::Kind::trueType:
        file.getDict().replaceKey("/Length1", integer(bytes.size()));
        key = "/FontFile2";
        break;
    case FontProgram::Kind::type1:
        file.getDict().replaceKey("/Length1", integer(simple->lengths[0]));
        file.getDict().replaceKey("/Length2", integer(simple->lengths[1]));
        file.getDict().replaceKey("/Length3", integer(simple->lengths[2]));
        key = "/FontFile";
        break;
    case FontProgram::Kind::cff:
        file.getDict().replaceKey("/Subtype", name("CIDFontType0C"));
        break;
    case FontProgram::Kind::openType:
        file.getDict().replaceKey("/Subtype", name("OpenType"));
        break;
    case FontProgram::Kind::named:
        file.getDict().replaceKey("/Subtype", name("Type1C"));
        break;
    }

    QPDFObjectHandle descriptor = QPDFObjectHandle::newDictionary();
    descriptor.replaceKey("/Type", name("FontDescriptor"));
    descriptor.replaceKey("/FontName", name(font.name));
    descriptor.replaceKey("/Flags", QPDFObjectHandle::newInteger(font.flags));
    descriptor.replaceKey("/FontBBox", box);
    descriptor.replaceKey("/ItalicAngle", real(font.italicAngle));
    descriptor.replaceKey("/Ascent", real(font.ascent));
    descriptor.replaceKey("/Descent", real(font.descent));
    descriptor.replaceKey("/CapHeight", real(font.capHeight));
    descriptor.replaceKey("/StemV", real(font.stemV));
    descriptor.replaceKey(key, file);
    return pdf.makeIndirectObject(descriptor);
}

/// The W array: runs of codes, each with the widths of its glyphs.
QPDFObjectHandle makeWidths(const UsedGlyphs& glyphs) {
    QPDFObjectHandle widths = QPDFObjectHandle::newArray();
    QPDFObjectHandle run;
    int next = -1;
    for (const auto& [code, glyph] : glyphs) {
        if (code != next) {
            run = QPDFObjectHandle::newArray();
            widths.appendItem(integer(code));
            widths.appendItem(run);
        }
        run.appendItem(real(double{glyph.advance}));
        next = code + 1;
    }
    return widths;
}

/// A simple font (ISO 32000-1, 9.6). Codes that no name is given for are those of its own encoding.
QPDFObjectHandle makeSimpleFont(QPDF& pdf, const PdfFont& font, unsigned char part) {
    const SimpleFont& simple = font.program.parts.at(part);
    const UsedGlyphs glyphs = font.byCode(part);
    const int first = glyphs.begin()->first;
    const int last = glyphs.rbegin()->first;
    QPDFObjectHandle widths = QPDFObjectHandle::newArray();
    for (int code = first; code <= last; ++code) {
        const auto glyph = glyphs.find(static_cast<unsigned short>(code));
        widths.appendItem(real(glyph != glyphs.end() ? double{glyph->second.advance} : 0));
    }
    QPDFObjectHandle differences = QPDFObjectHandle::newArray();
    int next = -1;
    for (const auto& [code, glyphName] : simple.names) {
        if (code != next)
            differences.appendItem(integer(code));
        differences.appendItem(name(glyphName));
        next = code + 1;
    }
    QPDFObjectHandle encoding = QPDFObjectHandle::newDictionary();
    encoding.replaceKey("/Type", name("Encoding"));
    encoding.replaceKey("/Differences", differences);

    QPDFObjectHandle type1 = QPDFObjectHandle::newDictionary();
    type1.replaceKey("/Type", name("Font"));
    type1.replaceKey("/Subtype", name("Type1"));
    type1.replaceKey("/BaseFont", name(font.name));
    type1.replaceKey("/FirstChar", QPDFObjectHandle::newInteger(first));
    type1.replaceKey("/LastChar", QPDFObjectHandle::newInteger(last));
    type1.replaceKey("/Widths", widths);
    type1.replaceKey("/FontDescriptor", makeDescriptor(pdf, font, &simple));
    type1.replaceKey("/Encoding", encoding);
    type1.replaceKey("/ToUnicode", QPDFObjectHandle::newStream(&pdf, toUnicodeCMap(glyphs, 1)));
    return type1;
}

/// A Type 0 font whose codes are CIDs (ISO 32000-1, 9.7).
QPDFObjectHandle makeCompositeFont(QPDF& pdf, const PdfFont& font) {
    const bool trueType = font.program.kind == FontProgram::Kind::trueType;
    const UsedGlyphs glyphs = font.byCode();
    QPDFObjectHandle system = QPDFObjectHandle::newDictionary();
    system.replaceKey("/Registry", QPDFObjectHandle::newString(font.program.system.registry));
    system.replaceKey("/Ordering", QPDFObjectHandle::newString(font.program.system.ordering));
    system.replaceKey("/Supplement", QPDFObjectHandle::newInteger(font.program.system.supplement));

    QPDFObjectHandle cidFont = QPDFObjectHandle::newDictionary();
    cidFont.replaceKey("/Type", name("Font"));
    cidFont.replaceKey("/Subtype", name(trueType ? "CIDFontType2" : "CIDFontType0"));
    cidFont.replaceKey("/BaseFont", name(font.name));
    cidFont.replaceKey("/CIDSystemInfo", system);
    if (trueType)
        cidFont.replaceKey("/CIDToGIDMap", name("Identity"));
    cidFont.replaceKey("/FontDescriptor", makeDescriptor(pdf, font, nullptr));
    cidFont.replaceKey("/W", makeWidths(glyphs));
    QPDFObjectHandle descendants = QPDFObjectHandle::newArray();
    descendants.appendItem(pdf.makeIndirectObject(cidFont));

    QPDFObjectHandle type0 = QPDFObjectHandle::newDictionary();
    type0.replaceKey("/Type", name("Font"));
    type0.replaceKey("/Subtype", name("Type0"));
    type0.replaceKey("/BaseFont", name(font.name));
    type0.replaceKey("/Encoding", name("Identity-H"));
    type0.replaceKey("/DescendantFonts", descendants);
    type0.replaceKey("/ToUnicode", QPDFObjectHandle::newStream(&pdf, toUnicodeCMap(glyphs)));
    return type0;
}

} // namespace

std::size_t writePdf(const std::string& path, const Layout& layout, const PdfFonts& fonts,
                     const std::string& title) {
    QPDF pdf;
    pdf.emptyPDF();

    QPDFObjectHandle fontDictionary = QPDFObjectHandle::newDictionary();
    for (const auto& [index, font] : fonts) {
        for (const auto& [part, simple] : font.program.parts) {
            fontDictionary.replaceKey(resourceName(index, false, part),
                                      pdf.makeIndirectObject(makeSimpleFont(pdf, font, part)));
        }
        if (font.program.isSimple())
            continue;
        QPDFObjectHandle dictionary = makeCompositeFont(pdf, font);
        fontDictionary.replaceKey(resourceName(index, false), pdf.makeIndirectObject(dictionary));
        if (hasUpright(layout, index)) {
            QPDFObjectHandle upright = dictionary.shallowCopy();
            upright.replaceKey("/Encoding", name("Identity-V"));
            fontDictionary.replaceKey(resourceName(index, true), pdf.makeIndirectObject(upright));
        }
    }
    QPDFObjectHandle resources = QPDFObjectHandle::newDictionary();
    resources.replaceKey("/Font", fontDictionary);
    resources = pdf.makeIndirectObject(resources);

    Progress progress("Writing the pages");
    for (std::size_t i = 0; i < layout.pages.size(); ++i) {
        const std::string content = pageContent(layout.pages[i], fonts, layout.pageHeight);
        QPDFObjectHandle page = QPDFObjectHandle::newDictionary();
        page.replaceKey("/Type", name("Page"));
        page.replaceKey("/MediaBox", QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(
                                         0, 0, layout.pageWidth, layout.pageHeight)));
        page.replaceKey("/Resources", resources);
        page.replaceKey("/Contents", QPDFObjectHandle::newStream(&pdf, content));
        pdf.addPage(pdf.makeIndirectObject(page), false);
        progress.update(i + 1, layout.pages.size());
    }

    QPDFObjectHandle info = QPDFObjectHandle::newDictionary();
    if (!title.empty())
        info.replaceKey("/Title", QPDFObjectHandle::newUnicodeString(title));
    info.replaceKey("/Creator", QPDFObjectHandle::newString("typeset"));
    info.replaceKey("/Producer", QPDFObjectHandle::newString("KWFontService17"));
    pdf.getTrailer().replaceKey("/Info", pdf.makeIndirectObject(info));

    QPDFWriter writer(pdf);
    writer.setOutputMemory();
    writer.setMinimumPDFVersion("1.5");
    writer.setDeterministicID(true);
    writer.write();
    const auto bytes = writer.getBufferSharedPointer();
    examples::writeFile(path, bytes->getBuffer(), bytes->getSize());
    return bytes->getSize();
}

} // namespace typeset
