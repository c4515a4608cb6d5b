#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/reports.hpp"
#include "events/validation.hpp"
#include "orbinel/content_variable_type.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/platform/defaults.hpp"
#include "orbinel/platform/json.hpp"
#include "personalisation/content_cache.hpp"
#include "session/collaborators.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"
#include "tools/test_devices.hpp"

namespace orbinel {

/// The values that a vendor may vary, read by name with a default of the application's.
///
/// There are two stores: the cache, which outlives the process, and the variables that the current session start
/// delivered, which are part of the session's record. Every read notes, once a session, which campaign and variant the
/// person was shown; on a test device it also registers the variable, so that the vendor's panel learns of it.
///
/// Reads ask the gate; while it is closed they return the default and do nothing else. An empty result of a string
/// read stands for an absent default. A value that has no reading of the type asked for counts as not delivered.
///
/// Threads: any.
class OrbinelContentOptimizer final : public SessionContents {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        const Validation& validation;
        const platform::Json& json;
        platform::Defaults& defaults;
        const TestDevices& testDevices;
    };

    explicit OrbinelContentOptimizer(const Needs& needs);

    /// Opens the cache ahead of its first use; does not wait.
    void openCache() { cache_.open(); }

    // --- Reads of the cache. ---

    [[nodiscard]] std::optional<std::string> getStringWithName(OptionalText name, OptionalText defaultString,
                                                               OrbinelVariableType dataType) noexcept;
    [[nodiscard]] bool getBoolWithName(OptionalText name, bool defaultBool, OrbinelVariableType dataType) noexcept;
    [[nodiscard]] std::int32_t getIntWithName(OptionalText name, std::int32_t defaultInt,
                                              OrbinelVariableType dataType) noexcept;

    // --- Reads of what this session start delivered. ---

    [[nodiscard]] std::optional<std::string> getStringFromSessionVariablesWithName(
        OptionalText name, OptionalText defaultString, OrbinelVariableType dataType) noexcept;
    [[nodiscard]] bool getBoolFromSessionVariablesWithName(OptionalText name, bool defaultBool,
                                                           OrbinelVariableType dataType) noexcept;
    [[nodiscard]] std::int32_t getIntFromSessionVariablesWithName(OptionalText name, std::int32_t defaultInt,
                                                                  OrbinelVariableType dataType) noexcept;

    // --- Deliveries: arrays of {"variable_name", "new_value"}. An entry without a name is passed over. A campaign of
    // the number 0 is a test. ---

    void insertContentCampaigns(const Value& variables, const Value& contentId,
                                const Value& variantId) noexcept override;
    void insertNonCachedContentCampaigns(const Value& variables, const Value& contentId,
                                         const Value& variantId) noexcept override;
    void removeContentsFromCache(const Value& passiveVariables) noexcept override;

    /// Forgets what test campaigns left in the cache.
    void removeTestVariables() noexcept;

    /// The name of a type in wizard feeds; "Unknown" for a number that is none.
    [[nodiscard]] static std::string_view getContentOptimizerDataTypeAsString(OrbinelVariableType dataType) noexcept;

private:
    template <typename Rules, typename Find>
    [[nodiscard]] typename Rules::Result readOrDefault(const char* operation, typename Rules::Default fallback,
                                                       Find&& find) noexcept;
    [[nodiscard]] Value takeFromSession(std::string_view name);
    template <typename Rules>
    [[nodiscard]] typename Rules::Result readCached(const char* operation, OptionalText name,
                                                    typename Rules::Default fallback,
                                                    OrbinelVariableType dataType) noexcept;
    template <typename Rules>
    [[nodiscard]] typename Rules::Result readOfSession(const char* operation, OptionalText name,
                                                       typename Rules::Default fallback,
                                                       OrbinelVariableType dataType) noexcept;
    template <typename Rules>
    void feedRead(std::string_view method, std::string_view name, typename Rules::Default fallback,
                  OrbinelVariableType dataType) noexcept;
    template <typename Rules>
    void addAsNewContentVariable(std::string_view name, typename Rules::Default fallback,
                                 OrbinelVariableType dataType) noexcept;
    template <typename Rules>
    void registerVariable(std::string_view name, typename Rules::Default fallback, OrbinelVariableType dataType);

    [[nodiscard]] std::shared_ptr<const ContentRecord> getContentFromCache(std::string_view name);
    void addContentOptimizerLog(const ContentRecord& record, std::string_view name);

    template <typename Store>
    void forEachVariable(const Value& variables, const Value& contentId, const Value& variantId, Store&& store);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    const Validation& validation_;
    const platform::Json& json_;
    const TestDevices& testDevices_;
    ContentCache cache_;
};

}  // namespace orbinel
