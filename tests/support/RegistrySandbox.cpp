#include "RegistrySandbox.h"

#include "platform/windows/WindowsHeader.h"

#include <stdexcept>

namespace KWTest {

namespace {

using KWPlatform::toWide;

void require(LSTATUS status, const char* what) {
    if (status != ERROR_SUCCESS)
        throw std::runtime_error(std::string(what) + ": " + std::to_string(status));
}

class Key {
public:
    Key(HKEY root, const std::u16string& path) {
        require(::RegCreateKeyExW(root, toWide(path), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_,
                                  nullptr),
                "RegCreateKeyExW");
    }
    ~Key() { ::RegCloseKey(key_); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    HKEY get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

HKEY rootOf(RegistrySandbox::Hive hive) {
    return hive == RegistrySandbox::Hive::localMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

} // namespace

RegistrySandbox::RegistrySandbox() {
    const std::string process = std::to_string(::GetCurrentProcessId());
    root_ = u"Software\\KWTest-" + std::u16string(process.begin(), process.end());
    const Key machine(HKEY_CURRENT_USER, root_ + u"\\machine");
    const Key user(HKEY_CURRENT_USER, root_ + u"\\user");
    require(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine.get()), "RegOverridePredefKey");
    require(::RegOverridePredefKey(HKEY_CURRENT_USER, user.get()), "RegOverridePredefKey");
}

RegistrySandbox::~RegistrySandbox() {
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, toWide(root_));
}

void RegistrySandbox::makeKey(Hive hive, const std::u16string& key) const {
    const Key made(rootOf(hive), key);
}

void RegistrySandbox::setBytes(Hive hive, const std::u16string& key, const std::u16string& name,
                               std::uint32_t type, std::string_view bytes) const {
    const Key made(rootOf(hive), key);
    require(::RegSetValueExW(made.get(), toWide(name), 0, type,
                             reinterpret_cast<const BYTE*>(bytes.data()),
                             static_cast<DWORD>(bytes.size())),
            "RegSetValueExW");
}

void RegistrySandbox::setText(Hive hive, const std::u16string& key, const std::u16string& name,
                              std::u16string_view text, std::uint32_t type) const {
    const std::u16string closed(text);
    setBytes(
        hive, key, name, type,
        {reinterpret_cast<const char*>(closed.c_str()), (closed.size() + 1) * sizeof(char16_t)});
}

} // namespace KWTest
