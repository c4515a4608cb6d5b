#include "user/user_attributes.hpp"

#include <utility>

#include "base/guard.hpp"
#include "events/data_types.hpp"
#include "session/stored_keys.hpp"
#include "user/attribute_codes.hpp"

namespace orbinel {

namespace {

constexpr bool shouldFeed = true;

Array namesOf(const Dictionary& attributes) {
    Array names;
    names.reserve(attributes.size());
    for (const auto& [name, value] : attributes) names.emplace_back(name);
    return names;
}

}  // namespace

OrbinelUserInternal::OrbinelUserInternal(const Needs& needs)
    : reports_(needs.reports), helper_(needs.helper), validation_(needs.validation), device_(needs.device) {}

// --- The collections as a whole ---

void OrbinelUserInternal::resetUser() noexcept {
    guarded(reports_, "-[OrbinelUserInternal resetUser]", [&] { (void)takeAndResetUser(); });
}

TakenAttributes OrbinelUserInternal::takeAndResetUser() {
    Collections taken;
    {
        const MutexLock lock(mutex_);
        std::swap(taken, collections_);
    }
    return {std::move(taken.user), std::move(taken.custom), namesOf(taken.removed)};
}

TakenAttributes OrbinelUserInternal::attributesNow() const {
    const MutexLock lock(mutex_);
    return {collections_.user, collections_.custom, namesOf(collections_.removed)};
}

Dictionary OrbinelUserInternal::getUserAttributes() const noexcept {
    return guarded(reports_, "-[OrbinelUserInternal getUserAttributes]", Dictionary(), [&] {
        const MutexLock lock(mutex_);
        return collections_.user;
    });
}

Dictionary OrbinelUserInternal::getCustomAttributes() const noexcept {
    return guarded(reports_, "-[OrbinelUserInternal getCustomAttributes]", Dictionary(), [&] {
        const MutexLock lock(mutex_);
        return collections_.custom;
    });
}

Array OrbinelUserInternal::getRemovedAttributes() const noexcept {
    return guarded(reports_, "-[OrbinelUserInternal getRemovedAttributes]", Array(), [&] {
        const MutexLock lock(mutex_);
        return namesOf(collections_.removed);
    });
}

/// An absent value is ignored, and so is a name that is none.
void OrbinelUserInternal::store(Collection collection, std::string_view name, Value value, std::string_view type) {
    if (!validation_.isNameValid(name)) return;
    if (value.isAbsent()) {
        return reports_.note(
            [&] { return "Left the attribute " + std::string(name) + " as it was: no value was given."; });
    }
    std::optional<Value> fed;
    if (reports_.feedsAreTaken(shouldFeed)) fed = value;
    {
        const MutexLock lock(mutex_);
        (collections_.*collection).set(name, std::move(value));
    }
    if (!fed) return;
    reports_.feedToPanel(collection == &Collections::user ? "setUserAttribute" : "setCustomAttribute", [&] {
        return Dictionary{{"name", name}, {"value", std::move(*fed)}, {"type", type}};
    });
}

Value OrbinelUserInternal::textOf(const std::optional<Date>& date) const {
    return date ? Value(helper_.getRFCFromNSDate(*date)) : Value();
}

// --- Standard attributes ---

void OrbinelUserInternal::setUserAttributeWithString(std::string_view name, OptionalText value) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setUserAttributeWithString:value:]",
            [&] { store(&Collections::user, name, value.copy(), kDataTypeStringKey); });
}

void OrbinelUserInternal::setUserAttributeWithInt(std::string_view name, std::int32_t value) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setUserAttributeWithInt:value:]",
            [&] { store(&Collections::user, name, value, kDataTypeNumberKey); });
}

void OrbinelUserInternal::setUserAttributeWithBoolean(std::string_view name, bool value) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setUserAttributeWithBoolean:value:]",
            [&] { store(&Collections::user, name, value, kDataTypeBooleanKey); });
}

void OrbinelUserInternal::setUserAttributeWithDate(std::string_view name, const std::optional<Date>& value) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setUserAttributeWithDate:value:]",
            [&] { store(&Collections::user, name, textOf(value), kDataTypeDateKey); });
}

void OrbinelUserInternal::setLoginStatus(bool loggedIn) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setLoginStatus:]",
            [&] { store(&Collections::user, attribute_codes::LOGIN_STATUS, loggedIn, kDataTypeBooleanKey); });
}

// --- Custom attributes ---

void OrbinelUserInternal::setCustomAttributeWithString(std::string_view name, OptionalText value) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setCustomAttributeWithString:value:]", [&] {
        store(&Collections::custom, name, value.view().empty() ? Value() : Value(value.view()), kDataTypeStringKey);
    });
}

void OrbinelUserInternal::setCustomAttributeWithInt(std::string_view name, std::int32_t value) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setCustomAttributeWithInt:value:]",
            [&] { store(&Collections::custom, name, value, kDataTypeNumberKey); });
}

void OrbinelUserInternal::setCustomAttributeWithDouble(std::string_view name, double value) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setCustomAttributeWithDouble:value:]",
            [&] { store(&Collections::custom, name, value, kDataTypeNumberKey); });
}

void OrbinelUserInternal::setCustomAttributeWithBoolean(std::string_view name, bool value) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setCustomAttributeWithBoolean:value:]",
            [&] { store(&Collections::custom, name, value, kDataTypeBooleanKey); });
}

void OrbinelUserInternal::setCustomAttributeWithDate(std::string_view name, const std::optional<Date>& value) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setCustomAttributeWithDate:value:]",
            [&] { store(&Collections::custom, name, textOf(value), kDataTypeDateKey); });
}

void OrbinelUserInternal::setCustomAttributeWithArray(std::string_view name, const Array& value) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setCustomAttributeWithArray:value:]",
            [&] { store(&Collections::custom, name, makeArrayValid(value), kDataTypeArrayKey); });
}

void OrbinelUserInternal::setCustomAttributes(const Dictionary& attributes) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setCustomAttributes:]", [&] {
        for (const auto& [name, value] : attributes) {
            if (validation_.isNameValid(std::string_view(name))) setDetected(name, value);
        }
    });
}

void OrbinelUserInternal::setDetected(std::string_view name, const Value& value) {
    const auto type = getDataTypeOfObject(value);
    if (type == kDataTypeStringKey) return setCustomAttributeWithString(name, *value.ifString());
    if (type == kDataTypeIntKey) return setCustomAttributeWithInt(name, *value.ifInt32());
    if (type == kDataTypeDoubleKey) return setCustomAttributeWithDouble(name, *value.number());
    if (type == kDataTypeBooleanKey) return setCustomAttributeWithBoolean(name, *value.ifBoolean());
    if (type == kDataTypeDateKey) return setCustomAttributeWithDate(name, *value.ifDate());
    if (type == kDataTypeArrayKey) return setCustomAttributeWithArray(name, *value.ifArray());
    reports_.note([&] { return "Skipped the attribute " + std::string(name) + ": its type cannot be stored."; });
}

void OrbinelUserInternal::unsetCustomAttribute(std::string_view name) noexcept {
    guarded(reports_, "-[OrbinelUserInternal unsetCustomAttribute:]", [&] {
        if (!validation_.isNameValid(name)) return;
        {
            const MutexLock lock(mutex_);
            collections_.custom.erase(name);
            collections_.removed.set(name, Null{});
        }
        reports_.feedToPanel("unsetCustomAttribute", [&] { return Dictionary{{"value", name}}; });
    });
}

// --- Opt-ins ---

void OrbinelUserInternal::setPushEnabled(bool enabled) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setPushEnabled:]",
            [&] { setOptIn(keys::pushEnabled, "setPushOptIn", device_.isPushEnabledInSettings(), enabled); });
}

void OrbinelUserInternal::setLocationEnabled(bool enabled) noexcept {
    guarded(reports_, "-[OrbinelUserInternal setLocationEnabled:]", [&] {
        setOptIn(keys::locationEnabled, "setLocationOptIn", device_.isLocationEnabledInSettings(), enabled);
    });
}

void OrbinelUserInternal::setOptIn(std::string_view key, std::string_view methodType, bool allowed, bool enabled) {
    if (!allowed) return reports_.note("Ignored an opt-in: the device itself withholds the permission.");
    helper_.standardStore().set(key, enabled);
    helper_.standardStore().synchronize();
    reports_.feedToPanel(methodType, [&] { return Dictionary{{"value", enabled}}; });
}

}  // namespace orbinel
