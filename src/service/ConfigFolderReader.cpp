#include "service/ConfigFolderReader.h"

#include "service/ConfigValues.h"
#include "service/FontConfigPath.h"

#include <KWCommon15/KWParser.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace KWFontService_NS {

namespace {

using KWCommonNS::KWUnicodeRange;
using KWCommonNS::KWValue;

constexpr const char16_t* kAfm = u".afm";
constexpr const char16_t* kPfm = u".pfm";
constexpr const char16_t* kCollection = u".ttc";

bool hasExtension(const UnicodeString& fileName, const char16_t* extension) {
    return KWUri(lowerFileName(fileName), KWCommonNS::URISTR_LOCAL).getExtension() ==
           UnicodeString(extension);
}

UnicodeString withExtension(const UnicodeString& fileName, const char16_t* extension) {
    KWUri uri(fileName, KWCommonNS::URISTR_LOCAL);
    uri.setExtension(extension);
    return uri.getFileName();
}

/// The metrics files of one Type 1 font: what is said of one holds for the other.
struct MetricsFiles {
    UnicodeString afm;
    UnicodeString pfm;
};

/// Nothing for a file of another kind.
std::optional<MetricsFiles> metricsFilesOf(const UnicodeString& fileName) {
    if (hasExtension(fileName, kAfm))
        return MetricsFiles{fileName, withExtension(fileName, kPfm)};
    if (hasExtension(fileName, kPfm))
        return MetricsFiles{withExtension(fileName, kAfm), fileName};
    return std::nullopt;
}

class FolderReader {
public:
    FolderReader(const ConfigSource& source, FS_FontFolder& folder)
        : source_(source), folder_(folder) {}

    ConfigResult readChild(FS_Word child);

private:
    ConfigResult readFontAlias();
    ConfigResult readAlias(std::set<FS_FontAlias>& aliases);
    ConfigResult readFontEntry();
    ConfigResult readGlyphList();
    ConfigResult readSkipGlyphNameMapping();
    /// An element that switches on one option of a file.
    ConfigResult readFileSwitch(FS_Word name, bool FS_FontFileOptions::*option);

    std::optional<MetricsFiles> readMetricsFiles(const ConfigElement& element) const;
    bool setGlyphList(const ConfigElement& element, FS_Word attribute,
                      const UnicodeString& fileName, const KWUri& glyphList);
    void readUnicodeRange(const ConfigElement& element, FS_FontFileOptions& options) const;
    FS_FontFileOptions& optionsOf(const UnicodeString& fileName) {
        return folder_.optionsOf(lowerFileName(fileName));
    }

    const ConfigSource& source_;
    FS_FontFolder& folder_;
};

ConfigResult FolderReader::readChild(FS_Word child) {
    switch (child) {
    case FS_Word::fontAlias:
        return readFontAlias();
    case FS_Word::fontEntry:
        return readFontEntry();
    case FS_Word::fontExclude:
        return readFileSwitch(child, &FS_FontFileOptions::fontExclude);
    case FS_Word::glyphList:
        return readGlyphList();
    case FS_Word::skipGlyphnameMapping:
        return readSkipGlyphNameMapping();
    case FS_Word::useZeroGlyphId:
        return readFileSwitch(child, &FS_FontFileOptions::useZeroGlyphId);
    default:
        return ConfigResult::unexpected;
    }
}

/// The member of a collection, counted from 1. One below 1 is reported, and taken nevertheless.
int readEntry(const ConfigElement& element) {
    constexpr int kFirst = 1;
    const UnicodeString* const text = element.find(FS_Word::entry);
    if (text == nullptr)
        return kFirst;
    const std::optional<int> entry = integerOf(*text);
    if (!entry)
        element.complain(FS_ERROR_NOT_AN_INTEGER, FS_Word::entry, *text);
    else if (*entry < kFirst)
        element.complain(FS_ERROR_INVALID_VALUE, FS_Word::entry, *text);
    return entry.value_or(kFirst);
}

ConfigResult FolderReader::readFontAlias() {
    const ConfigElement element(source_, FS_Word::fontAlias);
    const UnicodeString* const file = element.requireFileName(FS_Word::file);
    if (file == nullptr)
        return ConfigResult::stops;
    FS_FontAliasTarget target{lowerFileName(*file), *file, 0};
    if (hasExtension(*file, kCollection))
        target.faceIndex = std::max(readEntry(element), std::numeric_limits<int>::min() + 1) - 1;
    const auto [added, isNew] = folder_.fileAliases.try_emplace(target);
    if (!isNew) {
        element.complain(FS_ERROR_ALREADY_REGISTERED, FS_Word::file, *file);
        return ConfigResult::stops;
    }
    element.checkAttributes({FS_Word::file, FS_Word::entry});
    std::set<FS_FontAlias>& aliases = added->second;
    return element.readContent([&](FS_Word child) {
        return child == FS_Word::alias ? readAlias(aliases) : ConfigResult::unexpected;
    });
}

/// An integer out of range is reported, and taken nevertheless.
int readWeight(const ConfigElement& element, const UnicodeString& text) {
    const std::optional<int> weight = integerOf(text);
    if (!weight)
        return weightOfWord(text);
    if (*weight < 100 || *weight > 900)
        element.complain(FS_ERROR_INVALID_VALUE, FS_Word::weight, text);
    return *weight;
}

ConfigResult FolderReader::readAlias(std::set<FS_FontAlias>& aliases) {
    const ConfigElement element(source_, FS_Word::alias);
    const UnicodeString* const family = element.require(FS_Word::familyName);
    if (family == nullptr)
        return ConfigResult::stops;
    FS_FontAlias alias;
    alias.familyName = *family;
    if (const UnicodeString* const weight = element.find(FS_Word::weight))
        alias.weight = readWeight(element, *weight);
    if (const auto italic = element.value(FS_Word::italic, booleanOf))
        alias.italic = *italic ? 1 : 0;
    if (const UnicodeString* const stretch = element.find(FS_Word::stretch))
        alias.stretch = stretchOf(*stretch);
    if (!aliases.insert(alias).second) {
        element.complain(FS_ERROR_ALREADY_REGISTERED, FS_Word::familyName, *family);
        return ConfigResult::stops;
    }
    return element.finish(
        {FS_Word::familyName, FS_Word::weight, FS_Word::italic, FS_Word::stretch});
}

/// A size that is not above zero is reported, and taken nevertheless.
void readSizeAdjust(const ConfigElement& element, FS_FontFileOptions& options) {
    const std::optional<float> adjust = element.value(FS_Word::fontSizeAdjust, numberOf);
    if (!adjust)
        return;
    if (*adjust <= std::numeric_limits<float>::epsilon())
        element.complain(FS_ERROR_INVALID_VALUE, FS_Word::fontSizeAdjust,
                         *element.find(FS_Word::fontSizeAdjust));
    options.fontSizeAdjust = *adjust;
}

void FolderReader::readUnicodeRange(const ConfigElement& element,
                                    FS_FontFileOptions& options) const {
    const UnicodeString* const text = element.find(FS_Word::unicodeRange);
    if (text == nullptr)
        return;
    const KWValue value = KWCommonNS::KWParser::parse(*text);
    auto range = std::make_unique<KWUnicodeRange>();
    if (range->parseUnicodeRange(value))
        options.unicodeRange = std::move(range);
    else
        element.complain(FS_ERROR_INVALID_VALUE, FS_Word::unicodeRange,
                         value.toQuotedString(KWCommonNS::KWUtil::QuoteMode::Double));
}

ConfigResult FolderReader::readFontEntry() {
    const ConfigElement element(source_, FS_Word::fontEntry);
    const UnicodeString* const file = element.requireFileName(FS_Word::file);
    if (file == nullptr)
        return ConfigResult::stops;
    FS_FontFileOptions& options = optionsOf(*file);
    readSizeAdjust(element, options);
    readUnicodeRange(element, options);
    setIfRead(options.baselineAdjust, element.value(FS_Word::baselineAdjust, numberOf));
    if (const auto metrics = metricsFilesOf(*file)) {
        const UnicodeString* const glyphList = element.find(FS_Word::glyphList);
        const auto skip = element.value(FS_Word::skipGlyphnameMapping, booleanOf);
        for (const UnicodeString* const name : {&metrics->afm, &metrics->pfm}) {
            if (glyphList != nullptr)
                optionsOf(*name).glyphList = KWUri(*glyphList, folder_);
            if (skip)
                optionsOf(*name).skipGlyphNameMapping = *skip;
        }
    }
    setIfRead(options.fontExclude, element.value(FS_Word::fontExclude, booleanOf));
    setIfRead(options.useZeroGlyphId, element.value(FS_Word::useZeroGlyphId, booleanOf));
    return element.finish({FS_Word::file, FS_Word::fontSizeAdjust, FS_Word::unicodeRange,
                           FS_Word::baselineAdjust, FS_Word::glyphList,
                           FS_Word::skipGlyphnameMapping, FS_Word::fontExclude,
                           FS_Word::useZeroGlyphId});
}

ConfigResult FolderReader::readFileSwitch(FS_Word name, bool FS_FontFileOptions::*option) {
    const ConfigElement element(source_, name);
    const UnicodeString* const file = element.requireFileName(FS_Word::file);
    if (file == nullptr)
        return ConfigResult::stops;
    optionsOf(*file).*option = true;
    return element.finish({FS_Word::file});
}

/// From `afm` and `pfm`; the one that is missing is derived from the other.
std::optional<MetricsFiles> FolderReader::readMetricsFiles(const ConfigElement& element) const {
    MetricsFiles files;
    if (const UnicodeString* const afm = element.find(FS_Word::afm))
        files.afm = *afm;
    if (const UnicodeString* const pfm = element.find(FS_Word::pfm))
        files.pfm = *pfm;
    if (files.afm.isEmpty() && files.pfm.isEmpty()) {
        element.complainOfEmpty(FS_Word::afm);
        return std::nullopt;
    }
    if ((!files.afm.isEmpty() && !element.checkFileName(FS_Word::afm, files.afm)) ||
        (!files.pfm.isEmpty() && !element.checkFileName(FS_Word::pfm, files.pfm)))
        return std::nullopt;
    if (files.afm.isEmpty())
        files.afm = withExtension(files.pfm, kAfm);
    else if (files.pfm.isEmpty())
        files.pfm = withExtension(files.afm, kPfm);
    return files;
}

bool FolderReader::setGlyphList(const ConfigElement& element, FS_Word attribute,
                                const UnicodeString& fileName, const KWUri& glyphList) {
    FS_FontFileOptions& options = optionsOf(fileName);
    if (!options.glyphList.isEmpty()) {
        element.complain(FS_ERROR_ALREADY_REGISTERED, attribute, fileName);
        return false;
    }
    options.glyphList = glyphList;
    return true;
}

ConfigResult FolderReader::readGlyphList() {
    const ConfigElement element(source_, FS_Word::glyphList);
    const UnicodeString* const path = element.require(FS_Word::file);
    if (path == nullptr)
        return ConfigResult::stops;
    const auto files = readMetricsFiles(element);
    if (!files)
        return ConfigResult::stops;
    const KWUri glyphList(*path, folder_);
    if (!setGlyphList(element, FS_Word::afm, files->afm, glyphList) ||
        !setGlyphList(element, FS_Word::pfm, files->pfm, glyphList))
        return ConfigResult::stops;
    return element.finish({FS_Word::file, FS_Word::afm, FS_Word::pfm});
}

ConfigResult FolderReader::readSkipGlyphNameMapping() {
    const ConfigElement element(source_, FS_Word::skipGlyphnameMapping);
    const auto files = readMetricsFiles(element);
    if (!files)
        return ConfigResult::stops;
    optionsOf(files->afm).skipGlyphNameMapping = true;
    optionsOf(files->pfm).skipGlyphNameMapping = true;
    return element.finish({FS_Word::afm, FS_Word::pfm});
}

/// The folder that the element names, taken into the service; null when it cannot be.
FS_FontFolder* addFolder(const ConfigSource& source, const ConfigElement& element) {
    UnicodeString path;
    if (const UnicodeString* const given = element.find(FS_Word::path))
        path = UnicodeString(*given).trim();
    if (path.isEmpty()) {
        element.complainOfEmpty(FS_Word::path);
        return nullptr;
    }
    path = expandFontPath(path, source.homePath);
    const UnicodeString* const recursive = element.find(FS_Word::recursive);
    // Against the configuration a relative path would be absolute.
    const KWUri alone(path);
    if (!alone.isFile()) {
        element.complain(FS_ERROR_NOT_A_FILE_PATH, FS_Word::path, path);
        return nullptr;
    }
    if (!alone.isAbsolute()) {
        element.complain(FS_ERROR_RELATIVE_PATH, FS_Word::path, path);
        return nullptr;
    }
    FS_FontFolder* const added = source.service.addFolder(std::make_unique<FS_FontFolder>(
        KWUri(path, source.service.configUri), recursive != nullptr && isAffirmative(*recursive)));
    if (added == nullptr)
        element.complain(FS_ERROR_ALREADY_REGISTERED, FS_Word::path, path);
    return added;
}

} // namespace

ConfigResult readFontFolder(const ConfigSource& source) {
    const ConfigElement element(source, FS_Word::fontFolder);
    FS_FontFolder* const folder = addFolder(source, element);
    if (folder == nullptr)
        return ConfigResult::stops;
    element.checkAttributes({FS_Word::path, FS_Word::recursive});
    FolderReader reader(source, *folder);
    return element.readContent([&reader](FS_Word child) { return reader.readChild(child); });
}

} // namespace KWFontService_NS
