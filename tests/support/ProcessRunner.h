#pragma once

#include <string>
#include <vector>

namespace KWTest {

/// False on Windows: the programs that tests hand files to are posix ones, and what a test would
/// hand them is the same there.
#if defined(_WIN32)
inline constexpr bool kForeignPrograms = false;
#else
inline constexpr bool kForeignPrograms = true;
#endif

/// What a foreign program said.
struct ProcessResult {
    int exitCode = -1; // -1 when it did not end by itself; 127 when there is no such program
    std::string output;
    std::string errors;

    bool ok() const { return exitCode == 0; }
    /// Exit code, output and errors, for the message of an assertion.
    std::string describe() const;
};

/// Runs a program with its arguments, passed on as they are, and waits for it.
ProcessResult runProgram(const std::string& program, const std::vector<std::string>& arguments);

/// Runs Python source with the distribution's interpreter, which has the packaged fontTools.
/// `arguments` are sys.argv[1:].
ProcessResult runPython(const std::string& source, const std::vector<std::string>& arguments = {});

/// True when the program is found on the PATH or, given with a folder, exists.
bool hasProgram(const std::string& program);

} // namespace KWTest
