#include "orbinel/headless/headless_defaults.hpp"

#include <map>
#include <utility>

#include "base/mutex.hpp"
#include "hosts/headless/headless_defaults_store.hpp"

namespace orbinel::headless {

struct HeadlessDefaults::Stores {
    enum class Family { application, appGroup };
    using Name = std::pair<Family, std::optional<std::string>>;  // the standard store has no name

    explicit Stores(std::shared_ptr<platform::Json> j) : json(std::move(j)) {}

    [[nodiscard]] std::shared_ptr<platform::DefaultsStore> open(Family family, std::optional<std::string> name) {
        const MutexLock lock(mutex);
        auto& store = byName[{family, std::move(name)}];
        if (!store) store = std::make_shared<HeadlessDefaultsStore>(json);
        return store;
    }

    const std::shared_ptr<platform::Json> json;
    Mutex mutex;
    std::map<Name, std::shared_ptr<HeadlessDefaultsStore>> byName ORBINEL_GUARDED_BY(mutex);
};

HeadlessDefaults::HeadlessDefaults(std::shared_ptr<platform::Json> json)
    : stores_(std::make_unique<Stores>(std::move(json))) {}

HeadlessDefaults::~HeadlessDefaults() = default;

void HeadlessDefaults::dropUnsynchronised() {
    const MutexLock lock(stores_->mutex);
    for (const auto& [name, store] : stores_->byName) store->dropUnsynchronised();
}

std::shared_ptr<platform::DefaultsStore> HeadlessDefaults::standard() noexcept {
    return stores_->open(Stores::Family::application, std::nullopt);
}

std::shared_ptr<platform::DefaultsStore> HeadlessDefaults::suite(std::string_view name) noexcept {
    return stores_->open(Stores::Family::application, std::string(name));
}

std::shared_ptr<platform::DefaultsStore> HeadlessDefaults::appGroup(std::string_view name) noexcept {
    return stores_->open(Stores::Family::appGroup, std::string(name));
}

void HeadlessDefaults::setProblemHandler(std::function<void(std::string)>) noexcept {}

}  // namespace orbinel::headless
