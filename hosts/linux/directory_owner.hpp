#pragma once

#include <filesystem>

namespace orbinel::hosts {

/// The claim of one living process on a data directory, by a lock on the file "owner.lock" in it.
///
/// The system gives the lock back when the process ends, however it ends; the file itself stays and means nothing.
class DirectoryOwner {
public:
    DirectoryOwner() = default;
    ~DirectoryOwner() { release(); }
    DirectoryOwner(const DirectoryOwner&) = delete;
    DirectoryOwner& operator=(const DirectoryOwner&) = delete;

    /// Never waits: false where another one holds the claim, or where the directory cannot be written to.
    bool claim(const std::filesystem::path& directory) noexcept;

    void release() noexcept;

private:
    int lock_ = -1;
};

}  // namespace orbinel::hosts
