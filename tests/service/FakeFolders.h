#pragma once

#include "support/SystemDouble.h"

#include <map>
#include <memory>
#include <string>

namespace KWTest {

/// Where the user's fonts lie below the local data, as posix writes it.
inline std::string userFontsBelowData() {
    return KWPlatform::nativeSystem().preferredSeparator() == u'/' ? "/fonts/"
                                                                   : "/Microsoft/Windows/Fonts/";
}

/// A system that knows the folders it is given, and is otherwise the real one.
class FakeFolders : public SystemDouble {
public:
    std::map<KWPlatform::KnownFolder, std::u16string> folders;
    bool opensFiles = true;

    std::u16string knownFolder(KWPlatform::KnownFolder folder) override {
        const auto found = folders.find(folder);
        return found != folders.end() ? found->second : std::u16string();
    }
    std::unique_ptr<KWPlatform::FileReader> openFile(const std::u16string& path,
                                                     std::string& reason) override {
        if (opensFiles)
            return SystemDouble::openFile(path, reason);
        reason = "Permission denied";
        return nullptr;
    }
};

} // namespace KWTest
