#include "interop/QpdfReader.h"

#include <qpdf/Buffer.hh>
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

namespace {

std::string dataOf(QPDFObjectHandle stream) {
    const auto data = stream.getStreamData();
    return {reinterpret_cast<const char*>(data->getBuffer()), data->getSize()};
}

QpdfFont readFont(QPDFObjectHandle type0) {
    QPDFObjectHandle cidFont = type0.getKey("/DescendantFonts").getArrayItem(0);
    QPDFObjectHandle descriptor = cidFont.getKey("/FontDescriptor");

    QpdfFont font;
    font.name = type0.getKey("/BaseFont").getName();
    font.program = dataOf(descriptor.getKey("/FontFile2"));
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

/// Notes which glyphs a page shows in which font.
class ShownText : public QPDFObjectHandle::ParserCallbacks {
public:
    ShownText(std::map<std::string, QpdfFont>& fonts, bool firstPage)
        : fonts_(fonts), firstPage_(firstPage) {}

    void handleObject(QPDFObjectHandle object) override {
        if (!object.isOperator()) {
            operands_.push_back(object);
            return;
        }
        const std::string name = object.getOperatorValue();
        if (name == "Tf") {
            font_ = &fonts_.at(operands_.at(0).getName());
            font_->sizes.insert(operands_.at(1).getNumericValue());
        } else if (name == "Tm" && firstPage_) {
            font_->baselines.push_back(operands_.at(5).getNumericValue());
        } else if (name == "TJ") {
            for (QPDFObjectHandle part : operands_.at(0).getArrayAsVector()) {
                if (part.isString())
                    show(part.getStringValue());
            }
        }
        operands_.clear();
    }
    void handleEOF() override {}

private:
    void show(const std::string& codes) {
        for (std::size_t i = 0; i + 1 < codes.size(); i += 2) {
            font_->shown.insert(
                static_cast<unsigned short>(static_cast<unsigned char>(codes[i]) << 8 |
                                            static_cast<unsigned char>(codes[i + 1])));
        }
    }

    std::map<std::string, QpdfFont>& fonts_;
    bool firstPage_;
    QpdfFont* font_ = nullptr;
    std::vector<QPDFObjectHandle> operands_;
};

} // namespace

std::map<std::string, QpdfFont> readFonts(const std::string& path) {
    QPDF pdf;
    pdf.processFile(path.c_str());
    std::map<std::string, QpdfFont> fonts;
    bool firstPage = true;
    for (QPDFObjectHandle page : pdf.getAllPages()) {
        for (const auto& [name, font] : page.getKey("/Resources").getKey("/Font").getDictAsMap())
            fonts.try_emplace(name, readFont(font));
        ShownText text(fonts, firstPage);
        page.parsePageContents(&text);
        firstPage = false;
    }
    return fonts;
}

} // namespace KWTest
