// Font configurations, served from memory. Whatever they hold, the reader ends, in an error or in a
// set of folders with their options; nothing of what they name is opened.

#include "FuzzTarget.h"
#include "service/FontConfigReader.h"
#include "support/SystemDouble.h"

#include <algorithm>
#include <cstring>

using namespace KWFontService_NS;

namespace {

/// A file system of one file.
class OneFile : public KWTest::SystemDouble {
public:
    OneFile(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    bool isRegularFile(const std::u16string&) override { return true; }
    std::unique_ptr<KWPlatform::FileReader> openFile(const std::u16string&, std::string&) override {
        return std::make_unique<Reader>(data_, size_);
    }

private:
    class Reader : public KWPlatform::FileReader {
    public:
        Reader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
        std::size_t readAt(std::uint64_t offset, void* buffer, std::size_t count) override {
            if (offset >= size_)
                return 0;
            count = std::min(count, size_ - static_cast<std::size_t>(offset));
            std::memcpy(buffer, data_ + offset, count);
            return count;
        }
        std::uint64_t size() const override { return size_; }

    private:
        const std::uint8_t* data_;
        std::size_t size_;
    };

    const std::uint8_t* data_;
    std::size_t size_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const OneFile system(data, size);
    FS_FontService service;
    try {
        readFontConfig(service, "/fuzz/font-config.xml", "/home/fuzz");
    } catch (const KWError&) {
    }
    return 0;
}
