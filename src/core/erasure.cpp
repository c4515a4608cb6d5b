#include "core/erasure.hpp"

#include <chrono>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/guard.hpp"
#include "core/world.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

// Short enough to need no memory themselves.
constexpr const char* outOfMemory = "Out of memory.";
constexpr const char* notRestarted = "Not restarted.";

class Erasure;

/// A task of an erasure, made while there is memory for it. It owns the erasure only once it is handed over: until then
/// it may be a member of it.
class PreparedTask {
public:
    explicit PreparedTask(void (Erasure::*step)() noexcept);

    [[nodiscard]] platform::Task handOver(std::shared_ptr<Erasure> erasure) noexcept {
        *std::exchange(owner_, nullptr) = std::move(erasure);
        return std::move(task_);
    }

private:
    std::shared_ptr<std::shared_ptr<Erasure>> owner_ = std::make_shared<std::shared_ptr<Erasure>>();
    platform::Task task_;
};

/// What goes on between two worlds. Nothing that is thrown, out of memory included, keeps it from its end.
class Erasure : public std::enable_shared_from_this<Erasure> {
public:
    Erasure(platform::Services services, bool developmentLog)
        : services_(std::move(services)), developmentLog_(developmentLog) {}

    void begin() noexcept { services_.scheduler->postGlobal(run_.handOver(shared_from_this())); }

private:
    struct Part {
        std::shared_ptr<platform::DefaultsStore> store;
        std::vector<std::string> keys;
    };

    void run() noexcept {
        goOn([&] {
            gatherParts();
            eraseSecureItem();
            if (!services_.device->renewVendorIdentifier()) note("The vendor identifier could not be erased.");
            eraseNextPart();
        });
    }

    /// One step, which begins the next; one that throws is the last.
    template <typename Step>
    void goOn(Step&& step) noexcept {
        try {
            step();
        } catch (const std::bad_alloc&) {
            giveUp(outOfMemory);
        } catch (const std::exception& exception) {
            giveUp(exception.what());
        } catch (...) {
            giveUp("Something was thrown.");
        }
    }

    void giveUp(const char* problem) noexcept {
        try {
            note(problem);
        } catch (const std::exception&) {
            problem_ = outOfMemory;
        }
        end();
    }

    void gatherParts() {
        const auto standard = services_.defaults->standard();
        const auto contents = services_.defaults->suite(keys::contentSuite);
        parts_.push_back({contents, contents->keys()});
        const auto group = standard->value(keys::appGroup);
        if (!group.stringOrEmpty().empty()) {
            parts_.push_back({services_.defaults->appGroup(group.stringOrEmpty()),
                              {keys::ofAppGroup.begin(), keys::ofAppGroup.end()}});
        }
        // The last, because it names the app group: an erasure that is cut short can be repeated.
        parts_.push_back({standard, {keys::ofStandardStore.begin(), keys::ofStandardStore.end()}});
    }

    void eraseSecureItem() {
        services_.secureItems->remove(keys::udidKeychain, keys::udidKeychain);
        if (services_.secureItems->find(keys::udidKeychain, keys::udidKeychain)) {
            note("A secure item could not be erased.");
        }
    }

    void eraseNextPart() {
        if (nextPart_ == parts_.size()) return end();
        auto& part = parts_[nextPart_++];
        part.store->erase(std::move(part.keys), [self = shared_from_this()](const std::string& problem) {
            self->goOn([&] {
                self->note(problem);
                self->eraseNextPart();
            });
        });
    }

    void end() noexcept { services_.scheduler->postMain(finish_.handOver(shared_from_this())); }

    void note(std::string_view problem) {
        if (problem.empty()) return;
        auto all = problem_ ? *problem_ + ' ' : std::string();
        problem_ = std::move(all.append(problem));
    }

    void finish() noexcept {
        std::shared_ptr<World> world;
        try {
            if (current_world::continuesAfterErasure()) world = World::create(services_);
        } catch (const std::exception& exception) {
            services_.console->writeLine(exception.what());
            if (!problem_) problem_ = notRestarted;
        }
        if (world != nullptr) report(world->reports);
        for (const auto& erased : current_world::endErasure(world)) {
            try {
                erased(problem_);
            } catch (...) {
                if (world != nullptr) world->reports.note("A completion of the erasure has thrown.");
            }
        }
    }

    void report(Reports& reports) const {
        reports.setDevelopmentLog(developmentLog_);
        if (!problem_) return reports.note("Erased everything that was stored.");
        reports.log(LogType::common, LogLevel::error, "Stored data could not be erased.", [&] {
            return Dictionary{{"problem", *problem_}};
        });
    }

    const platform::Services services_;
    const bool developmentLog_;
    PreparedTask run_{&Erasure::run};
    PreparedTask finish_{&Erasure::finish};
    // Of one step at a time, each of which begins the next.
    std::vector<Part> parts_;
    std::size_t nextPart_ = 0;
    std::optional<std::string> problem_;
};

PreparedTask::PreparedTask(void (Erasure::*step)() noexcept) : task_([owner = owner_, step] { ((**owner).*step)(); }) {}

/// On the main queue; where there is no memory for a task, here.
void tellThatNothingBegan(const current_world::Erased& erased, const std::shared_ptr<World>& world) noexcept {
    try {
        if (world != nullptr) return world->services.scheduler->postMain([erased] { erased(outOfMemory); });
    } catch (const std::exception&) {  // no task, then
    }
    try {
        erased(outOfMemory);
    } catch (...) {
        if (world != nullptr) world->reports.note("A completion of the erasure has thrown.");
    }
}

}  // namespace

void eraseStoredData(current_world::Erased erased) noexcept {
    const GuardedOperation operation("+[Orbinel eraseStoredDataWithCompletionHandler:]");
    std::shared_ptr<World> world;
    try {
        world = current_world::beginErasure(std::move(erased));
    } catch (const std::exception&) {
        return tellThatNothingBegan(erased, current_world::get());
    }
    if (world == nullptr) return;
    const bool prepared = guarded(world->reports, operation, [&] {
        const auto erasure = std::make_shared<Erasure>(world->services, world->reports.developmentLog());
        world->afterwards = [erasure] { erasure->begin(); };
    });
    if (prepared) {
        guarded(world->reports, operation, [&] { world->end(std::chrono::milliseconds(0)); });
        return;
    }
    for (const auto& one : current_world::endErasure(world)) tellThatNothingBegan(one, world);
}

}  // namespace orbinel
