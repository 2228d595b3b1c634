#include "interop/QpdfReader.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFJob.hh>
#include <qpdf/QPDFLogger.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <sstream>

namespace KWTest {

QpdfReport checkWithQpdf(const std::string& path) {
    const char* const arguments[] = {"qpdf", "--check", path.c_str(), nullptr};
    std::ostringstream output;
    const auto logger = QPDFLogger::create();
    logger->setOutputStreams(&output, &output);
    QPDFJob job;
    job.setLogger(logger);
    job.initializeFromArgv(arguments);
    job.run();
    return {job.getExitCode(), output.str()};
}

QpdfFont readFont(const std::string& path) {
    QPDF pdf;
    pdf.processFile(path.c_str());
    QPDFObjectHandle page = pdf.getAllPages().at(0);
    QPDFObjectHandle type0 = page.getKey("/Resources").getKey("/Font").getKey("/F1");
    QPDFObjectHandle cidFont = type0.getKey("/DescendantFonts").getArrayItem(0);

    QpdfFont font;
    QPDFObjectHandle descriptor = cidFont.getKey("/FontDescriptor");
    for (const auto& [key, value] : descriptor.getDictAsMap()) {
        QPDFObjectHandle number = value;
        if (number.isNumber())
            font.descriptor[key] = number.getNumericValue();
    }
    for (QPDFObjectHandle edge : descriptor.getKey("/FontBBox").getArrayAsVector())
        font.box.push_back(edge.getNumericValue());
    QPDFObjectHandle widths = cidFont.getKey("/W");
    for (int i = 0; i + 1 < widths.getArrayNItems(); i += 2) {
        auto gid = static_cast<unsigned short>(widths.getArrayItem(i).getIntValue());
        for (QPDFObjectHandle width : widths.getArrayItem(i + 1).getArrayAsVector())
            font.widths[gid++] = width.getNumericValue();
    }
    return font;
}

} // namespace KWTest
