#pragma once

#include "fonts/FS_OpenType.h"
#include "support/TestFont.h"

#include <KWFontService17/FS_TTGlyphMap.h>

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWPtr.h>

#include <cstdint>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace KWTest {

using Glyphs = std::vector<unsigned short>;

/// What a writer has put into its stream.
inline Bytes bytesOf(KWCommonNS::KWMemStream& stream) {
    const auto* data = reinterpret_cast<const std::uint8_t*>(stream.data());
    return data == nullptr ? Bytes() : Bytes(std::vector<std::uint8_t>(data, data + stream.size()));
}

/// A font in memory, scanned and loaded, with the stream that its writers read.
class EmbeddableFont {
public:
    explicit EmbeddableFont(const Bytes& file)
        : stream_(file.str()), font_(makeFont(file.u32At(0) == kOttoVersion)) {
        KWCommonNS::KWError error;
        if (!font_->scanFont(error, stream_))
            throw std::runtime_error("the fixture does not scan");
        loaded_ = font_->loadFont(error, 0, &stream_);
    }

    KWFontService_NS::FS_TrueType& font() { return *font_; }
    KWFontService_NS::FS_TrueTypeInfo& face() { return *font_->face(0); }
    std::istream& stream() { return stream_; }
    bool loaded() const { return loaded_; }
    /// Puts other bytes under the font: a file that changed since it was read.
    void replaceFile(const Bytes& file) { stream_.str(file.str()); }

    /// The subset, empty when the writer says no.
    Bytes embed(const Glyphs& glyphs, const std::vector<unsigned int>& tags) {
        return written(
            [&](auto& out) { return font_->getEmbedFont(glyphs, out, tags.data(), &stream_, 0); });
    }
    Bytes embed(const Glyphs& glyphs) {
        return written([&](auto& out) { return font_->getEmbedFont(glyphs, out, &stream_, 0); });
    }
    Bytes embedWithCmap(const Glyphs& glyphs) {
        return written(
            [&](auto& out) { return font_->getEmbedFontWithCmap(glyphs, out, &stream_, 0); });
    }
    Bytes subset(const Glyphs& glyphs) {
        return written([&](auto& out) { return font_->makeSubsetFont(glyphs, out, &stream_, 0); });
    }
    Bytes embedPS(const Glyphs& glyphs, KWFontService_NS::FS_TTGlyphMap& map) {
        return written(
            [&](auto& out) { return font_->getPSEmbedFont(glyphs, out, map, &stream_, 0); });
    }

private:
    static KWFontService_NS::FS_TrueType* makeFont(bool isOpenType) {
        const KWCommonNS::KWUri nowhere;
        if (isOpenType)
            return new KWFontService_NS::FS_OpenType(nowhere);
        return new KWFontService_NS::FS_TrueType(nowhere);
    }
    template <class Writer>
    static Bytes written(const Writer& writer) {
        KWCommonNS::KWMemStream out;
        return writer(out) ? bytesOf(out) : Bytes();
    }

    std::istringstream stream_;
    KWCommonNS::KWPtr<KWFontService_NS::FS_TrueType> font_;
    bool loaded_ = false;
};

/// Keeps the glyphs of a PostScript font, by id.
class KeptGlyphs final : public KWFontService_NS::FS_TTGlyphMap {
public:
    KWCommonNS::KWMemStream* getGlyphStream(unsigned short gid) override { return &streams_[gid]; }

    std::map<unsigned short, Bytes> glyphs() {
        std::map<unsigned short, Bytes> all;
        for (auto& [gid, stream] : streams_)
            all[gid] = bytesOf(stream);
        return all;
    }

private:
    std::map<unsigned short, KWCommonNS::KWMemStream> streams_;
};

/// The directory of an sfnt that a writer made, read back byte by byte.
class WrittenSfnt {
public:
    struct Record {
        std::string tag;
        std::uint32_t checkSum = 0;
        std::uint32_t offset = 0;
        std::uint32_t length = 0;
    };

    explicit WrittenSfnt(Bytes file) : file_(std::move(file)) {
        for (std::size_t i = 0; i < file_.u16At(4); ++i) {
            const std::size_t at = 12 + 16 * i;
            records.push_back({file_.slice(at, 4).str(), file_.u32At(at + 4), file_.u32At(at + 8),
                               file_.u32At(at + 12)});
        }
    }

    std::vector<std::string> tags() const {
        std::vector<std::string> all;
        for (const Record& record : records)
            all.push_back(record.tag);
        return all;
    }
    const Record& record(const std::string& tag) const {
        for (const Record& candidate : records)
            if (candidate.tag == tag)
                return candidate;
        throw std::out_of_range("no table " + tag);
    }
    Bytes table(const std::string& tag) const {
        return file_.slice(record(tag).offset, record(tag).length);
    }
    const Bytes& file() const { return file_; }

    std::vector<Record> records;

private:
    Bytes file_;
};

} // namespace KWTest
