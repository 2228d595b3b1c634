// XML documents, in the encoding that they declare and in a given one. Whatever they hold ends in
// an error or in the end of the document, within the parser's limits.

#include "FuzzTarget.h"

#include <KWCommon15/KWError.h>
#include <KWCommon15/KWXmlUtil.h>

#include <sstream>
#include <string>

using namespace KWCommonNS;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const char* encoding : {"", "UTF-16LE", "windows-1252"}) {
        std::istringstream input(std::string(reinterpret_cast<const char*>(data), size));
        const auto parser = KWXmlUtil::createXmlParser(nullptr);
        parser->setTextEvents(true);
        try {
            parser->open(input, icu::UnicodeString(encoding), icu::UnicodeString("fuzz.xml"));
            while (parser->nextEvent() != KWXmlEvent::endOfInput) {
                parser->getName();
                parser->getText();
                parser->getAttribute(icu::UnicodeString("a"));
                parser->getLine();
                parser->getColumn();
            }
        } catch (const KWError&) {
        }
    }
    return 0;
}
