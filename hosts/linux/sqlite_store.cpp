#include "hosts/linux/sqlite_store.hpp"

#include <algorithm>
#include <utility>

#include "hosts/common/callable.hpp"
#include "hosts/common/stored_json.hpp"

namespace orbinel::hosts {

namespace {

/// Whether there is a value that has no elements.
bool isPlain(const SharedValue& value) { return value && !value->isAbsent() && value->ifArray() == nullptr; }

}  // namespace

SqliteStore::SqliteStore(std::shared_ptr<Storage> storage, const std::string& fileName, Sharing sharing)
    : storage_(std::move(storage)),
      reader_(sharing == Sharing::otherProcesses
                  ? std::make_unique<GroupReader>(storage_->directory / fileName, storage_->json)
                  : nullptr),
      file_(storage_->directory / fileName, storage_->json, storage_->problems) {}

void SqliteStore::startLoading() {
    storage_->thread.post([self = shared_from_this()] { self->load(); });
}

void SqliteStore::load() {
    if (isLoaded()) return;
    takeOver(file_.open(storage_->owned));
    file_.tellProblems();
}

void SqliteStore::takeOver(StoreFile::Loaded loaded) {
    MutexLock lock(mutex_);
    for (auto& [key, value] : loaded.values) contents_.load(std::move(key), std::move(value));
    for (auto& [key, row] : loaded.elements) contents_.load(key, std::move(row));
    contents_.startNumberingAt(loaded.firstNewId);
    owned_ = storage_->owned;
    loaded_ = true;
    for (const auto& change : std::exchange(beforeLoading_, {})) change(contents_);
    loadedChanged_.notifyAll();
}

void SqliteStore::end() {
    {
        MutexLock lock(mutex_);
        putInLine([this](StoreFile& file) {
            file.close();
            if (reader_) reader_->close();
        });
    }
    storage_->thread.post([self = shared_from_this()] { self->runNextWrite(); });
}

Value SqliteStore::value(std::string_view key) const noexcept {
    SharedValue value;
    std::vector<std::string> elements;
    waitUntilLoaded();
    {
        MutexLock lock(mutex_);
        elements = contents_.queuedJson(key);
        value = contents_.value(key);
        if (const auto found = unwritten_.find(key); found != unwritten_.end()) {
            return *found->second;
        }
    }
    if (!elements.empty()) {
        Array array;
        for (const auto& json : elements) array.push_back(parsedOrText(json, *storage_->json));
        return array;
    }
    if (reader_) {
        if (auto read = reader_->value(key)) return std::move(*read);
    }
    return value ? *value : Value();
}

void SqliteStore::set(std::string_view key, Value value) noexcept {
    const auto shared = std::make_shared<const Value>(withoutUnstorable(std::move(value)));
    MutexLock lock(mutex_);
    if (shared->isAbsent() && isKnownToHoldNothing(key)) return;
    unsynchronised_.insert_or_assign(std::string(key), shared);
    if (reader_) unwritten_.insert_or_assign(std::string(key), shared);
    makeChange([key = std::string(key), shared](StoreContents& contents) {
        contents.set(key, shared->isAbsent() ? nullptr : shared);
    });
}

/// What other processes have written is not known.
bool SqliteStore::isKnownToHoldNothing(std::string_view key) const {
    return loaded_ && !reader_ && !unsynchronised_.contains(key) && contents_.isEmpty(key);
}

std::vector<std::string> SqliteStore::keys() const noexcept {
    std::vector<std::string> keys;
    Waiting unwritten;
    waitUntilLoaded();
    {
        MutexLock lock(mutex_);
        keys = contents_.keys();
        if (!reader_) return keys;
        unwritten = unwritten_;
    }
    if (auto read = reader_->keys()) keys.insert(keys.end(), read->begin(), read->end());
    for (const auto& [key, value] : unwritten) keys.push_back(key);
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    std::erase_if(keys, [&](const std::string& key) { return value(key).isAbsent(); });
    return keys;
}

void SqliteStore::synchronize() noexcept {
    {
        MutexLock lock(mutex_);
        if (unsynchronised_.empty()) return;
        auto changed = std::exchange(unsynchronised_, {});
        putInLine([this, batch = ValueBatch(changed.begin(), changed.end())](StoreFile& file) {
            if (file.writeValues(batch)) forgetWritten(batch);
        });
    }
    storage_->thread.post([self = shared_from_this()] { self->runNextWrite(); });
}

void SqliteStore::append(std::string_view key, std::string json) noexcept {
    const auto plan = std::make_shared<ElementPlan>();
    changeElements(
        key, plan, PlainValue::isReplaced,
        [plan, key = std::string(key), json = std::move(json)](StoreContents& contents) {
            plan->rows.push_back(contents.append(key, json, ElementState::queued));
        },
        [plan, key = std::string(key)](StoreFile& file) { file.insert(key, plan->replacement, plan->rows.front()); });
}

void SqliteStore::appendInFlight(std::string_view key, std::string json,
                                 std::function<void(std::optional<platform::ElementId>)> committed) noexcept {
    const auto plan = std::make_shared<ElementPlan>();
    changeElements(
        key, plan, PlainValue::isReplaced,
        [plan, key = std::string(key), json = std::move(json)](StoreContents& contents) {
            plan->rows.push_back(contents.append(key, json, ElementState::inFlight));
        },
        [this, plan, key = std::string(key), committed = callable(std::move(committed))](StoreFile& file) {
            const auto& row = plan->rows.front();
            if (file.insert(key, plan->replacement, row)) return committed(row.id);
            {
                MutexLock lock(mutex_);
                contents_.finish(key, row.id);
            }
            committed(std::nullopt);
        });
}

void SqliteStore::take(std::string_view key, std::function<void(std::vector<platform::StoredElement>)> taken) noexcept {
    const auto plan = std::make_shared<ElementPlan>();
    changeElements(
        key, plan, PlainValue::stays,
        [plan, key = std::string(key)](StoreContents& contents) { plan->rows = contents.take(key); },
        [plan, key = std::string(key), taken = callable(std::move(taken))](StoreFile& file) {
            std::vector<platform::StoredElement> elements;
            for (auto& row : file.take(key, plan->replacement, std::move(plan->rows))) {
                elements.push_back({row.id, std::move(row.json)});
            }
            taken(std::move(elements));
        });
}

void SqliteStore::count(std::string_view key, std::function<void(std::size_t)> counted) noexcept {
    const auto plan = std::make_shared<ElementPlan>();
    changeElements(
        key, plan, PlainValue::stays,
        [plan, key = std::string(key)](StoreContents& contents) { plan->count = contents.count(key); },
        [plan, key = std::string(key), counted = callable(std::move(counted))](StoreFile& file) {
            file.replace(key, plan->replacement);
            counted(plan->count);
        });
}

void SqliteStore::requeue(std::string_view key, platform::ElementId id, std::function<void()> requeued) noexcept {
    const auto plan = std::make_shared<ElementPlan>();
    changeElements(
        key, plan, PlainValue::stays,
        [plan, key = std::string(key), id](StoreContents& contents) {
            if (auto row = contents.requeue(key, id)) plan->rows.push_back(std::move(*row));
        },
        [plan, key = std::string(key), requeued = callable(std::move(requeued))](StoreFile& file) {
            file.replace(key, plan->replacement);
            if (!plan->rows.empty()) file.requeue(key, plan->rows.front());
            requeued();
        });
}

void SqliteStore::finish(std::string_view key, platform::ElementId id) noexcept {
    const auto known = std::make_shared<bool>(false);
    change([known, key = std::string(key), id](StoreContents& contents) { *known = contents.finish(key, id); },
           [known, id](StoreFile& file) {
               if (*known) file.finish(id);
           });
}

void SqliteStore::giveUp(std::string_view key, platform::ElementId id) noexcept {
    const auto known = std::make_shared<bool>(false);
    change([known, key = std::string(key), id](StoreContents& contents) { *known = contents.giveUp(key, id); },
           [known, id](StoreFile& file) {
               if (*known) file.giveUp(id);
           });
}

void SqliteStore::reclaim(std::string_view key, std::function<void(platform::ReclaimedElements)> reclaimed) noexcept {
    const auto plan = std::make_shared<ElementPlan>();
    changeElements(
        key, plan, PlainValue::stays,
        [this, plan, key = std::string(key)](StoreContents& contents) ORBINEL_REQUIRES(mutex_) {
            if (owned_) plan->reclaimed = contents.reclaim(key);
        },
        [plan, key = std::string(key), reclaimed = callable(std::move(reclaimed))](StoreFile& file) {
            file.replace(key, plan->replacement);
            file.reclaim(key, plan->reclaimed);
            platform::ReclaimedElements answer{plan->reclaimed.returned.size(), {}};
            for (auto& row : plan->reclaimed.dropped) answer.dropped.push_back(std::move(row.json));
            reclaimed(std::move(answer));
        });
}

void SqliteStore::erase(std::vector<std::string> keys, std::function<void(std::string)> erased) noexcept {
    {
        MutexLock lock(mutex_);
        ValueBatch removals;
        for (const auto& key : keys) {
            unsynchronised_.erase(key);
            const auto& removal = removals.emplace_back(key, std::make_shared<const Value>());
            if (reader_) unwritten_.insert_or_assign(key, removal.second);
        }
        makeChange([keys](StoreContents& contents) {
            for (const auto& key : keys) contents.erase(key);
        });
        putInLine([this, keys = std::move(keys), removals, erased = callable(std::move(erased))](StoreFile& file) {
            auto problem = file.erase(keys);
            if (reader_) reader_->forget();
            if (problem.empty()) forgetWritten(removals);
            erased(std::move(problem));
        });
    }
    storage_->thread.post([self = shared_from_this()] { self->runNextWrite(); });
}

void SqliteStore::change(Change change, Write write) {
    {
        MutexLock lock(mutex_);
        makeChange(std::move(change));
        putInLine(std::move(write));
    }
    storage_->thread.post([self = shared_from_this()] { self->runNextWrite(); });
}

/// An array that was set under the key becomes elements first, in the same transaction, also where it has not been
/// synchronised: otherwise it would be written over the elements later.
void SqliteStore::changeElements(std::string_view key, const PlanPointer& plan, PlainValue plainValue, Change change,
                                 Write write) {
    {
        MutexLock lock(mutex_);
        plan->replacement.needed = forgetUnlessStaying(unsynchronised_, key, plainValue);
        forgetUnlessStaying(unwritten_, key, plainValue);
        makeChange([json = storage_->json, plan, key = std::string(key), plainValue,
                    change = std::move(change)](StoreContents& contents) {
            if (plainValue == PlainValue::stays && isPlain(contents.value(key))) return;
            if (auto rows = contents.turnIntoElements(key, *json)) plan->replacement = {true, std::move(*rows)};
            change(contents);
        });
        putInLine(std::move(write));
    }
    storage_->thread.post([self = shared_from_this()] { self->runNextWrite(); });
}

bool SqliteStore::forgetUnlessStaying(Waiting& waiting, std::string_view key, PlainValue plainValue) {
    const auto found = waiting.find(key);
    if (found == waiting.end() || (plainValue == PlainValue::stays && isPlain(found->second))) return false;
    waiting.erase(found);
    return true;
}

void SqliteStore::makeChange(Change change) {
    if (loaded_) {
        change(contents_);
    } else {
        beforeLoading_.push_back(std::move(change));
    }
}

void SqliteStore::putInLine(Write write) { writes_.push_back(std::move(write)); }

void SqliteStore::runNextWrite() {
    Write write;
    {
        MutexLock lock(mutex_);
        write = std::move(writes_.front());
        writes_.pop_front();
    }
    write(file_);
    file_.tellProblems();
}

void SqliteStore::forgetWritten(const ValueBatch& batch) {
    MutexLock lock(mutex_);
    for (const auto& [key, value] : batch) {
        const auto found = unwritten_.find(key);
        if (found != unwritten_.end() && found->second == value) unwritten_.erase(found);
    }
}

bool SqliteStore::isLoaded() const {
    MutexLock lock(mutex_);
    return loaded_;
}

void SqliteStore::waitUntilLoaded() const {
    // A completion or a problem handler that asks would wait for its own thread. Loading changes nothing that shows.
    if (storage_->thread.isCurrent()) return const_cast<SqliteStore*>(this)->load();
    MutexLock lock(mutex_);
    while (!loaded_) loadedChanged_.wait(mutex_);
}

}  // namespace orbinel::hosts
