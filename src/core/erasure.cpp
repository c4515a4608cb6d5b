#include "core/erasure.hpp"

#include <chrono>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/current_world.hpp"
#include "core/world.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

class Erasure : public std::enable_shared_from_this<Erasure> {
public:
    Erasure(platform::Services services, bool developmentLog)
        : services_(std::move(services)), developmentLog_(developmentLog) {}

    void begin() {
        services_.scheduler->postGlobal([self = shared_from_this()] { self->run(); });
    }

private:
    struct Part {
        std::shared_ptr<platform::DefaultsStore> store;
        std::vector<std::string> keys;
    };

    void run() noexcept {
        try {
            gatherParts();
            eraseSecureItem();
            if (!services_.device->renewVendorIdentifier()) note("The vendor identifier could not be erased.");
            eraseNextPart();
        } catch (const std::exception& exception) {
            note(exception.what());
            end();
        } catch (...) {
            note("Something was thrown.");
            end();
        }
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
        part.store->erase(std::move(part.keys), [self = shared_from_this()](std::string problem) {
            self->note(problem);
            self->eraseNextPart();
        });
    }

    void end() {
        services_.scheduler->postMain([self = shared_from_this()] { self->finish(); });
    }

    void note(std::string_view problem) {
        if (problem.empty()) return;
        if (!problems_.empty()) problems_ += ' ';
        problems_ += problem;
    }

    void finish() noexcept {
        std::shared_ptr<World> world;
        try {
            if (current_world::continuesAfterErasure()) world = World::create(services_);
        } catch (const std::exception& exception) {
            services_.console->writeLine(exception.what());
        }
        if (world != nullptr) report(world->reports);
        const auto problem = problems_.empty() ? std::nullopt : std::optional(problems_);
        for (const auto& erased : current_world::endErasure(world)) {
            try {
                erased(problem);
            } catch (...) {
                if (world != nullptr) world->reports.note("A completion of the erasure has thrown.");
            }
        }
    }

    void report(Reports& reports) const {
        reports.setDevelopmentLog(developmentLog_);
        if (problems_.empty()) return reports.note("Erased everything that was stored.");
        reports.log(LogType::common, LogLevel::error, "Stored data could not be erased.", [&] {
            return Dictionary{{"problem", problems_}};
        });
    }

    const platform::Services services_;
    const bool developmentLog_;
    // Of one step at a time, each of which begins the next.
    std::vector<Part> parts_;
    std::size_t nextPart_ = 0;
    std::string problems_;
};

}  // namespace

void replaceByErasedWorld(World& world) {
    world.afterwards = [erasure = std::make_shared<Erasure>(world.services, world.reports.developmentLog())] {
        erasure->begin();
    };
    world.end(std::chrono::milliseconds(0));
}

}  // namespace orbinel
