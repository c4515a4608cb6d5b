#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "events/validation.hpp"
#include "orbinel/optional_text.hpp"
#include "session/collaborators.hpp"
#include "session/helper.hpp"
#include "user/device_attributes.hpp"

namespace orbinel {

/// The one store of what the application says of its user: standard attributes, custom attributes, and the names of
/// custom attributes that it has removed. They gather until a session stop takes them out.
///
/// Names are lower-case ASCII letters, digits and underscores, beginning with a letter; what has another name is
/// ignored. A later value replaces an earlier one. Threads: any.
class OrbinelUserInternal final : public SessionAttributes {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        const Validation& validation;
        const OrbinelDeviceAttributes& device;
    };

    explicit OrbinelUserInternal(const Needs& needs);

    /// Empties all three collections.
    void initUser() noexcept { resetUser(); }
    void resetUser() noexcept;
    [[nodiscard]] TakenAttributes takeAndResetUser() override;
    [[nodiscard]] TakenAttributes attributesNow() const override;

    // Copies of the collections as they are now.
    [[nodiscard]] Dictionary getUserAttributes() const noexcept;
    [[nodiscard]] Dictionary getCustomAttributes() const noexcept;
    [[nodiscard]] Array getRemovedAttributes() const noexcept;

    // --- Standard attributes, by their codes. ---

    void setUserAttributeWithString(std::string_view name, OptionalText value) noexcept;
    void setUserAttributeWithInt(std::string_view name, std::int32_t value) noexcept;
    void setUserAttributeWithBoolean(std::string_view name, bool value) noexcept;
    void setUserAttributeWithDate(std::string_view name, const std::optional<Date>& value) noexcept;
    void setLoginStatus(bool loggedIn) noexcept;

    // --- Custom attributes. ---

    /// The empty text is ignored.
    void setCustomAttributeWithString(std::string_view name, OptionalText value) noexcept;
    void setCustomAttributeWithInt(std::string_view name, std::int32_t value) noexcept;
    void setCustomAttributeWithDouble(std::string_view name, double value) noexcept;
    void setCustomAttributeWithBoolean(std::string_view name, bool value) noexcept;
    void setCustomAttributeWithDate(std::string_view name, const std::optional<Date>& value) noexcept;
    /// The texts among the elements.
    void setCustomAttributeWithArray(std::string_view name, const Array& value) noexcept;

    /// Every entry by its own type, without the ranges of the single setters; other types are skipped.
    void setCustomAttributes(const Dictionary& attributes) noexcept;

    /// Removes an attribute and lists its name as removed, once. Set again in the same session, the attribute is both
    /// present and listed: the backend expects it so.
    void unsetCustomAttribute(std::string_view name) noexcept;

    // --- Opt-ins, kept across launches. Ignored while the device itself withholds the permission. ---

    void setPushEnabled(bool enabled) noexcept;
    void setLocationEnabled(bool enabled) noexcept;

private:
    struct Collections {
        Dictionary user;
        Dictionary custom;
        Dictionary removed;  // names only, in the order of their removal: the values say nothing
    };
    using Collection = Dictionary Collections::*;

    void store(Collection collection, std::string_view name, Value value, std::string_view type);
    void setDetected(std::string_view name, const Value& value);
    void setOptIn(std::string_view key, std::string_view methodType, bool allowed, bool enabled);
    [[nodiscard]] Value textOf(const std::optional<Date>& date) const;

    Reports& reports_;
    OrbinelHelper& helper_;
    const Validation& validation_;
    const OrbinelDeviceAttributes& device_;

    mutable Mutex mutex_;
    Collections collections_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
