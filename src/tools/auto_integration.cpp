#include "tools/auto_integration.hpp"

#include "base/guard.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

constexpr std::string_view yes = "1";

}  // namespace

void AutoIntegration::startAutoIntegration(bool start) noexcept {
    guarded(reports_, "-[OrbinelHelper startAutoIntegration:]", [&] {
        auto& store = helper_.standardStore();
        const Value wanted = start ? Value(yes) : Value();
        if (store.value(keys::autoIntegration) == wanted) return;
        store.set(keys::autoIntegration, wanted);
        store.synchronize();
    });
}

bool AutoIntegration::isAutoIntegrationEnabled() const noexcept {
    return guarded(reports_, "-[OrbinelHelper isAutoIntegrationEnabled]", false,
                   [&] { return helper_.standardStore().value(keys::autoIntegration).stringOrEmpty() == yes; });
}

}  // namespace orbinel
