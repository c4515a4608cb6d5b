#include "tests/linux/storage_child.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <stdexcept>
#include <string_view>

#include "hosts/common/rapidjson_json.hpp"
#include "hosts/linux/sqlite_defaults.hpp"

extern char** environ;

namespace orbinel::hosts {

namespace {

constexpr std::string_view childArgument = "--storage-child";

void say(const std::string& line) {
    const auto whole = line + "\n";
    if (::write(STDOUT_FILENO, whole.data(), whole.size()) < 0) ::_exit(1);  // nobody listens any more
}

void waitForLine() {
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) == 1 && byte != '\n') {
    }
}

/// Works until it is killed, and says of each element that it is committed.
void writeForEver(SqliteDefaults& defaults) {
    const auto store = defaults.standard();
    for (int number = 1;; ++number) {
        store->set("left", number);
        store->set("right", number);
        store->synchronize();
        store->appendInFlight("queue", std::to_string(number), [number](std::optional<platform::ElementId> id) {
            if (id) say(std::to_string(number));
        });
        if (number % 50 == 0) defaults.waitUntilWritten();  // keeps the line of jobs short
    }
}

/// Owns the directory until it is let go.
void own(SqliteDefaults& defaults) {
    const auto group = defaults.appGroup("shared");
    defaults.standard()->appendInFlight("queue", "1", [](auto) {});
    group->set("greeting", "first");
    group->synchronize();
    defaults.waitUntilWritten();
    say("ready");
    waitForLine();
    group->set("greeting", "second");
    group->synchronize();
    defaults.waitUntilWritten();
    say("changed");
    waitForLine();
}

int runChild(std::string_view role, const char* directory) {
    SqliteDefaults defaults(directory, std::make_shared<RapidJson>());
    if (role == "write") writeForEver(defaults);
    if (role == "own") own(defaults);
    return 0;
}

}  // namespace

StorageChild::StorageChild(const std::string& role, const std::filesystem::path& directory) {
    int toChild[2];
    int fromChild[2];
    if (::pipe2(toChild, O_CLOEXEC) != 0 || ::pipe2(fromChild, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, toChild[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fromChild[1], STDOUT_FILENO);

    std::string program = "/proc/self/exe";
    std::string argument(childArgument);
    std::string roleCopy = role;
    std::string directoryText = directory.string();
    char* arguments[] = {program.data(), argument.data(), roleCopy.data(), directoryText.data(), nullptr};
    const int failed = ::posix_spawn(&process_, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(toChild[0]);
    ::close(fromChild[1]);
    input_ = toChild[1];
    output_ = fromChild[0];
    if (failed != 0) throw std::runtime_error("no child");
}

std::string StorageChild::readLine() {
    std::string line;
    char byte = 0;
    while (::read(output_, &byte, 1) == 1 && byte != '\n') line += byte;
    return line;
}

void StorageChild::writeLine() { EXPECT_EQ(::write(input_, "\n", 1), 1); }

void StorageChild::kill() {
    if (process_ < 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
    ::close(input_);
    ::close(output_);
}

}  // namespace orbinel::hosts

int main(int argumentCount, char** arguments) {
    if (argumentCount == 4 && arguments[1] == orbinel::hosts::childArgument) {
        return orbinel::hosts::runChild(arguments[2], arguments[3]);
    }
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
