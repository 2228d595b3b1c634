#include "PdfWriter.h"

#include "OutputFile.h"
#include "Progress.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFWriter.hh>
#include <qpdf/QUtil.hh>

#include <cmath>

namespace typeset {

namespace {

std::string number(double value) {
    return QUtil::double_to_string(value, 3, true);
}

void addCode(std::string& out, unsigned short gid) {
    static constexpr char kDigits[] = "0123456789abcdef";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += kDigits[(gid >> shift) & 0xF];
}

/// A line as one TJ: runs of glyph ids, and between them what the pen must move, in thousandths of
/// the font size and to the left, to come to where the next glyph stands.
void addLine(std::string& out, const Line& line, double pageHeight) {
    out += "BT /F1 " + number(line.size) + " Tf " + number(line.glyphs.front().x) + ' ' +
           number(pageHeight - line.baseline) + " Td [<";
    double pen = line.glyphs.front().x;
    for (const PlacedGlyph& glyph : line.glyphs) {
        const double shift = std::round((pen - glyph.x) * 1e6 / line.size) / 1000;
        if (shift != 0)
            out += '>' + number(shift) + '<';
        addCode(out, glyph.gid);
        pen += (double{glyph.advance} - shift) * line.size / 1000;
    }
    out += ">] TJ ET\n";
}

} // namespace

std::size_t writePdf(const std::string& path, const Layout& layout, const FontFile& font,
                     const UsedGlyphs& glyphs, const FontProgram& program,
                     const std::string& title) {
    QPDF pdf;
    pdf.emptyPDF();

    QPDFObjectHandle fonts = QPDFObjectHandle::newDictionary();
    fonts.replaceKey("/F1", makePdfFont(pdf, font, glyphs, program));
    QPDFObjectHandle resources = QPDFObjectHandle::newDictionary();
    resources.replaceKey("/Font", fonts);
    resources = pdf.makeIndirectObject(resources);

    Progress progress("Writing the pages");
    for (std::size_t i = 0; i < layout.pages.size(); ++i) {
        std::string content;
        for (const Line& line : layout.pages[i].lines)
            addLine(content, line, layout.pageHeight);
        QPDFObjectHandle page = QPDFObjectHandle::newDictionary();
        page.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
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
