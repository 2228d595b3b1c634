#include "platform/windows/Registry.h"

#include "platform/RegistryValue.h"
#include "platform/windows/WindowsHeader.h"

#include <algorithm>
#include <cstddef>

namespace KWPlatform {

namespace {

class Key {
public:
    Key(RegistryHive hive, const std::u16string& path) {
        const HKEY root =
            hive == RegistryHive::localMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
        if (path.find(u'\0') != std::u16string::npos ||
            ::RegOpenKeyExW(root, toWide(path), 0, KEY_READ, &key_) != ERROR_SUCCESS)
            key_ = nullptr;
    }
    ~Key() {
        if (key_ != nullptr)
            ::RegCloseKey(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    explicit operator bool() const { return key_ != nullptr; }
    HKEY get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

std::optional<RegistryType> textType(DWORD type) {
    switch (type) {
    case REG_SZ:
        return RegistryType::string;
    case REG_MULTI_SZ:
        return RegistryType::multiString;
    default:
        return std::nullopt;
    }
}

// Data may have an odd number of bytes, and need not end in NUL.
std::u16string_view unitsOf(const std::u16string& buffer, DWORD byteCount) {
    return std::u16string_view(buffer).substr(0, byteCount / sizeof(char16_t));
}

std::u16string bufferFor(DWORD byteCount) {
    return std::u16string(byteCount / sizeof(char16_t) + 1, u'\0');
}

DWORD byteSize(const std::u16string& buffer) {
    return static_cast<DWORD>(buffer.size() * sizeof(char16_t));
}

BYTE* bytesOf(std::u16string& buffer) {
    return reinterpret_cast<BYTE*>(buffer.data());
}

struct LongestValue {
    DWORD nameUnits = 0;
    DWORD dataBytes = 0;
};

LongestValue longestValue(const Key& key) {
    LongestValue longest;
    ::RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       &longest.nameUnits, &longest.dataBytes, nullptr, nullptr);
    return longest;
}

} // namespace

std::optional<RegistryText> readRegistryText(RegistryHive hive, const std::u16string& path,
                                             const std::u16string& name) {
    const Key key(hive, path);
    if (!key || name.find(u'\0') != std::u16string::npos)
        return std::nullopt;
    DWORD type = REG_NONE;
    DWORD size = 0;
    LSTATUS status = ::RegQueryValueExW(key.get(), toWide(name), nullptr, &type, nullptr, &size);
    while (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
        std::u16string data = bufferFor(size);
        size = byteSize(data);
        status = ::RegQueryValueExW(key.get(), toWide(name), nullptr, &type, bytesOf(data), &size);
        if (status == ERROR_SUCCESS) {
            const std::optional<RegistryType> known = textType(type);
            if (!known)
                return std::nullopt;
            return registryTextOf(name, *known, unitsOf(data, size));
        }
        // Another process has written a longer value meanwhile.
    }
    return std::nullopt;
}

std::vector<RegistryText> readRegistryTexts(RegistryHive hive, const std::u16string& path) {
    std::vector<RegistryText> texts;
    const Key key(hive, path);
    if (!key)
        return texts;
    const LongestValue longest = longestValue(key);
    std::u16string name(std::size_t{longest.nameUnits} + 1, u'\0');
    std::u16string data = bufferFor(longest.dataBytes);
    for (DWORD index = 0;;) {
        DWORD nameUnits = static_cast<DWORD>(name.size());
        DWORD dataBytes = byteSize(data);
        DWORD type = REG_NONE;
        const LSTATUS status = ::RegEnumValueW(key.get(), index, toWide(name.data()), &nameUnits,
                                               nullptr, &type, bytesOf(data), &dataBytes);
        if (status == ERROR_MORE_DATA) {
            // Another process has written a longer value meanwhile.
            name.resize(name.size() * 2);
            data.resize(std::max(data.size() * 2, bufferFor(dataBytes).size()));
            continue;
        }
        if (status != ERROR_SUCCESS)
            break;
        if (const std::optional<RegistryType> known = textType(type))
            texts.push_back(
                registryTextOf(name.substr(0, nameUnits), *known, unitsOf(data, dataBytes)));
        ++index;
    }
    return texts;
}

} // namespace KWPlatform
