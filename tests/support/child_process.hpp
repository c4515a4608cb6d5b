#pragma once

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ext/stdio_filebuf.h>
#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

namespace orbinel::test {

/// Says a line to the process that started this one.
inline void say(const std::string& line) {
    const auto whole = line + "\n";
    if (::write(STDOUT_FILENO, whole.data(), whole.size()) < 0) ::_exit(1);  // nobody listens any more
}

/// Another process: this very program, started once more with the arguments, or a command of the machine.
///
/// Ending: kills what still runs.
class ChildProcess {
public:
    explicit ChildProcess(std::vector<std::string> arguments, const std::string& program = "/proc/self/exe") {
        arguments.insert(arguments.begin(), program);
        std::vector<char*> pointers;
        for (auto& argument : arguments) pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        int in[2];
        int out[2];
        if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        const int failed = ::posix_spawnp(&process_, pointers[0], &actions, nullptr, pointers.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        ::close(in[0]);
        ::close(out[1]);
        input_ = in[1];
        output_ = {out[0], std::ios::in};
        if (failed != 0) throw std::runtime_error("no child");
    }
    ~ChildProcess() {
        kill();
        waitForEnd();
        ::close(input_);
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// False once it has ended and everything that it said is read.
    bool readLine(std::string& line) { return static_cast<bool>(std::getline(stream_, line)); }

    /// Lets a child that waits go on; false where it has ended.
    [[nodiscard]] bool writeLine() const { return ::write(input_, "\n", 1) == 1; }

    /// As the system would (SIGKILL).
    void kill() const {
        if (process_ > 0) ::kill(process_, SIGKILL);
    }
    int waitForEnd() {
        if (process_ > 0) ::waitpid(process_, &status_, 0);
        process_ = -1;
        return status_;
    }

private:
    pid_t process_ = -1;
    int status_ = -1;
    int input_ = -1;
    __gnu_cxx::stdio_filebuf<char> output_;
    std::istream stream_{&output_};
};

}  // namespace orbinel::test
