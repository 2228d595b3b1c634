#pragma once

#include <span>

namespace KWFontService_NS {

class FS_FontService;

/// What the host said when it opened the service.
struct FS_OpenArguments {
    const char* configPath = nullptr;
    const char* homePath = nullptr;
};

/// One step of start-up. It may throw a KWError.
struct FS_StartupStep {
    enum class Kind {
        configuration, ///< a failure is the caller's, and a scratch object runs nothing else
        later,         ///< a failure is recorded and ends the rest of start-up
    };

    Kind kind;
    void (*run)(FS_FontService& service, const FS_OpenArguments& arguments);
};

/// Fills the extension table and runs every step on `service`; `g_fontServiceLock` is held.
void startUp(FS_FontService& service, const FS_OpenArguments& arguments);

/// Runs the configuration steps alone. False when one failed, with the error in `errors`.
bool readConfiguration(FS_FontService& scratch, const FS_OpenArguments& arguments);

/// Puts other steps in place for its own lifetime. For tests, while nothing else runs.
class FS_StartupOverride {
public:
    explicit FS_StartupOverride(std::span<const FS_StartupStep> replacement);
    ~FS_StartupOverride();
    FS_StartupOverride(const FS_StartupOverride&) = delete;
    FS_StartupOverride& operator=(const FS_StartupOverride&) = delete;

private:
    std::span<const FS_StartupStep> previous_;
};

} // namespace KWFontService_NS
