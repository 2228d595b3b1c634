#include "fonts/FS_MultiFaceFont.h"

#include "common/KWLimits.h"
#include "common/StreamBytes.h"

namespace KWFontService_NS {

FS_MultiFaceFont::~FS_MultiFaceFont() = default;

bool FS_MultiFaceFont::isType1Font(int) const {
    return false;
}

bool FS_MultiFaceFont::isTrueTypeFont(int) const {
    return true;
}

int FS_MultiFaceFont::getFontCount() const {
    return faceCount;
}

FS_TrueTypeInfo* FS_MultiFaceFont::face(int faceIndex) {
    const auto place = static_cast<std::size_t>(faceIndex);
    return faceIndex >= 0 && place < faces.size() ? &faces[place] : nullptr;
}

const FS_TrueTypeInfo* FS_MultiFaceFont::face(int faceIndex) const {
    const auto place = static_cast<std::size_t>(faceIndex);
    return faceIndex >= 0 && place < faces.size() ? &faces[place] : nullptr;
}

void FS_MultiFaceFont::startScan(std::istream& stream) {
    fileSize_ = KWCommonNS::streamSize(stream);
    loadBytesLeft_ = KWCommonNS::kFacesLoadFreeBytes + KWCommonNS::kFacesLoadFactor * fileSize_;
    faceCount = 0;
    faces.clear();
    ftFaces.clear();
    isCharged_.clear();
}

bool FS_MultiFaceFont::scanFace(KWError& error, std::istream& stream, std::uint64_t offset,
                                ScanBudget& budget) {
    isCharged_.push_back(false);
    return faces.emplace_back().readOffsetTable(error, stream, offset, *this, budget);
}

void FS_MultiFaceFont::finishScan() {
    ftFaces.resize(faces.size());
}

bool FS_MultiFaceFont::loadFont(KWError& error, int faceIndex, std::istream* stream) {
    FS_TrueTypeInfo* const info = face(faceIndex);
    if (info == nullptr)
        return false;
    if (!info->isLoaded() && !chargeLoad(faceIndex))
        return fontError(error, FS_ERROR_FONT_READ, UnicodeString());
    return info->loadTables(error, stream, false);
}

bool FS_MultiFaceFont::chargeLoad(int faceIndex) {
    const std::uint64_t cost = face(faceIndex)->loadSize(fileSize_);
    KWCommonNS::KWMutex mutex(loadBytesLock_);
    mutex.lock();
    const auto place = static_cast<std::size_t>(faceIndex);
    if (isCharged_[place])
        return true;
    if (cost > loadBytesLeft_)
        return false;
    loadBytesLeft_ -= cost;
    isCharged_[place] = true;
    return true;
}

float FS_MultiFaceFont::getTypoDescender(int faceIndex) const {
    const FS_TrueTypeInfo* const info = face(faceIndex);
    return info != nullptr ? info->getTypoDescender() : 0.0F;
}

} // namespace KWFontService_NS
