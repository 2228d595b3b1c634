#pragma once

#include "platform/Platform.h"

namespace KWTest {

/// The real operating system, to be overridden in what a test is about. In place for its lifetime.
class SystemDouble : public KWPlatform::System {
public:
    std::optional<std::vector<KWPlatform::DirectoryEntry>>
    listDirectory(const std::u16string& path) override {
        return native_.listDirectory(path);
    }
    std::optional<KWPlatform::DirectoryIdentity>
    directoryIdentity(const std::u16string& path) override {
        return native_.directoryIdentity(path);
    }
    bool isRegularFile(const std::u16string& path) override { return native_.isRegularFile(path); }
    std::unique_ptr<KWPlatform::FileReader> openFile(const std::u16string& path,
                                                     std::string& reason) override {
        return native_.openFile(path, reason);
    }
    std::u16string knownFolder(KWPlatform::KnownFolder folder) override {
        return native_.knownFolder(folder);
    }
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
    KWPlatform::SystemOverride inPlace_{*this};
};

} // namespace KWTest
