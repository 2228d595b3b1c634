#include "support/ProcessRunner.h"

#include <gtest/gtest.h>

namespace KWTest {
namespace {

TEST(ProcessRunner, CapturesOutputErrorsAndExitCode) {
    if (!kForeignPrograms)
        GTEST_SKIP() << "foreign programs are not run here";
    const ProcessResult result = runProgram("sh", {"-c", "echo out; echo err >&2; exit 3"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(result.output, "out\n");
    EXPECT_EQ(result.errors, "err\n");
    EXPECT_EQ(result.describe(), "exit code 3\nout\nerr\n");
}

TEST(ProcessRunner, ArgumentsArriveAsTheyAre) {
    if (!kForeignPrograms)
        GTEST_SKIP() << "foreign programs are not run here";
    const std::vector<std::string> odd = {"a b", "it's", "$HOME", "", "*", "\"\\"};
    const ProcessResult result = runPython("import sys\nprint(sys.argv[1:])", odd);
    EXPECT_EQ(result.output, "['a b', \"it's\", '$HOME', '', '*', '\"\\\\']\n");
}

TEST(ProcessRunner, AMissingProgramIs127) {
    if (!kForeignPrograms)
        GTEST_SKIP() << "foreign programs are not run here";
    EXPECT_EQ(runProgram("kw-no-such-program", {}).exitCode, 127);
    EXPECT_FALSE(hasProgram("kw-no-such-program"));
    EXPECT_TRUE(hasProgram("sh"));
}

} // namespace
} // namespace KWTest
