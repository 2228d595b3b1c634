#pragma once

#include "platform/Platform.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace KWTest {

/// A system that knows the folders it is given, and is otherwise the real one.
class FakeFolders : public KWPlatform::System {
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
            return native_.openFile(path, reason);
        reason = "Permission denied";
        return nullptr;
    }

    std::optional<std::vector<KWPlatform::DirectoryEntry>>
    listDirectory(const std::u16string& path) override {
        return native_.listDirectory(path);
    }
    std::optional<KWPlatform::DirectoryIdentity>
    directoryIdentity(const std::u16string& path) override {
        return native_.directoryIdentity(path);
    }
    bool isRegularFile(const std::u16string& path) override { return native_.isRegularFile(path); }
    KWPlatform::RegisteredFontFiles registeredFontFiles() override {
        return native_.registeredFontFiles();
    }
    std::optional<KWPlatform::RegistryText> registryText(KWPlatform::RegistryHive hive,
                                                         const std::u16string& key,
                                                         const std::u16string& name) override {
        return native_.registryText(hive, key, name);
    }
    std::vector<KWPlatform::RegistryText> registryTexts(KWPlatform::RegistryHive hive,
                                                        const std::u16string& key) override {
        return native_.registryTexts(hive, key);
    }
    std::u16string moduleFolder(const std::u16string& moduleName) override {
        return native_.moduleFolder(moduleName);
    }
    char16_t preferredSeparator() override { return native_.preferredSeparator(); }

private:
    KWPlatform::System& native_ = KWPlatform::nativeSystem();
};

} // namespace KWTest
