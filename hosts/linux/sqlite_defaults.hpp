#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "base/mutex.hpp"
#include "hosts/linux/sqlite_store.hpp"
#include "orbinel/platform/defaults.hpp"
#include "orbinel/platform/json.hpp"

namespace orbinel::hosts {

/// Stores as SQLite files in one directory, held in memory and written behind by one storage thread.
///
/// The directory has one living owner (see `DirectoryOwner`); only the owner reclaims elements and sets damaged files
/// aside. Where nothing can be written, everything works in memory and one sentence a store and kind says so.
class SqliteDefaults final : public platform::Defaults {
public:
    /// Returns at once; the directory is made and the standard store read on the storage thread.
    SqliteDefaults(std::filesystem::path directory, std::shared_ptr<const platform::Json> json);
    ~SqliteDefaults() override;
    SqliteDefaults(const SqliteDefaults&) = delete;
    SqliteDefaults& operator=(const SqliteDefaults&) = delete;

    [[nodiscard]] std::shared_ptr<platform::DefaultsStore> standard() noexcept override;
    [[nodiscard]] std::shared_ptr<platform::DefaultsStore> suite(std::string_view name) noexcept override;
    [[nodiscard]] std::shared_ptr<platform::DefaultsStore> appGroup(std::string_view name) noexcept override;
    void setProblemHandler(std::function<void(std::string)> handler) noexcept override;

    /// Returns once everything asked for so far is on disk and its completions have run.
    void waitUntilWritten();

private:
    std::shared_ptr<SqliteStore> open(const std::string& fileName, SqliteStore::Sharing sharing);

    const std::shared_ptr<Storage> storage_;

    Mutex mutex_;
    std::map<std::string, std::shared_ptr<SqliteStore>> stores_ ORBINEL_GUARDED_BY(mutex_);  // by file name
};

}  // namespace orbinel::hosts
