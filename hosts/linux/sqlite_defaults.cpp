#include "hosts/linux/sqlite_defaults.hpp"

#include <utility>

#include "hosts/linux/file_system.hpp"

namespace orbinel::hosts {

SqliteDefaults::SqliteDefaults(std::filesystem::path directory, std::shared_ptr<const platform::Json> json)
    : storage_(std::make_shared<Storage>(std::move(directory), std::move(json))) {
    storage_->thread.post([storage = storage_] {
        makePrivateDirectory(storage->directory);
        storage->owned = storage->owner.claim(storage->directory);
    });
    static_cast<void>(standard());
}

SqliteDefaults::~SqliteDefaults() {
    std::map<std::string, std::shared_ptr<SqliteStore>> stores;
    {
        MutexLock lock(mutex_);
        stores.swap(stores_);
    }
    for (const auto& [name, store] : stores) store->end();
    storage_->thread.post([storage = storage_] { storage->owner.release(); });
    storage_->thread.end();
}

std::shared_ptr<platform::DefaultsStore> SqliteDefaults::standard() noexcept {
    return open("standard.sqlite", SqliteStore::Sharing::ownProcess);
}

std::shared_ptr<platform::DefaultsStore> SqliteDefaults::suite(std::string_view name) noexcept {
    return open("suite-" + safeFileName(name) + ".sqlite", SqliteStore::Sharing::ownProcess);
}

std::shared_ptr<platform::DefaultsStore> SqliteDefaults::appGroup(std::string_view name) noexcept {
    return open("group-" + safeFileName(name) + ".sqlite", SqliteStore::Sharing::otherProcesses);
}

void SqliteDefaults::setProblemHandler(std::function<void(std::string)> handler) noexcept {
    storage_->problems->setHandler(std::move(handler));
}

void SqliteDefaults::waitUntilWritten() { storage_->thread.wait(); }

std::shared_ptr<SqliteStore> SqliteDefaults::open(const std::string& fileName, SqliteStore::Sharing sharing) {
    MutexLock lock(mutex_);
    auto& store = stores_[fileName];
    if (!store) {
        store = std::make_shared<SqliteStore>(storage_, fileName, sharing);
        store->startLoading();
    }
    return store;
}

}  // namespace orbinel::hosts
