#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace orbinel::hosts {

/// Another process over the same data directory: this very program, started in one of the roles of `storage_child.cpp`.
///
/// Ending: kills what still runs.
class StorageChild {
public:
    StorageChild(const std::string& role, const std::filesystem::path& directory);
    ~StorageChild() { kill(); }
    StorageChild(const StorageChild&) = delete;
    StorageChild& operator=(const StorageChild&) = delete;

    /// The child's next line; empty once it has ended.
    [[nodiscard]] std::string readLine();

    /// Lets a child that waits go on.
    void writeLine();

    /// Kills it as the system would (SIGKILL) and waits until it is gone.
    void kill();

private:
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
};

}  // namespace orbinel::hosts
