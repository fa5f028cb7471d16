// Test helper: the molcryst command run as a user runs it, its exit code and
// both of its outputs.
#ifndef MOLCRYST_TESTS_APPS_COMMANDRUN_H
#define MOLCRYST_TESTS_APPS_COMMANDRUN_H

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace molcryst {
namespace testing {

struct Outcome {
    int status;
    std::string out, err;
};

/// The whole text of a file; "" if it cannot be read.
inline std::string slurp(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

/// Runs `command arguments` through the shell.
inline Outcome run_program(const std::string& program, const std::string& arguments) {
    const std::string base = ::testing::TempDir() + "molcryst_command";
    const std::string command = program + " " + arguments + " >" + base + ".out 2>" + base + ".err";
    const int raw = std::system(command.c_str());
    return Outcome{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, slurp(base + ".out"), slurp(base + ".err")};
}

inline Outcome run(const std::string& arguments) { return run_program(MOLCRYST_COMMAND, arguments); }

}  // namespace testing
}  // namespace molcryst

#endif
