#include "ProcessRunner.h"

#include "TempDir.h"

#include <cstdlib>
#include <filesystem>

namespace KWTest {

namespace {

/// One word of a shell command, whatever it holds.
std::string quoted(const std::string& word) {
    std::string result = "'";
    for (const char c : word) {
        if (c == '\'')
            result += "'\\''";
        else
            result += c;
    }
    return result + "'";
}

int exitCodeOf(int status) {
#ifdef WIFEXITED
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#else
    return status;
#endif
}

} // namespace

std::string ProcessResult::describe() const {
    return "exit code " + std::to_string(exitCode) + "\n" + output + errors;
}

ProcessResult runProgram(const std::string& program, const std::vector<std::string>& arguments) {
    const TempDir scratch;
    const std::filesystem::path output = scratch.path("output");
    const std::filesystem::path errors = scratch.path("errors");
    std::string command = quoted(program);
    for (const std::string& argument : arguments)
        command += " " + quoted(argument);
    command += " >" + quoted(output.string()) + " 2>" + quoted(errors.string()) + " </dev/null";

    ProcessResult result;
    result.exitCode = exitCodeOf(std::system(command.c_str()));
    result.output = readFile(output).str();
    result.errors = readFile(errors).str();
    return result;
}

ProcessResult runPython(const std::string& source, const std::vector<std::string>& arguments) {
    std::vector<std::string> all{"-c", source};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return runProgram(KW_PYTHON3, all);
}

bool hasProgram(const std::string& program) {
    return runProgram("sh", {"-c", "command -v \"$0\"", program}).ok();
}

} // namespace KWTest
