#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace orbinel::hosts {

/// A file name for any text: letters, digits, '-' and '_' stay, every other byte becomes %XX, and a long text is cut
/// and told apart by its SHA-256. Different texts have different names; none is longer than 112 bytes, holds a '/' or
/// a '.'.
[[nodiscard]] std::string safeFileName(std::string_view text);

/// Makes the directory and what is missing above it, closed to other people (mode 0700). False where that fails.
bool makePrivateDirectory(const std::filesystem::path& directory) noexcept;

/// The whole content of a file of at most `limit` bytes; nothing where it cannot be read or is longer.
[[nodiscard]] std::optional<std::string> readWholeFile(const std::filesystem::path& path, std::size_t limit) noexcept;

/// Replaces the file as a whole, readable by its owner alone (mode 0600): after a crash there is the old content or the
/// new, never a mixture. False where it could not be written; the old content is then still there.
bool replaceFile(const std::filesystem::path& path, std::string_view content) noexcept;

}  // namespace orbinel::hosts
