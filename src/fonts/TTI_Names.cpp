#include "fonts/TTI_Names.h"

#include "fonts/SfntPlatforms.h"

#include "common/KWLimits.h"
#include "common/TextView.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace KWFontService_NS {

using KWCommonNS::ByteView;

namespace {

constexpr TTI_Names::LanguageID kUSEnglish = 1033;

constexpr std::size_t kHeaderSize = 6;
constexpr std::size_t kRecordSize = 12;

/// Name ids in the order of `TTI_Names::Which`.
constexpr std::array<std::uint16_t, TTI_Names::kCount> kNameIds = {1,  2,  3, 4, 6, 16,
                                                                   17, 20, 0, 8, 13};

std::optional<TTI_Names::Which> whichOfNameId(std::uint16_t nameId) {
    const auto it = std::find(kNameIds.begin(), kNameIds.end(), nameId);
    if (it == kNameIds.end())
        return std::nullopt;
    return static_cast<TTI_Names::Which>(it - kNameIds.begin());
}

/// A font is identified by one of these; without any the table is useless.
bool identifiesFont(TTI_Names::Which which) {
    return which == TTI_Names::Family || which == TTI_Names::UniqueId ||
           which == TTI_Names::PostScript || which == TTI_Names::PreferredFamily;
}

const char* macConverter(std::uint16_t encoding) {
    return encoding == 0 ? "cp1252" : macEastAsianConverter(encoding);
}

bool isControl(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
}

UnicodeString fromUtf16(ByteView bytes) {
    std::u16string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const char16_t unit = ByteView::loadU16(bytes.data() + i);
        if (unit == 0)
            break;
        if (isControl(unit))
            return UnicodeString();
        text.push_back(unit);
    }
    return KWCommonNS::toText(text);
}

} // namespace

/// One reading of the table: visits the records in up to two rounds.
class TTI_Names::Pass {
public:
    using Map = std::map<std::pair<LanguageID, Which>, UnicodeString>;

    Pass(SfntReader& reader, std::uint64_t storage) : reader_(reader), storage_(storage) {}

    /// @param familyOnly  Macintosh records count with their family and CID findfont names alone
    void visit(ByteView records, bool familyOnly) {
        for (std::size_t i = 0; i + kRecordSize <= records.size(); i += kRecordSize)
            visitRecord(records.data() + i, familyOnly);
    }

    bool tookName() const { return tookName_; }
    bool symbolNamesOnly() const { return sawSymbol_ && !sawOther_; }
    Map& names() { return names_; }

private:
    void visitRecord(const std::uint8_t* record, bool familyOnly) {
        const std::uint16_t platform = ByteView::loadU16(record);
        const std::uint16_t encoding = ByteView::loadU16(record + 2);
        const LanguageID language = ByteView::loadU16(record + 4);
        const std::uint16_t nameId = ByteView::loadU16(record + 6);
        if (platform == kPlatformMacintosh) {
            if (macConverter(encoding) == nullptr || !macTakes(nameId, familyOnly))
                return;
        } else if (platform == kPlatformWindows) {
            if (encoding > 5 || language == 0)
                return;
            (encoding == 0 ? sawSymbol_ : sawOther_) = true;
        } else {
            return;
        }
        const std::optional<Which> which = whichOfNameId(nameId);
        if (!which || names_.contains({language, *which}))
            return;
        std::size_t length = ByteView::loadU16(record + 8);
        if (platform == kPlatformWindows)
            length &= ~std::size_t{1};
        if (!readString(length, ByteView::loadU16(record + 10)))
            return;
        UnicodeString text = platform == kPlatformMacintosh
                                 ? decode(macConverter(encoding), string_)
                                 : decodeWindows(encoding);
        if (text.isEmpty())
            return;
        names_.emplace(std::pair(language, *which), std::move(text));
        tookName_ = tookName_ || identifiesFont(*which);
    }

    static bool macTakes(std::uint16_t nameId, bool familyOnly) {
        switch (nameId) {
        case 1:
        case 20:
            return true;
        case 2:
        case 3:
        case 4:
        case 6:
        case 16:
        case 17:
            return !familyOnly;
        default:
            return false;
        }
    }

    bool readString(std::size_t length, std::size_t offset) {
        // Records may share their bytes, so the table's size does not bound the work.
        if (length > budget_)
            return false;
        budget_ -= length;
        string_.resize(length);
        return reader_.read(storage_ + offset, string_);
    }

    UnicodeString decodeWindows(std::uint16_t encoding) {
        const ByteView bytes(string_.data(), string_.size());
        const char* converter = windowsEastAsianConverter(encoding);
        if (converter == nullptr)
            return fromUtf16(bytes);
        // One byte in each unit is text of the old code page; anything wider is Unicode after all.
        std::vector<std::uint8_t> low;
        low.reserve(bytes.size() / 2);
        for (std::size_t i = 0; i < bytes.size(); i += 2) {
            if (bytes.data()[i] != 0)
                return fromUtf16(bytes);
            low.push_back(bytes.data()[i + 1]);
        }
        return decode(converter, low);
    }

    UnicodeString decode(const char* converterName, const std::vector<std::uint8_t>& bytes) {
        UErrorCode status = U_ZERO_ERROR;
        if (openName_ != converterName) {
            converter_.reset(ucnv_open(converterName, &status));
            openName_ = converterName;
        }
        if (U_FAILURE(status) || !converter_)
            return UnicodeString();
        return UnicodeString(reinterpret_cast<const char*>(bytes.data()),
                             static_cast<std::int32_t>(bytes.size()), converter_.get(), status);
    }

    struct CloseConverter {
        void operator()(UConverter* converter) const { ucnv_close(converter); }
    };

    SfntReader& reader_;
    std::uint64_t storage_;
    Map names_;
    std::vector<std::uint8_t> string_;
    std::size_t budget_ = KWCommonNS::kMaxNameBytes;
    std::unique_ptr<UConverter, CloseConverter> converter_;
    const char* openName_ = nullptr;
    bool tookName_ = false;
    bool sawSymbol_ = false;
    bool sawOther_ = false;
};

bool TTI_Names::read(SfntReader& reader, const TTI_TableRecord& table, bool macFont) {
    std::array<std::uint8_t, kHeaderSize> header;
    if (!reader.read(table.offset, header))
        return reader.fail(FS_ERROR_FONT_READ, "'name' table read error");
    const std::uint16_t count = ByteView::loadU16(&header[2]);
    if (count == 0)
        return reader.fail(FS_ERROR_FONT_FILE, "nameTable.count = 0");
    std::vector<std::uint8_t> records;
    if (!reader.read(std::uint64_t{table.offset} + kHeaderSize, count * kRecordSize, records))
        return reader.fail(FS_ERROR_FONT_READ, "nameRecord read error");

    Pass pass(reader, std::uint64_t{table.offset} + ByteView::loadU16(&header[4]));
    const ByteView view(records.data(), records.size());
    // Macintosh names other than the family count only where nothing else names the font.
    if (!macFont)
        pass.visit(view, true);
    if (!pass.tookName())
        pass.visit(view, false);

    symbolNamesOnly_ = pass.symbolNamesOnly();
    entries_.clear();
    entries_.reserve(pass.names().size());
    for (auto& [key, text] : pass.names())
        entries_.push_back({key.first, key.second, std::move(text)});
    if (!pass.tookName())
        return reader.fail(FS_ERROR_FONT_FILE, "'name' table has no font name");
    return true;
}

void TTI_Names::chooseDefault(LanguageID systemLanguage) {
    hasDefault_ = !entries_.empty();
    if (!hasDefault_)
        return;
    // 0 is a system language that Windows does not number, and Macintosh English in the table.
    if (systemLanguage != 0 && hasLanguage(systemLanguage))
        defaultLanguage_ = systemLanguage;
    else if (hasLanguage(kUSEnglish))
        defaultLanguage_ = kUSEnglish;
    else
        defaultLanguage_ = entries_.front().language;
}

UnicodeString TTI_Names::get(LanguageID language, Which which) const {
    if (language != 0) {
        const UnicodeString* text = find(language, which);
        return text != nullptr ? *text : UnicodeString();
    }
    UnicodeString text = getDefault(which);
    if (!text.isEmpty())
        return text;
    if (const UnicodeString* english = find(kUSEnglish, which))
        return *english;
    for (const Entry& entry : entries_) {
        if (entry.which == which)
            return entry.text;
    }
    return UnicodeString();
}

UnicodeString TTI_Names::getDefault(Which which) const {
    if (which == PostScript) {
        if (hasDefaultPostScript_)
            return defaultPostScript_;
        if (const UnicodeString* english = hasDefault_ ? find(kUSEnglish, which) : nullptr)
            return *english;
    }
    const UnicodeString* text = hasDefault_ ? find(defaultLanguage_, which) : nullptr;
    return text != nullptr ? *text : UnicodeString();
}

void TTI_Names::setDefaultPostScript(const UnicodeString& name) {
    defaultPostScript_ = name;
    hasDefaultPostScript_ = true;
}

std::vector<TTI_Names::LanguageID> TTI_Names::languages() const {
    std::vector<LanguageID> result;
    for (const Entry& entry : entries_) {
        if (result.empty() || result.back() != entry.language)
            result.push_back(entry.language);
    }
    return result;
}

const UnicodeString* TTI_Names::find(LanguageID language, Which which) const {
    const std::pair key(language, which);
    const auto it = std::lower_bound(entries_.begin(), entries_.end(), key,
                                     [](const Entry& entry, const auto& wanted) {
                                         return std::pair(entry.language, entry.which) < wanted;
                                     });
    return it != entries_.end() && it->language == language && it->which == which ? &it->text
                                                                                  : nullptr;
}

bool TTI_Names::hasLanguage(LanguageID language) const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [language](const Entry& entry) { return entry.language == language; });
}

} // namespace KWFontService_NS
