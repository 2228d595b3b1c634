#include "PdfWriter.h"

#include "OutputFile.h"
#include "PageContent.h"
#include "Progress.h"

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

QPDFObjectHandle makeDescriptor(QPDF& pdf, const PdfFont& font) {
    QPDFObjectHandle box = QPDFObjectHandle::newArray();
    for (const double edge : font.box)
        box.appendItem(real(edge));
    QPDFObjectHandle file = QPDFObjectHandle::newStream(&pdf, font.program);
    file.getDict().replaceKey("/Length1", integer(font.program.size()));

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
    descriptor.replaceKey("/FontFile2", file);
    return pdf.makeIndirectObject(descriptor);
}

/// The W array: runs of glyph ids, each with the widths of its glyphs.
QPDFObjectHandle makeWidths(const UsedGlyphs& glyphs) {
    QPDFObjectHandle widths = QPDFObjectHandle::newArray();
    QPDFObjectHandle run;
    int next = -1;
    for (const auto& [gid, glyph] : glyphs) {
        if (gid != next) {
            run = QPDFObjectHandle::newArray();
            widths.appendItem(integer(gid));
            widths.appendItem(run);
        }
        run.appendItem(real(double{glyph.advance}));
        next = gid + 1;
    }
    return widths;
}

/// A Type 0 font whose character codes are the glyph ids (ISO 32000-1, 9.7).
QPDFObjectHandle makeFont(QPDF& pdf, const PdfFont& font) {
    QPDFObjectHandle system = QPDFObjectHandle::newDictionary();
    system.replaceKey("/Registry", QPDFObjectHandle::newString("Adobe"));
    system.replaceKey("/Ordering", QPDFObjectHandle::newString("Identity"));
    system.replaceKey("/Supplement", integer(0));

    QPDFObjectHandle cidFont = QPDFObjectHandle::newDictionary();
    cidFont.replaceKey("/Type", name("Font"));
    cidFont.replaceKey("/Subtype", name("CIDFontType2"));
    cidFont.replaceKey("/BaseFont", name(font.name));
    cidFont.replaceKey("/CIDSystemInfo", system);
    cidFont.replaceKey("/CIDToGIDMap", name("Identity"));
    cidFont.replaceKey("/FontDescriptor", makeDescriptor(pdf, font));
    cidFont.replaceKey("/W", makeWidths(font.glyphs));
    QPDFObjectHandle descendants = QPDFObjectHandle::newArray();
    descendants.appendItem(pdf.makeIndirectObject(cidFont));

    QPDFObjectHandle type0 = QPDFObjectHandle::newDictionary();
    type0.replaceKey("/Type", name("Font"));
    type0.replaceKey("/Subtype", name("Type0"));
    type0.replaceKey("/BaseFont", name(font.name));
    type0.replaceKey("/Encoding", name("Identity-H"));
    type0.replaceKey("/DescendantFonts", descendants);
    type0.replaceKey("/ToUnicode", QPDFObjectHandle::newStream(&pdf, toUnicodeCMap(font.glyphs)));
    return type0;
}

bool hasUpright(const Layout& layout, std::size_t font) {
    for (const Page& page : layout.pages) {
        for (const Line& line : page.lines) {
            for (const Span& span : line.spans) {
                if (span.font == font && span.writing == Writing::upright)
                    return true;
            }
        }
    }
    return false;
}

} // namespace

std::size_t writePdf(const std::string& path, const Layout& layout, const PdfFonts& fonts,
                     const std::string& title) {
    QPDF pdf;
    pdf.emptyPDF();

    QPDFObjectHandle fontDictionary = QPDFObjectHandle::newDictionary();
    for (const auto& [index, font] : fonts) {
        QPDFObjectHandle type0 = makeFont(pdf, font);
        fontDictionary.replaceKey(resourceName(index, false), pdf.makeIndirectObject(type0));
        if (hasUpright(layout, index)) {
            QPDFObjectHandle upright = type0.shallowCopy();
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
    writeFile(path, bytes->getBuffer(), bytes->getSize());
    return bytes->getSize();
}

} // namespace typeset
