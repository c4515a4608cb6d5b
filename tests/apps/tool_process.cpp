#include "tests/apps/tool_process.hpp"

#include <fcntl.h>
#include <glib.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <stdexcept>

extern char** environ;

namespace orbinel::test {

PipeText::PipeText() {
    if (pipe2(ends_, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
}

PipeText::~PipeText() {
    if (reader_.joinable()) reader_.join();
    close(ends_[0]);
}

void PipeText::begin() {
    close(ends_[1]);
    reader_ = std::thread([this] { readAll(); });
}

void PipeText::readAll() {
    std::array<char, 4096> buffer{};
    for (;;) {
        const auto size = read(ends_[0], buffer.data(), buffer.size());
        const MutexLock lock(mutex_);
        if (size > 0) text_.append(buffer.data(), static_cast<std::size_t>(size));
        ended_ = size <= 0;
        changed_.notifyAll();
        if (ended_) return;
    }
}

std::string PipeText::firstLine() {
    const MutexLock lock(mutex_);
    while (!ended_ && text_.find('\n') == std::string::npos) changed_.wait(mutex_);
    return text_.substr(0, text_.find('\n'));
}

std::string PipeText::all() {
    const MutexLock lock(mutex_);
    while (!ended_) changed_.wait(mutex_);
    return text_;
}

ToolProcess::ToolProcess(const std::vector<std::string>& arguments, const std::string& input) {
    std::array<int, 2> in{};
    if (pipe2(in.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], 0);
    posix_spawn_file_actions_adddup2(&actions, out_.writeEnd(), 1);
    posix_spawn_file_actions_adddup2(&actions, err_.writeEnd(), 2);
    std::vector<std::string> words{ORBINEL_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (auto& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const int error = posix_spawn(&pid_, ORBINEL_TOOL, &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    out_.begin();
    err_.begin();
    const bool fed = input.empty() || write(in[1], input.data(), input.size()) == static_cast<ssize_t>(input.size());
    close(in[1]);
    if (error != 0 || !fed) throw std::runtime_error("the tool cannot be run");
}

ToolProcess::~ToolProcess() {
    if (pid_ <= 0) return;
    signal(SIGKILL);
    wait();
}

void ToolProcess::signal(int number) { kill(pid_, number); }

int ToolProcess::wait() {
    if (pid_ > 0) {
        waitpid(pid_, &status_, 0);
        pid_ = -1;
    }
    return WIFEXITED(status_) ? WEXITSTATUS(status_) : -WTERMSIG(status_);
}

namespace {

std::string base64(const std::string& bytes) {
    gchar* text = g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
    std::string result(text);
    g_free(text);
    return result;
}

}  // namespace

std::string scrambled(const std::string& text, const std::string& timestamp) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < timestamp.size(); ++i) {
        const auto n = static_cast<std::uint64_t>(g_ascii_digit_value(timestamp[i]) < 0 ? 1 : timestamp[i] - '0' + 1);
        if (i % 4 == 0) sum |= n * ORBINEL_KEY_MULTIPLIER_1;
        if (i % 4 == 1) sum = sum << (n % 3);
        if (i % 4 == 2) sum ^= n * ORBINEL_KEY_MULTIPLIER_2;
        if (i % 4 == 3) sum = sum >> (n % 3);
    }
    const auto key = std::to_string(sum);
    auto inner = base64(text);
    for (std::size_t i = 0; i < inner.size(); ++i) inner[i] = static_cast<char>(inner[i] ^ key[i % key.size()]);
    return base64(inner);
}

}  // namespace orbinel::test
