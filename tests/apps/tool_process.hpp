#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/linux/temporary_directory.hpp"

namespace orbinel::test {

/// The command-line tool, or another program, as a process of its own, its output collected.
class ToolProcess {
public:
    explicit ToolProcess(std::vector<std::string> words, const std::string& input = {},
                         const std::string& program = ORBINEL_TOOL);
    ~ToolProcess();
    ToolProcess(const ToolProcess&) = delete;
    ToolProcess& operator=(const ToolProcess&) = delete;

    /// Of its output, waiting for it; all there is when the process ends first.
    std::string firstLine();
    void signal(int number) const;
    /// Waits for the end. The exit status, or minus the signal that ended it.
    int wait();
    /// The whole text, waiting for the end.
    std::string out();
    std::string err();

private:
    [[nodiscard]] std::string file(const char* name) const { return directory_.path() / name; }
    [[nodiscard]] std::string textOf(const char* name) const;

    const hosts::TemporaryDirectory directory_;  // of the three files that stand for its streams
    pid_t pid_ = -1;
    int status_ = 0;
};

}  // namespace orbinel::test
