#pragma once

#include <stdexcept>

namespace typeset {

/// What the program tells its caller.
enum class ExitCode : int { ok = 0, usage = 1, font = 2, text = 3, output = 4 };

/// Ends the program with a message for people and an exit code for scripts.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}

    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

} // namespace typeset
