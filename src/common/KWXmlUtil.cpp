#include "KWCommon15/KWXmlUtil.h"

#include "KWCommon15/KWEmptyString.h"
#include "common/AsciiChars.h"
#include "common/Expat.h"
#include "common/KWLimits.h"
#include "common/TextView.h"
#include "common/XmlEncoding.h"

#include <algorithm>
#include <deque>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>

namespace KWCommonNS {

namespace {

constexpr int kPieceBytes = 8192;

struct ParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using Expat = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

UnicodeString fromUtf8(std::string_view text) {
    return UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

// A common misspelling that expat does not know.
bool isUtf8Alias(std::u16string_view charset) {
    return equalsWord(charset, u"utf8");
}

// What RFC 2397 supposes of a `data:` URI that states nothing.
bool isSupposed(const KWUri& uri, const KWUri::ContentInfo& info) {
    return uri.isDataScheme() && info.mediaType == UnicodeString(u"text/plain") &&
           info.charset == UnicodeString(u"US-ASCII");
}

struct Event {
    KWXmlEvent kind = KWXmlEvent::endOfInput;
    UnicodeString text; // name of the element, or character data
    std::vector<KWXmlParser::Attribute> attributes;
    int line = 0;
    int column = 0;
};

} // namespace

struct KWXmlParser::State {
    explicit State(const KWUri::ContentInfo* contentInfo) : info(contentInfo) {}

    // What lasts from one document to the next.
    KWUri::ContentInfo info;
    bool textEvents = false;

    std::unique_ptr<std::istream> ownInput;
    std::istream* input = nullptr;
    UnicodeString name;
    Expat expat;
    std::deque<Event> waiting;
    Event current;
    std::size_t depth = 0;
    std::size_t declarations = 0;
    XML_Index bytesFed = 0;
    std::size_t waitingBytes = 0;
    std::size_t defaultedBytes = 0; // in attributes that no tag held, of the whole document
    bool finished = true;
    bool outOfMemory = false;
    bool declaredUtf8Alias = false;
    std::unique_ptr<KWError> failure;

    void reset();
    void begin(std::istream* stream, const UnicodeString& encoding, const UnicodeString& title);
    void makeExpat(const char* charset);
    void parseMore();
    XML_Status parsePiece(int length, bool last);
    XML_Status beginAgain(std::string_view first, bool last);
    void countDeclaration();
    void fail(std::string_view reason);
    Event& push(KWXmlEvent kind);
    UnicodeString keep(std::string_view text);
    void settle(XML_Status status);

    template <typename Work>
    void guarded(Work work);
    static void XMLCALL onStart(void* data, const XML_Char* name, const XML_Char** attributes);
    static void XMLCALL onEnd(void* data, const XML_Char* name);
    static void XMLCALL onText(void* data, const XML_Char* text, int length);
    static void XMLCALL onEntity(void* data, const XML_Char*, int, const XML_Char*, int,
                                 const XML_Char*, const XML_Char*, const XML_Char*,
                                 const XML_Char*);
    static void XMLCALL onAttlist(void* data, const XML_Char*, const XML_Char*, const XML_Char*,
                                  const XML_Char*, int);
    static int XMLCALL onEncoding(void* data, const XML_Char* name, XML_Encoding* encoding);
};

// No exception may pass through expat.
template <typename Work>
void KWXmlParser::State::guarded(Work work) {
    if (outOfMemory || failure != nullptr)
        return;
    try {
        work();
        if (waiting.size() > kXmlMaxWaitingEvents || waitingBytes > kXmlMaxWaitingBytes)
            fail("entities hold too much");
    } catch (const std::bad_alloc&) {
        outOfMemory = true;
    }
    if (outOfMemory || failure != nullptr)
        XML_StopParser(expat.get(), XML_FALSE);
}

Event& KWXmlParser::State::push(KWXmlEvent kind) {
    Event& event = waiting.emplace_back();
    event.kind = kind;
    event.line = static_cast<int>(XML_GetCurrentLineNumber(expat.get()));
    event.column = static_cast<int>(XML_GetCurrentColumnNumber(expat.get())) + 1;
    return event;
}

UnicodeString KWXmlParser::State::keep(std::string_view text) {
    waitingBytes += text.size();
    return fromUtf8(text);
}

void XMLCALL KWXmlParser::State::onStart(void* data, const XML_Char* name,
                                         const XML_Char** attributes) {
    auto& state = *static_cast<State*>(data);
    state.guarded([&] {
        if (++state.depth > kXmlMaxDepth) {
            state.fail("elements nested too deeply");
            return;
        }
        Event& event = state.push(KWXmlEvent::startTag);
        event.text = state.keep(name);
        // Names and values that stand in the tag; those that declarations add come behind.
        const int given = XML_GetSpecifiedAttributeCount(state.expat.get());
        for (int i = 0; attributes[i] != nullptr; i += 2) {
            const std::size_t before = state.waitingBytes;
            state.waitingBytes += kXmlAttributeCost;
            event.attributes.emplace_back(state.keep(attributes[i]), state.keep(attributes[i + 1]));
            if (i >= given)
                state.defaultedBytes += state.waitingBytes - before;
        }
        if (static_cast<float>(state.defaultedBytes) > kXmlMaxExpansion)
            state.fail("attributes hold too much by default");
    });
}

void XMLCALL KWXmlParser::State::onEnd(void* data, const XML_Char* name) {
    auto& state = *static_cast<State*>(data);
    state.guarded([&] {
        --state.depth;
        state.push(KWXmlEvent::endTag).text = state.keep(name);
    });
}

void XMLCALL KWXmlParser::State::onText(void* data, const XML_Char* text, int length) {
    auto& state = *static_cast<State*>(data);
    if (!state.textEvents)
        return;
    state.guarded([&] {
        state.push(KWXmlEvent::text).text =
            state.keep(std::string_view(text, static_cast<std::size_t>(length)));
    });
}

void KWXmlParser::State::countDeclaration() {
    guarded([this] {
        if (++declarations > kXmlMaxDeclarations)
            fail("too many declarations");
    });
}

void XMLCALL KWXmlParser::State::onEntity(void* data, const XML_Char*, int, const XML_Char*, int,
                                          const XML_Char*, const XML_Char*, const XML_Char*,
                                          const XML_Char*) {
    static_cast<State*>(data)->countDeclaration();
}

void XMLCALL KWXmlParser::State::onAttlist(void* data, const XML_Char*, const XML_Char*,
                                           const XML_Char*, const XML_Char*, int) {
    static_cast<State*>(data)->countDeclaration();
}

int XMLCALL KWXmlParser::State::onEncoding(void* data, const XML_Char* name,
                                           XML_Encoding* encoding) {
    const std::string_view text(name);
    // A text of this length needs no memory that could be missing.
    if (text.size() == 4 && isUtf8Alias(std::u16string(text.begin(), text.end()))) {
        static_cast<State*>(data)->declaredUtf8Alias = true;
        return XML_STATUS_ERROR;
    }
    return describeEncoding(name, *encoding) ? XML_STATUS_OK : XML_STATUS_ERROR;
}

// As before the first document.
void KWXmlParser::State::reset() {
    expat.reset();
    input = nullptr;
    ownInput.reset();
    name.remove();
    waiting.clear();
    current = Event();
    depth = 0;
    declarations = 0;
    bytesFed = 0;
    waitingBytes = 0;
    finished = true;
    outOfMemory = false;
    declaredUtf8Alias = false;
    failure.reset();
}

void KWXmlParser::State::begin(std::istream* stream, const UnicodeString& encoding,
                               const UnicodeString& title) {
    reset();
    name = title;
    const UnicodeString& stated = encoding.isEmpty() ? info.charset : encoding;
    std::string charset;
    if (isUtf8Alias(toView(stated)))
        charset = "UTF-8";
    else
        stated.toUTF8String(charset);
    makeExpat(charset.empty() ? nullptr : charset.c_str());
    input = stream;
    finished = false;
}

void KWXmlParser::State::makeExpat(const char* charset) {
    expat.reset(XML_ParserCreate(charset));
    if (expat == nullptr)
        throw std::bad_alloc();
    XML_SetUserData(expat.get(), this);
    XML_SetElementHandler(expat.get(), onStart, onEnd);
    XML_SetCharacterDataHandler(expat.get(), onText);
    XML_SetEntityDeclHandler(expat.get(), onEntity);
    XML_SetAttlistDeclHandler(expat.get(), onAttlist);
    XML_SetUnknownEncodingHandler(expat.get(), onEncoding, this);
    XML_SetBillionLaughsAttackProtectionActivationThreshold(expat.get(), kXmlFreeExpansion);
}

void KWXmlParser::State::fail(std::string_view reason) {
    const auto line = static_cast<int>(XML_GetCurrentLineNumber(expat.get()));
    const auto column = static_cast<int>(XML_GetCurrentColumnNumber(expat.get())) + 1;
    const std::string place = ", line " + std::to_string(line) + ", column " +
                              std::to_string(column) + ": " + std::string(reason);
    failure =
        std::make_unique<KWError>(KWERR_XML_SYNTAX, name + fromUtf8(place), name, line, column);
    finished = true;
}

void KWXmlParser::State::settle(XML_Status status) {
    if (outOfMemory) {
        finished = true;
        throw std::bad_alloc();
    }
    if (status != XML_STATUS_ERROR || failure != nullptr)
        return;
    const XML_Error code = XML_GetErrorCode(expat.get());
    if (const XML_LChar* const reason = XML_ErrorString(code); reason != nullptr)
        fail(reason);
    else
        fail("not well-formed");
}

// Parses what lies in expat's buffer.
XML_Status KWXmlParser::State::parsePiece(int length, bool last) {
    bytesFed += length;
    // expat knows a ratio only; by itself a long document might expand to more than a short one.
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(
        expat.get(),
        1.0F + kXmlMaxExpansion / static_cast<float>(std::max<XML_Index>(bytesFed, 1)));
    return XML_ParseBuffer(expat.get(), length, last ? XML_TRUE : XML_FALSE);
}

// Parses the start of the document anew, as UTF-8.
XML_Status KWXmlParser::State::beginAgain(std::string_view first, bool last) {
    declaredUtf8Alias = false;
    bytesFed = 0;
    makeExpat("UTF-8");
    void* const buffer = XML_GetBuffer(expat.get(), kPieceBytes);
    if (buffer == nullptr)
        throw std::bad_alloc();
    std::ranges::copy(first, static_cast<char*>(buffer));
    return parsePiece(static_cast<int>(first.size()), last);
}

void KWXmlParser::State::parseMore() {
    waitingBytes = 0;
    void* const buffer = XML_GetBuffer(expat.get(), kPieceBytes);
    if (buffer == nullptr)
        throw std::bad_alloc();
    input->clear();
    input->read(static_cast<char*>(buffer), kPieceBytes);
    const auto got = static_cast<int>(input->gcount());
    if (input->bad()) {
        fail("the document cannot be read to its end");
        return;
    }
    const bool last = got < kPieceBytes;
    if (bytesFed == 0) {
        const std::string first(static_cast<const char*>(buffer), static_cast<std::size_t>(got));
        const XML_Status status = parsePiece(got, last);
        settle(declaredUtf8Alias ? beginAgain(first, last) : status);
    } else {
        settle(parsePiece(got, last));
    }
    if (finished)
        return;
    // Between pieces expat stands at the start of what it could not finish.
    const XML_Index at = XML_GetCurrentByteIndex(expat.get());
    if (at >= 0 && bytesFed - at > static_cast<XML_Index>(kXmlMaxTokenBytes))
        fail("a tag, comment or declaration is too long");
    else
        finished = last;
}

KWXmlParser::KWXmlParser(const KWUri::ContentInfo* info) : state_(std::make_unique<State>(info)) {}

KWXmlParser::~KWXmlParser() = default;

unsigned int KWXmlParser::getClassId() const {
    return kClassId;
}

bool KWXmlParser::isKindOf(unsigned int id) const {
    return id == kClassId || KWRCObject::isKindOf(id);
}

UnicodeString KWXmlParser::getClassName() const {
    return UnicodeString(u"KWXmlParser");
}

bool KWXmlParser::open(const KWUri& uri, const UnicodeString& encoding, const UnicodeString& name,
                       UnicodeString* errorText) {
    state_->reset();
    KWUri::ContentInfo found;
    std::unique_ptr<std::istream> input(uri.getIStream(&found, errorText));
    if (input == nullptr)
        return false;
    const bool told = !encoding.isEmpty() || !state_->info.charset.isEmpty();
    const UnicodeString& charset = told || isSupposed(uri, found) ? encoding : found.charset;
    state_->begin(input.get(), charset, name.isEmpty() ? uri.getLocalPath() : name);
    state_->ownInput = std::move(input);
    return true;
}

void KWXmlParser::open(std::istream& input, const UnicodeString& encoding,
                       const UnicodeString& name) {
    state_->begin(&input, encoding, name);
}

void KWXmlParser::setTextEvents(bool deliver) {
    state_->textEvents = deliver;
}

KWXmlEvent KWXmlParser::nextEvent() {
    State& state = *state_;
    while (state.waiting.empty() && !state.finished)
        state.parseMore();
    if (!state.waiting.empty()) {
        state.current = std::move(state.waiting.front());
        state.waiting.pop_front();
        return state.current.kind;
    }
    const int line = state.current.line;
    const int column = state.current.column;
    state.current = Event();
    state.current.line = line;
    state.current.column = column;
    if (state.failure != nullptr)
        throw KWError(*state.failure);
    return KWXmlEvent::endOfInput;
}

const UnicodeString& KWXmlParser::getName() const {
    const KWXmlEvent kind = state_->current.kind;
    const bool isTag = kind == KWXmlEvent::startTag || kind == KWXmlEvent::endTag;
    return isTag ? state_->current.text : getEmptyString();
}

const UnicodeString& KWXmlParser::getText() const {
    return state_->current.kind == KWXmlEvent::text ? state_->current.text : getEmptyString();
}

const std::vector<KWXmlParser::Attribute>& KWXmlParser::getAttributes() const {
    return state_->current.attributes;
}

const UnicodeString* KWXmlParser::getAttribute(const UnicodeString& name) const {
    const auto found = std::ranges::find(state_->current.attributes, name, &Attribute::first);
    return found == state_->current.attributes.end() ? nullptr : &found->second;
}

int KWXmlParser::getLine() const {
    return state_->current.line;
}

int KWXmlParser::getColumn() const {
    return state_->current.column;
}

KWPtr<KWXmlParser> KWXmlUtil::createXmlParser(const KWUri::ContentInfo* info) {
    return KWPtr<KWXmlParser>(new KWXmlParser(info));
}

} // namespace KWCommonNS
