#include "hosts/linux/directory_owner.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace orbinel::hosts {

bool DirectoryOwner::claim(const std::filesystem::path& directory) noexcept {
    release();
    lock_ = ::open((directory / "owner.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock_ < 0) return false;
    if (::flock(lock_, LOCK_EX | LOCK_NB) == 0) return true;
    release();
    return false;
}

void DirectoryOwner::release() noexcept {
    if (lock_ >= 0) ::close(lock_);
    lock_ = -1;
}

}  // namespace orbinel::hosts
