#include "hosts/linux/file_secure_items.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "hosts/linux/file_system.hpp"

namespace orbinel::hosts {

namespace {

constexpr std::size_t largestFile = 16 * 1024 * 1024;

/// The names in full stand before the data, each after its length, so that a file tells what it holds.
std::string headerOf(std::string_view service, std::string_view account) {
    return std::to_string(service.size()) + " " + std::to_string(account.size()) + "\n" + std::string(service) +
           std::string(account);
}

}  // namespace

FileSecureItems::FileSecureItems(std::filesystem::path directory) : directory_(std::move(directory)) {}

std::optional<std::string> FileSecureItems::find(std::string_view service, std::string_view account) const noexcept {
    auto content = readWholeFile(pathOf(service, account), largestFile);
    const auto header = headerOf(service, account);
    if (!content || !content->starts_with(header)) return std::nullopt;
    return content->substr(header.size());
}

bool FileSecureItems::store(std::string_view service, std::string_view account, std::string_view data) noexcept {
    if (!makePrivateDirectory(directory_)) return false;
    ::chmod(directory_.c_str(), 0700);  // it may have been made by something more generous
    return replaceFile(pathOf(service, account), headerOf(service, account).append(data));
}

void FileSecureItems::remove(std::string_view service, std::string_view account) noexcept {
    const auto path = pathOf(service, account);
    ::unlink(path.c_str());
    // Beside it, a process that was killed while it stored the item may have left what it had written.
    const auto unfinished = path.filename().string() + ".";
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory_, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().filename().string().starts_with(unfinished)) ::unlink(entry->path().c_str());
    }
}

std::filesystem::path FileSecureItems::pathOf(std::string_view service, std::string_view account) const {
    return directory_ / (safeFileName(service) + "+" + safeFileName(account));
}

}  // namespace orbinel::hosts
