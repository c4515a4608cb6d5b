#include "hosts/linux/file_system.hpp"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

namespace orbinel::hosts {

namespace {

constexpr std::size_t longestPlainName = 100;
constexpr std::size_t keptOfLongName = 40;

class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
    ~FileDescriptor() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    [[nodiscard]] int get() const noexcept { return descriptor_; }
    [[nodiscard]] bool valid() const noexcept { return descriptor_ >= 0; }

private:
    const int descriptor_;
};

bool writeAll(int descriptor, std::string_view content) noexcept {
    while (!content.empty()) {
        const auto written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// The entry of a renamed file is only safe once its directory is.
void syncDirectory(const std::filesystem::path& directory) noexcept {
    const FileDescriptor descriptor(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.valid()) ::fsync(descriptor.get());
}

}  // namespace

std::string safeFileName(std::string_view text) {
    std::string name;
    for (const char c : text) {
        if (g_ascii_isalnum(c) || c == '-' || c == '_') {
            name += c;
        } else {
            constexpr char digits[] = "0123456789ABCDEF";
            const auto byte = static_cast<unsigned char>(c);
            name.append({'%', digits[byte >> 4], digits[byte & 15]});
        }
    }
    if (name.size() <= longestPlainName) return name;
    const std::unique_ptr<char, void (*)(void*)> hash(
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(text.data()), text.size()),
        g_free);
    return name.substr(0, keptOfLongName) + "~" + hash.get();
}

bool makePrivateDirectory(const std::filesystem::path& directory) noexcept {
    return g_mkdir_with_parents(directory.c_str(), 0700) == 0;
}

std::optional<std::string> readWholeFile(const std::filesystem::path& path, std::size_t limit) noexcept {
    const FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!descriptor.valid()) return std::nullopt;
    std::string content;
    char buffer[4096];
    for (;;) {
        const auto bytes = ::read(descriptor.get(), buffer, sizeof buffer);
        if (bytes < 0 && errno == EINTR) continue;
        if (bytes < 0) return std::nullopt;
        if (bytes == 0) return content;
        content.append(buffer, static_cast<std::size_t>(bytes));
        if (content.size() > limit) return std::nullopt;
    }
}

bool replaceFile(const std::filesystem::path& path, std::string_view content) noexcept {
    std::string temporary = path.string() + ".XXXXXX";
    {
        const FileDescriptor descriptor(::mkostemp(temporary.data(), O_CLOEXEC));  // mode 0600
        if (!descriptor.valid()) return false;
        if (!writeAll(descriptor.get(), content) || ::fsync(descriptor.get()) != 0) {
            ::unlink(temporary.c_str());
            return false;
        }
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    syncDirectory(path.parent_path());
    return true;
}

}  // namespace orbinel::hosts
