#include "KWCommon15/KWXmlUtil.h"

#include "common/KWLimits.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <istream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace KWCommonNS;

namespace {

std::string utf8(const UnicodeString& text) {
    std::string bytes;
    return text.toUTF8String(bytes);
}

KWPtr<KWXmlParser> parser(const char16_t* charset = u"") {
    KWUri::ContentInfo info;
    info.charset = charset;
    return KWXmlUtil::createXmlParser(&info);
}

// All events in short: <name a="v" b="w"> </name> "text", and an error's message in brackets.
std::string events(KWXmlParser& from) {
    std::string all;
    try {
        for (;;) {
            switch (from.nextEvent()) {
            case KWXmlEvent::startTag:
                all += "<" + utf8(from.getName());
                for (const auto& [name, value] : from.getAttributes())
                    all += " " + utf8(name) + "=\"" + utf8(value) + "\"";
                all += ">";
                break;
            case KWXmlEvent::endTag:
                all += "</" + utf8(from.getName()) + ">";
                break;
            case KWXmlEvent::text:
                all += utf8(from.getText());
                break;
            case KWXmlEvent::endOfInput:
                return all;
            }
        }
    } catch (const KWError& error) {
        return all + "[" + utf8(error.getMessage()) + "]";
    }
}

std::string eventsOf(const std::string& document, bool text = false,
                     const char16_t* encoding = u"") {
    std::istringstream input(document);
    const KWPtr<KWXmlParser> xml = parser();
    xml->setTextEvents(text);
    xml->open(input, encoding, u"doc");
    return events(*xml);
}

bool fails(const std::string& document) {
    return eventsOf(document).ends_with(']');
}

// A document that is made while it is read, so that only the parser's memory counts.
class Repeated : public std::streambuf {
public:
    Repeated(std::string head, std::string piece, std::size_t count)
        : piece_(std::move(piece)), left_(count), current_(std::move(head)) {
        point();
    }
    std::size_t given = 0;

protected:
    int_type underflow() override {
        if (gptr() == egptr()) {
            if (left_ == 0)
                return traits_type::eof();
            --left_;
            current_ = piece_;
            point();
        }
        return traits_type::to_int_type(*gptr());
    }

private:
    void point() {
        given += current_.size();
        setg(current_.data(), current_.data(), current_.data() + current_.size());
    }
    std::string piece_;
    std::size_t left_;
    std::string current_;
};

} // namespace

TEST(XmlParser, GivesTagsWithAttributesInTheOrderOfTheDocument) {
    EXPECT_EQ(eventsOf("<?xml version='1.0'?><!-- c --><a z='1' b='&lt;2&#x3042;' A=' 3 '>x"
                       "<b/><?pi?>y</a>"),
              "<a z=\"1\" b=\"<2\xE3\x81\x82\" A=\" 3 \"><b></b></a>");
}

TEST(XmlParser, GivesTextOnlyWhenAsked) {
    EXPECT_EQ(eventsOf("<a>one <b>two</b>&amp;<![CDATA[<three>]]></a>", true),
              "<a>one <b>two</b>&<three></a>");
    EXPECT_EQ(eventsOf("<a>one</a>"), "<a></a>");
}

TEST(XmlParser, AnswersAttributesByName) {
    std::istringstream input("<a x='1' y=''/>");
    const KWPtr<KWXmlParser> xml = parser();
    xml->open(input, u"", u"");
    ASSERT_EQ(xml->nextEvent(), KWXmlEvent::startTag);
    ASSERT_NE(xml->getAttribute(u"x"), nullptr);
    EXPECT_EQ(utf8(*xml->getAttribute(u"x")), "1");
    ASSERT_NE(xml->getAttribute(u"y"), nullptr);
    EXPECT_TRUE(xml->getAttribute(u"y")->isEmpty());
    EXPECT_EQ(xml->getAttribute(u"X"), nullptr);
    EXPECT_TRUE(xml->getText().isEmpty());
    ASSERT_EQ(xml->nextEvent(), KWXmlEvent::endTag);
    EXPECT_TRUE(xml->getAttributes().empty());
}

TEST(XmlParser, TellsLineAndColumnFromOne) {
    std::istringstream input("<a>\n  <b/>\r\n\xE3\x81\x82<c/></a>");
    const KWPtr<KWXmlParser> xml = parser();
    EXPECT_EQ(xml->getLine(), 0);
    xml->open(input, u"", u"");
    const std::vector<std::pair<int, int>> places = {{1, 1}, {2, 3}, {2, 7},
                                                     {3, 2}, {3, 6}, {3, 6}};
    for (const auto& [line, column] : places) {
        xml->nextEvent();
        EXPECT_EQ(xml->getLine(), line);
        EXPECT_EQ(xml->getColumn(), column);
    }
    EXPECT_EQ(xml->nextEvent(), KWXmlEvent::endOfInput);
    EXPECT_EQ(xml->nextEvent(), KWXmlEvent::endOfInput); // again and again
    EXPECT_TRUE(xml->getName().isEmpty());
}

TEST(XmlParser, GivesTheEventsBeforeTheBreakAndThenThrows) {
    EXPECT_EQ(eventsOf("<a>\n<b x='1'/>\n</c>"),
              "<a><b x=\"1\"></b>[doc, line 3, column 3: mismatched tag]");
    std::istringstream input("<a></b>");
    const KWPtr<KWXmlParser> xml = parser();
    xml->open(input, u"", u"file.xml");
    EXPECT_EQ(xml->nextEvent(), KWXmlEvent::startTag);
    for (int again = 0; again < 2; ++again) {
        try {
            xml->nextEvent();
            FAIL() << "the tags do not match";
        } catch (const KWError& error) {
            EXPECT_EQ(error.getCode(), KWERR_XML_SYNTAX);
            EXPECT_EQ(error.getLevel(), KWErrorLevel::thrown);
            EXPECT_EQ(utf8(error.getSecondText()), "file.xml");
            EXPECT_EQ(error.getFirstValue(), 1);
            EXPECT_EQ(error.getSecondValue(), 6);
        }
    }
}

TEST(XmlParser, WhatIsNoDocumentThrows) {
    for (const std::string& document :
         {std::string(), std::string("   "), std::string("text"), std::string("<a>"),
          std::string("<a/><b/>"), std::string("<a x='1' x='2'/>"), std::string("<a\0/>", 5),
          std::string("<a>\0</a>", 8), std::string("<a>\xFF</a>"), std::string("<a>&none;</a>"),
          std::string("<?xml version='1.0' encoding='no-such'?><a/>"),
          std::string("<?xml version='1.0' encoding='ISO-2022-JP'?><a/>")})
        EXPECT_TRUE(fails(document)) << document;
}

TEST(XmlParser, ADocumentCutAnywhereThrows) {
    const std::string document = "<?xml version='1.0'?><a x='1'><b>t&amp;</b><!--c--></a>";
    for (std::size_t length = 0; length < document.size(); ++length)
        EXPECT_TRUE(fails(document.substr(0, length))) << length;
    EXPECT_FALSE(fails(document));
}

TEST(XmlParser, ReadsLongDocumentsAcrossItsPieces) {
    std::string document = "<root>";
    std::string expected = "<root>";
    for (int i = 0; i < 20000; ++i) {
        const std::string value = std::to_string(i);
        document += "<e n='" + value + "'/>";
        expected += "<e n=\"" + value + "\"></e>";
    }
    EXPECT_EQ(eventsOf(document + "</root>"), expected + "</root>");
}

TEST(XmlParser, ReadsNoMoreThanItNeedsForTheNextEvent) {
    Repeated buffer("<root>", "<element attribute='value'/>", 1000000);
    std::istream input(&buffer);
    const KWPtr<KWXmlParser> xml = parser();
    xml->open(input, u"", u"");
    for (int i = 0; i < 100; ++i)
        xml->nextEvent();
    EXPECT_LT(buffer.given, 20000U);
}

TEST(XmlParser, ExpandsEntitiesOfTheDocument) {
    EXPECT_EQ(eventsOf("<!DOCTYPE a [<!ENTITY e 'v'><!ENTITY f '<b/>'>]><a x='&e;&e;'>&f;</a>"),
              "<a x=\"vv\"><b></b></a>");
}

TEST(XmlParser, EntitiesWithinEntitiesGiveAllTheirElements) {
    std::string document = "<!DOCTYPE a [<!ENTITY e0 '<b/>'>";
    for (int i = 1; i <= 3; ++i) {
        const std::string inner = "&e" + std::to_string(i - 1) + ";";
        document += "<!ENTITY e" + std::to_string(i) + " '";
        for (int k = 0; k < 10; ++k)
            document += inner;
        document += "'>";
    }
    std::string expected = "<a>";
    for (int i = 0; i < 1000; ++i)
        expected += "<b></b>";
    EXPECT_EQ(eventsOf(document + "]><a>&e3;</a>"), expected + "</a>");
}

TEST(XmlParser, RefusesMoreEventsThanAPieceCanHold) {
    // Within the ratio that the long comments before it allow, but all at once.
    std::string document = "<!DOCTYPE a [<!ENTITY e0 '<b/><b/><b/><b/><b/><b/><b/><b/><b/><b/>'>"
                           "<!ENTITY e1 '&e0;&e0;&e0;&e0;&e0;&e0;&e0;&e0;&e0;&e0;'>]>";
    for (int i = 0; i < 10; ++i)
        document += "<!--" + std::string(100000, 'x') + "-->";
    document += "<a>";
    for (int i = 0; i < 1000; ++i)
        document += "&e1;";
    const std::string all = eventsOf(document + "</a>");
    EXPECT_NE(all.find("entities hold too much"), std::string::npos);
}

TEST(XmlParser, RefusesEntitiesThatMultiply) {
    for (const char* last : {"lol", "", "<b/>"}) { // expanding to much, to nothing, to elements
        std::string document = "<!DOCTYPE a [<!ENTITY e0 '" + std::string(last) + "'>";
        for (int i = 1; i <= 12; ++i) {
            document += "<!ENTITY e" + std::to_string(i) + " '";
            for (int k = 0; k < 10; ++k)
                document += "&e" + std::to_string(i - 1) + ";";
            document += "'>";
        }
        document += "]><a>&e12;</a>";
        std::istringstream input(document);
        const KWPtr<KWXmlParser> xml = parser();
        xml->open(input, u"", u"");
        EXPECT_THROW(
            {
                for (int i = 0; i < 1000000; ++i)
                    xml->nextEvent();
            },
            KWError);
    }
}

TEST(XmlParser, RefusesOneLongEntityUsedManyTimes) {
    std::string document = "<!DOCTYPE a [<!ENTITY e '" + std::string(100000, 'x') + "'>]><a x='";
    for (int i = 0; i < 1000; ++i)
        document += "&e;";
    EXPECT_TRUE(fails(document + "'/>"));
}

TEST(XmlParser, RefusesALongChainOfEntities) {
    const auto chain = [](std::size_t links) {
        std::string document = "<!DOCTYPE a [<!ENTITY e0 'x'>";
        for (std::size_t i = 1; i < links; ++i)
            document += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
        return document + "]><a x='&e" + std::to_string(links - 1) + ";'/>";
    };
    EXPECT_EQ(eventsOf(chain(kXmlMaxDeclarations)), "<a x=\"x\"></a>");
    EXPECT_NE(eventsOf(chain(kXmlMaxDeclarations + 1)).find("too many declarations"),
              std::string::npos);
    EXPECT_TRUE(fails(chain(50000)));
}

TEST(XmlParser, RefusesManyDefaultAttributes) {
    std::string document = "<!DOCTYPE r [<!ELEMENT r ANY>";
    for (std::size_t i = 0; i <= kXmlMaxDeclarations; ++i)
        document += "<!ATTLIST a b" + std::to_string(i) + " CDATA ''>";
    EXPECT_NE(eventsOf(document + "]><r><a/></r>").find("too many declarations"),
              std::string::npos);
}

TEST(XmlParser, CountsDefaultAttributesThatAreEmptyToo) {
    std::string document = "<!DOCTYPE r [";
    for (std::size_t i = 0; i < kXmlMaxDeclarations; ++i)
        document += "<!ATTLIST a b" + std::to_string(i) + " CDATA ''>";
    document += "]><r>";
    for (int i = 0; i < 2000; ++i)
        document += "<a/>";
    EXPECT_NE(eventsOf(document + "</r>").find("attributes hold too much by default"),
              std::string::npos);
}

TEST(XmlParser, ALongDocumentMayNotHoldMoreByDefaultThanAShortOne) {
    const auto document = [](int elements) {
        std::string text =
            "<!DOCTYPE r [<!ATTLIST a b CDATA '" + std::string(100000, 'y') + "'>]><r>";
        // Far enough from one another that no piece holds many.
        for (int i = 0; i < elements; ++i)
            text += "<a/><!--" + std::string(9000, 'x') + "-->";
        return text + "</r>";
    };
    EXPECT_FALSE(fails(document(20)));
    EXPECT_NE(eventsOf(document(25)).find("attributes hold too much by default"),
              std::string::npos);
}

TEST(XmlParser, ALongDocumentMayNotExpandToMoreThanAShortOne) {
    const auto document = [](int uses) {
        std::string text = "<!DOCTYPE a [<!ENTITY e '" + std::string(3000, 'y') + "'>]>";
        for (int i = 0; i < 20; ++i)
            text += "<!--" + std::string(100000, 'x') + "-->";
        text += "<a>";
        for (int i = 0; i < uses; ++i)
            text += "&e;";
        return text + "</a>";
    };
    EXPECT_FALSE(fails(document(600)));
    EXPECT_TRUE(fails(document(1000))) << "3 MB, 1.5 times the document";
}

TEST(XmlParser, OpensNothingButTheDocument) {
    const KWTest::TempDir dir;
    dir.write("secret.txt", "secret");
    dir.write("bad.dtd", "<!ENTITY e 'from the DTD'> not a DTD");
    const std::string folder = "file://" + dir.path().string();
    EXPECT_EQ(
        eventsOf("<!DOCTYPE a [<!ENTITY e SYSTEM '" + folder + "/secret.txt'>]><a>1&e;2</a>", true),
        "<a>12</a>");
    EXPECT_EQ(eventsOf("<!DOCTYPE a SYSTEM '" + folder + "/bad.dtd'><a>1&e;2</a>", true),
              "<a>12</a>");
    EXPECT_EQ(
        eventsOf("<!DOCTYPE a [<!ENTITY % p SYSTEM '" + folder + "/bad.dtd'>%p;]><a>1</a>", true),
        "<a>1</a>");
}

TEST(XmlParser, NestsUpToItsLimit) {
    const auto nested = [](std::size_t depth) {
        std::string document;
        for (std::size_t i = 0; i < depth; ++i)
            document += "<a>";
        for (std::size_t i = 0; i < depth; ++i)
            document += "</a>";
        return document;
    };
    EXPECT_FALSE(fails(nested(kXmlMaxDepth)));
    EXPECT_TRUE(fails(nested(kXmlMaxDepth + 1)));
    const std::string deep = eventsOf(nested(1000000));
    EXPECT_NE(deep.find("nested too deeply"), std::string::npos);
    EXPECT_NE(deep.find("line 1, column " + std::to_string(3 * kXmlMaxDepth + 1)),
              std::string::npos);
}

TEST(XmlParser, RefusesEndlessTokens) {
    for (const char* head : {"<!--", "<a x='", "<", "<?pi ", "<!DOCTYPE a [<!ENTITY e '"}) {
        Repeated buffer(head, std::string(4096, 'x'), 25000); // 100 MB
        std::istream input(&buffer);
        const KWPtr<KWXmlParser> xml = parser();
        xml->open(input, u"", u"");
        EXPECT_THROW(xml->nextEvent(), KWError) << head;
        // expat may put a token off until it has twice the bytes.
        EXPECT_LT(buffer.given, 3 * kXmlMaxTokenBytes) << head;
    }
}

TEST(XmlParser, TakesLongTextInPieces) {
    Repeated buffer("<a>", std::string(4096, 'x'), 1000); // 4 MB and no end tag
    std::istream input(&buffer);
    const KWPtr<KWXmlParser> xml = parser();
    xml->setTextEvents(true);
    xml->open(input, u"", u"");
    std::size_t length = 0;
    EXPECT_THROW(
        {
            for (;;) {
                if (xml->nextEvent() == KWXmlEvent::text) {
                    length += static_cast<std::size_t>(xml->getText().length());
                    ASSERT_LE(xml->getText().length(), 16384);
                }
            }
        },
        KWError);
    EXPECT_EQ(length, 4096000U);
}

TEST(XmlParser, ReadsTheEncodingsThatExpatKnows) {
    const std::string result = "<a x=\"\xC3\xA9\"></a>";
    EXPECT_EQ(eventsOf("<a x='\xC3\xA9'/>"), result);
    EXPECT_EQ(eventsOf("\xEF\xBB\xBF<a x='\xC3\xA9'/>"), result);
    EXPECT_EQ(eventsOf("<?xml version='1.0' encoding='ISO-8859-1'?><a x='\xE9'/>"), result);
    std::string utf16 = "\xFF\xFE";
    for (const char ch : std::string_view("<a x='\xE9'/>"))
        utf16 += {ch, '\0'};
    EXPECT_EQ(eventsOf(utf16), result);
}

TEST(XmlParser, ReadsEncodingsThatOnlyIcuKnows) {
    const auto document = [](const std::string& encoding, const std::string& bytes) {
        return eventsOf("<?xml version='1.0' encoding='" + encoding + "'?><a x='" + bytes + "'/>");
    };
    EXPECT_EQ(document("windows-1252", "\x80"), "<a x=\"\xE2\x82\xAC\"></a>");
    EXPECT_EQ(document("KOI8-R", "\xC1"), "<a x=\"\xD0\xB0\"></a>");
    EXPECT_EQ(document("Shift_JIS", "\x82\xA0"
                                    "\xB1"),
              "<a x=\"\xE3\x81\x82\xEF\xBD\xB1\"></a>");
    EXPECT_EQ(document("EUC-JP", "\xA4\xA2"), "<a x=\"\xE3\x81\x82\"></a>");
    EXPECT_EQ(document("EUC-JP", "\x8F\xB0\xA1"), "<a x=\"\xE4\xB8\x82\"></a>"); // three bytes
    EXPECT_EQ(document("Big5", "\xA4\xA4"), "<a x=\"\xE4\xB8\xAD\"></a>");
    EXPECT_EQ(document("GBK", "\xD6\xD0"), "<a x=\"\xE4\xB8\xAD\"></a>");
    EXPECT_TRUE(document("Shift_JIS", "\x82").ends_with(']')); // half a character
    EXPECT_TRUE(document("windows-1252", "\x81<").ends_with(']'));
}

TEST(XmlParser, TakesUtf8WithoutItsHyphen) {
    const std::string head = "<?xml version='1.0' encoding='";
    const std::string result = "<a x=\"\xC3\xA9\xF0\x9F\x98\x80\"></a>";
    EXPECT_EQ(eventsOf(head + "utf8'?><a x='\xC3\xA9\xF0\x9F\x98\x80'/>"), result);
    EXPECT_EQ(eventsOf(head + "UTF8'?>\n<a></b>"),
              "<a>[doc, line 2, column 6: mismatched tag]"); // places do not move
    EXPECT_EQ(eventsOf(head + "ISO-8859-1'?><a x='\xC3\xA9\xF0\x9F\x98\x80'/>", false, u"utf8"),
              result);
    EXPECT_TRUE(fails(head + "utf8'?><a x='\xE9'/>"));
}

TEST(XmlParser, AStatedEncodingOverridesTheDeclaredOne) {
    const std::string document = "<?xml version='1.0' encoding='UTF-8'?><a x='\xE9'/>";
    EXPECT_EQ(eventsOf(document, false, u"ISO-8859-1"), "<a x=\"\xC3\xA9\"></a>");
    std::istringstream input(document);
    const KWPtr<KWXmlParser> xml = parser(u"windows-1252"); // from the content information
    xml->open(input, u"", u"");
    EXPECT_EQ(events(*xml), "<a x=\"\xC3\xA9\"></a>");
}

TEST(XmlParser, OpensUrisAndNamesThemInItsErrors) {
    const KWTest::TempDir dir;
    dir.write("good.xml", "<a/>");
    dir.write("bad.xml", "<a>");
    const KWPtr<KWXmlParser> xml = KWXmlUtil::createXmlParser(nullptr);
    ASSERT_TRUE(xml->open(dir.uri("good.xml"), u"", u""));
    EXPECT_EQ(events(*xml), "<a></a>");
    ASSERT_TRUE(xml->open(dir.uri("bad.xml"), u"", u"")); // the same parser again
    EXPECT_EQ(events(*xml),
              "<a>[" + dir.path("bad.xml").string() + ", line 1, column 4: no element found]");
    ASSERT_TRUE(xml->open(KWUri(u"data:,<x/>"), u"", u""));
    EXPECT_EQ(events(*xml), "<x></x>");
    EXPECT_FALSE(xml->open(dir.uri("missing.xml"), u"", u""));
    EXPECT_FALSE(xml->open(KWUri(dir.text("")), u"", u""));
    EXPECT_FALSE(xml->open(KWUri(), u"", u""));
}

TEST(XmlParser, TheCharsetOfTheResourceOverridesTheDeclaredOne) {
    const UnicodeString stated(u"data:text/xml;charset=iso-8859-1,<a x='%E9'/>");
    const KWPtr<KWXmlParser> xml = parser();
    ASSERT_TRUE(xml->open(KWUri(stated), u"", u""));
    EXPECT_EQ(events(*xml), "<a x=\"\xC3\xA9\"></a>");
    ASSERT_TRUE(xml->open(KWUri(stated), u"KOI8-R", u"")); // the caller knows better
    EXPECT_EQ(events(*xml), "<a x=\"\xD0\x98\"></a>");
    const KWPtr<KWXmlParser> told = parser(u"KOI8-R");
    ASSERT_TRUE(told->open(KWUri(stated), u"", u""));
    EXPECT_EQ(events(*told), "<a x=\"\xD0\x98\"></a>");
    // US-ASCII is supposed here and stated nowhere.
    ASSERT_TRUE(xml->open(KWUri(u"data:,<a x='%C3%A9'/>"), u"", u""));
    EXPECT_EQ(events(*xml), "<a x=\"\xC3\xA9\"></a>");
}

TEST(XmlParser, AFailedOpenTellsWhyAndLeavesNoDocument) {
    std::istringstream input("<a><b/></a>");
    const KWPtr<KWXmlParser> xml = parser();
    xml->open(input, u"", u"");
    ASSERT_EQ(xml->nextEvent(), KWXmlEvent::startTag);
    UnicodeString reason;
    EXPECT_FALSE(xml->open(KWUri(u"data:"), u"", u"", &reason));
    EXPECT_FALSE(reason.isEmpty());
    EXPECT_TRUE(xml->getName().isEmpty());
    EXPECT_EQ(xml->getLine(), 0);
    EXPECT_EQ(xml->nextEvent(), KWXmlEvent::endOfInput);
}

TEST(XmlParser, IsAtItsEndBeforeItIsOpened) {
    EXPECT_EQ(parser()->nextEvent(), KWXmlEvent::endOfInput);
}

TEST(XmlParser, AnInputThatBreaksIsNoEnd) {
    struct Broken : std::streambuf {
        bool first = true;
        std::string bytes = "<a>" + std::string(10000, ' ');
        int_type underflow() override {
            if (!std::exchange(first, false))
                throw std::runtime_error("device gone");
            setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
            return traits_type::to_int_type(*gptr());
        }
    } buffer;
    std::istream input(&buffer);
    const KWPtr<KWXmlParser> xml = parser();
    xml->open(input, u"", u"doc");
    const std::string all = events(*xml);
    EXPECT_TRUE(all.starts_with("<a>[doc, ")) << all;
    EXPECT_NE(all.find("cannot be read"), std::string::npos);
}

TEST(XmlParser, IsACountedObject) {
    const KWPtr<KWXmlParser> xml = KWXmlUtil::createXmlParser(nullptr);
    EXPECT_EQ(xml->getRefCount(), 1);
    EXPECT_EQ(xml->getClassId(), KWXmlParser::kClassId);
    EXPECT_TRUE(xml->isKindOf(KWXmlParser::kClassId));
    EXPECT_TRUE(xml->isKindOf(KWRCObject::kClassId));
    EXPECT_EQ(utf8(xml->getClassName()), "KWXmlParser");
}
