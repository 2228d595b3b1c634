#pragma once

#include "KWCommon15/KWError.h"
#include "KWCommon15/KWExport.h"
#include "KWCommon15/KWPtr.h"
#include "KWCommon15/KWRCObject.h"
#include "KWCommon15/KWUri.h"

#include <cstddef>
#include <istream>
#include <memory>
#include <utility>
#include <vector>

namespace KWCommonNS {

/// What KWXmlParser::nextEvent() came upon.
enum class KWXmlEvent {
    startTag,   ///< start of an element; an empty-element tag gives startTag and endTag
    endTag,     ///< end of an element
    text,       ///< character data; one run may come in several pieces
    endOfInput, ///< the document is complete; comes again when asked again
};

/// A pull parser for XML 1.0 documents.
///
/// It reads and keeps a bounded piece of the input at a time. Nothing but the document itself is
/// ever opened: external entities and external DTD subsets are passed over. Entities of the
/// internal subset are expanded within limits on the whole amount and on their number. Comments and
/// processing instructions give no events. Encodings are those of expat (UTF-8 also as "utf8") and,
/// beyond them, single-byte and double-byte ones that ICU knows.
///
/// Used by one thread at a time.
class KWCOMMON_API KWXmlParser : public KWRCObject {
public:
    using Attribute = std::pair<UnicodeString, UnicodeString>;

    static constexpr unsigned int kClassId = 0x7A11C4E3U;

    ~KWXmlParser() override;
    unsigned int getClassId() const override;
    bool isKindOf(unsigned int id) const override;
    UnicodeString getClassName() const override;

    /// Opens a document and stands before its first event.
    /// @param uri       the resource
    /// @param encoding  overrides the encoding that the document declares; empty: the charset that
    ///                  createXmlParser() was given does, or else one that came with the resource
    /// @param name      name of the document in messages; empty: its local path
    /// @param errorText receives the reason when the resource cannot be opened; may be null
    /// @return          false when the resource cannot be opened; the parser then holds no document
    bool open(const KWUri& uri, const UnicodeString& encoding, const UnicodeString& name,
              UnicodeString* errorText = nullptr);
    /// The same over a stream, which the caller keeps and which outlives the parse.
    void open(std::istream& input, const UnicodeString& encoding, const UnicodeString& name);
    /// True delivers `text` events; they are passed over at first.
    void setTextEvents(bool deliver);

    /// Steps to the next event. Before open() it answers endOfInput.
    /// @throw KWError KWERR_XML_SYNTAX when the document is not well-formed (an empty one is not),
    ///        cannot be read to its end, or goes past a limit. Message: name, line, column, reason;
    ///        second text: the name; values: line and column, from 1. Thrown again when asked
    ///        again.
    KWXmlEvent nextEvent();

    /// Name of the element, prefix included, at startTag and endTag; empty otherwise.
    const UnicodeString& getName() const;
    /// Text of a `text` event; empty otherwise.
    const UnicodeString& getText() const;
    /// Attributes of a startTag in the order of the document; none otherwise.
    const std::vector<Attribute>& getAttributes() const;
    /// Value of an attribute of a startTag; null when it is not there.
    const UnicodeString* getAttribute(const UnicodeString& name) const;
    /// Place where the event begins, counted from 1; columns count characters. The end of an
    /// empty-element tag stands behind it. What comes from an entity stands where the entity is
    /// used. At endOfInput the place of the last event; 0 when there was none.
    int getLine() const;
    int getColumn() const;

private:
    friend class KWXmlUtil;
    struct State;

    explicit KWXmlParser(const KWUri::ContentInfo* info);

    std::unique_ptr<State> state_;
};

/// Maker of XML parsers.
class KWCOMMON_API KWXmlUtil {
public:
    /// A parser that is not open yet.
    /// @param info what is known about the documents to come: a charset in it overrides the
    ///             encoding that they declare; may be null
    static KWPtr<KWXmlParser> createXmlParser(const KWUri::ContentInfo* info);
};

} // namespace KWCommonNS
