#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/mutex.hpp"
#include "hosts/linux/sqlite_database.hpp"
#include "orbinel/platform/json.hpp"

namespace orbinel::hosts {

/// Reads the values of a store that other processes write, from its file. What has been read is kept until anybody
/// writes to the file.
///
/// Threads: callable from any thread; a read waits for the disk, and for another process a moment at most.
class GroupReader {
public:
    GroupReader(std::filesystem::path path, std::shared_ptr<const platform::Json> json);

    /// The value as it is in the file, absent where there is none; nothing where the file cannot be read.
    [[nodiscard]] std::optional<Value> value(std::string_view key);

    [[nodiscard]] std::optional<std::vector<std::string>> keys();

    /// Lets go of what has been read, which may have been erased from the file.
    void forget();

    /// Nothing is read any more.
    void close();

private:
    template <typename Read>
    auto read(Read read) -> std::optional<decltype(read(std::declval<SqliteDatabase&>()))>;

    void forgetIfWritten(SqliteDatabase& database) ORBINEL_REQUIRES(mutex_);

    const std::filesystem::path path_;
    const std::shared_ptr<const platform::Json> json_;

    Mutex mutex_;
    std::map<std::string, Value, std::less<>> known_ ORBINEL_GUARDED_BY(mutex_);  // absent ones, too
    std::int64_t version_ ORBINEL_GUARDED_BY(mutex_) = 0;  // of the file, when they were read over this connection
    std::unique_ptr<SqliteDatabase> database_ ORBINEL_GUARDED_BY(mutex_);
    bool closed_ ORBINEL_GUARDED_BY(mutex_) = false;
};

}  // namespace orbinel::hosts
