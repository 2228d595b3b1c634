#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace KWTest {

/// An empty registry for this process, in place of both HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER,
/// until the end of its scope. Windows only.
class RegistrySandbox {
public:
    enum class Hive { localMachine, currentUser };

    RegistrySandbox();
    ~RegistrySandbox();
    RegistrySandbox(const RegistrySandbox&) = delete;
    RegistrySandbox& operator=(const RegistrySandbox&) = delete;

    /// Makes a key, with those above it.
    void makeKey(Hive hive, const std::u16string& key) const;
    /// Sets a value of any type (REG_SZ is 1, REG_MULTI_SZ 7 ...) to the bytes as they are.
    void setBytes(Hive hive, const std::u16string& key, const std::u16string& name,
                  std::uint32_t type, std::string_view bytes) const;
    /// Sets a text value, REG_SZ unless told otherwise, with a closing NUL.
    void setText(Hive hive, const std::u16string& key, const std::u16string& name,
                 std::u16string_view text, std::uint32_t type = 1) const;

private:
    std::u16string root_;
};

} // namespace KWTest
