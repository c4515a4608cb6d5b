#include "tests/apps/tool_process.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

extern char** environ;

namespace orbinel::test {

ToolProcess::ToolProcess(std::vector<std::string> words, const std::string& input, const std::string& program) {
    std::ofstream(file("in")) << input;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, file("in").c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, file("out").c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, file("err").c_str(), O_WRONLY | O_CREAT, 0600);
    words.insert(words.begin(), program);
    std::vector<char*> pointers;
    for (auto& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const int error = posix_spawn(&pid_, program.c_str(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error(program + " cannot be run");
}

ToolProcess::~ToolProcess() {
    signal(SIGKILL);
    wait();
}

std::string ToolProcess::textOf(const char* name) const {
    std::ifstream stream(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string ToolProcess::firstLine() {
    const auto runs = [this] {
        siginfo_t ended{};
        return waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid == 0;
    };
    while (textOf("out").find('\n') == std::string::npos && runs()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const auto text = textOf("out");
    return text.substr(0, text.find('\n'));
}

void ToolProcess::signal(int number) const {
    if (pid_ > 0) kill(pid_, number);
}

int ToolProcess::wait() {
    if (pid_ > 0) waitpid(pid_, &status_, 0);
    pid_ = -1;
    return WIFEXITED(status_) ? WEXITSTATUS(status_) : -WTERMSIG(status_);
}

std::string ToolProcess::out() {
    wait();
    return textOf("out");
}

std::string ToolProcess::err() {
    wait();
    return textOf("err");
}

}  // namespace orbinel::test
