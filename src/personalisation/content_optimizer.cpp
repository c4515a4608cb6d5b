#include "personalisation/content_optimizer.hpp"

#include <exception>
#include <utility>

#include "base/guard.hpp"
#include "base/number_reading.hpp"
#include "personalisation/content_value.hpp"

namespace orbinel {

namespace {

constexpr std::string_view addAsNew = "addAsNewContentVariable";  // the wizard's name for registrations and logs

// What tells the three types of reads apart. `classCode` travels as "data_class".

struct TextRules {
    using Default = OptionalText;
    using Content = std::string;
    using Result = std::optional<std::string>;
    static constexpr std::int32_t classCode = 0;
    static constexpr std::string_view cached = "getStringWithName";
    static constexpr std::string_view ofSession = "getStringFromSessionVariablesWithName";
    static Value fed(Default text) { return text.copy(); }
    static std::string described(Default text) { return std::string(text.view()); }
    static Result result(Default text) { return text.copy(); }
    static std::optional<Content> read(const Value& value, const platform::Json& json) {
        return content_value::textValue(value, json);
    }
};

struct IntRules {
    using Default = std::int32_t;
    using Content = std::int32_t;
    using Result = std::int32_t;
    static constexpr std::int32_t classCode = 1;
    static constexpr std::string_view cached = "getIntWithName";
    static constexpr std::string_view ofSession = "getIntFromSessionVariablesWithName";
    static Value fed(Default number) { return number; }
    static std::string described(Default number) { return std::to_string(number); }
    static Result result(Default number) { return number; }
    static std::optional<Content> read(const Value& value, const platform::Json&) { return intValue(value); }
};

struct BoolRules {
    using Default = bool;
    using Content = bool;
    using Result = bool;
    static constexpr std::int32_t classCode = 2;
    static constexpr std::string_view cached = "getBoolWithName";
    static constexpr std::string_view ofSession = "getBoolFromSessionVariablesWithName";
    static Value fed(Default yes) { return described(yes); }
    static std::string described(Default yes) { return yes ? "1" : "0"; }
    static Result result(Default yes) { return yes; }
    static std::optional<Content> read(const Value& value, const platform::Json&) { return boolValue(value); }
};

Dictionary logOf(std::int32_t contentId, std::int32_t variantId) {
    return {{"content_id", contentId}, {"variant_id", variantId}};
}

/// True where the log was not there yet.
bool addLog(SessionRecord& session, std::string_view name, std::int32_t contentId, std::int32_t variantId) {
    if (session.content_logs.contains(name)) return false;
    session.content_logs.set(name, logOf(contentId, variantId));
    return true;
}

}  // namespace

OrbinelContentOptimizer::OrbinelContentOptimizer(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      validation_(needs.validation),
      json_(needs.json),
      testDevices_(needs.testDevices),
      cache_(needs.defaults, needs.json) {}

// --- Reads ---

std::optional<std::string> OrbinelContentOptimizer::getStringWithName(OptionalText name, OptionalText defaultString,
                                                                      OrbinelVariableType dataType) noexcept {
    return readCached<TextRules>("+[OrbinelContentOptimizer getStringWithName:defaultString:dataType:]", name,
                                 defaultString, dataType);
}

bool OrbinelContentOptimizer::getBoolWithName(OptionalText name, bool defaultBool,
                                              OrbinelVariableType dataType) noexcept {
    return readCached<BoolRules>("+[OrbinelContentOptimizer getBoolWithName:defaultBool:dataType:]", name, defaultBool,
                                 dataType);
}

std::int32_t OrbinelContentOptimizer::getIntWithName(OptionalText name, std::int32_t defaultInt,
                                                     OrbinelVariableType dataType) noexcept {
    return readCached<IntRules>("+[OrbinelContentOptimizer getIntWithName:defaultInt:dataType:]", name, defaultInt,
                                dataType);
}

std::optional<std::string> OrbinelContentOptimizer::getStringFromSessionVariablesWithName(
    OptionalText name, OptionalText defaultString, OrbinelVariableType dataType) noexcept {
    return readOfSession<TextRules>(
        "+[OrbinelContentOptimizer getStringFromSessionVariablesWithName:defaultString:dataType:]", name, defaultString,
        dataType);
}

bool OrbinelContentOptimizer::getBoolFromSessionVariablesWithName(OptionalText name, bool defaultBool,
                                                                  OrbinelVariableType dataType) noexcept {
    return readOfSession<BoolRules>(
        "+[OrbinelContentOptimizer getBoolFromSessionVariablesWithName:defaultBool:dataType:]", name, defaultBool,
        dataType);
}

std::int32_t OrbinelContentOptimizer::getIntFromSessionVariablesWithName(OptionalText name, std::int32_t defaultInt,
                                                                         OrbinelVariableType dataType) noexcept {
    return readOfSession<IntRules>("+[OrbinelContentOptimizer getIntFromSessionVariablesWithName:defaultInt:dataType:]",
                                   name, defaultInt, dataType);
}

/// A value that was found stays the result whatever fails after it; nothing found is the default.
template <typename Rules, typename Find>
typename Rules::Result OrbinelContentOptimizer::readOrDefault(const char* operation, typename Rules::Default fallback,
                                                              Find&& find) noexcept {
    using Found = std::optional<typename Rules::Content>;
    auto found = guarded(reports_, operation, Found(), [&] { return helper_.shouldProceed() ? find() : Found(); });
    return guarded(reports_, operation, typename Rules::Result(),
                   [&] { return found ? typename Rules::Result(std::move(*found)) : Rules::result(fallback); });
}

template <typename Rules>
typename Rules::Result OrbinelContentOptimizer::readCached(const char* operation, OptionalText name,
                                                           typename Rules::Default fallback,
                                                           OrbinelVariableType dataType) noexcept {
    return readOrDefault<Rules>(operation, fallback, [&] {
        feedRead<Rules>(Rules::cached, name.view(), fallback, dataType);
        addAsNewContentVariable<Rules>(name.view(), fallback, dataType);
        const auto record = getContentFromCache(name.view());
        return record != nullptr ? Rules::read(record->newValue, json_) : std::nullopt;
    });
}

// Unlike a cached read, this one registers the variable after it has looked it up.
template <typename Rules>
typename Rules::Result OrbinelContentOptimizer::readOfSession(const char* operation, OptionalText name,
                                                              typename Rules::Default fallback,
                                                              OrbinelVariableType dataType) noexcept {
    return readOrDefault<Rules>(operation, fallback, [&] {
        feedRead<Rules>(Rules::ofSession, name.view(), fallback, dataType);
        const auto newValue = takeFromSession(name.view());
        addAsNewContentVariable<Rules>(name.view(), fallback, dataType);
        return Rules::read(newValue, json_);
    });
}

/// What this session's start delivered, absent where it was nothing; logged once.
Value OrbinelContentOptimizer::takeFromSession(std::string_view name) {
    Value newValue;
    std::int32_t contentId = 0;
    std::int32_t variantId = 0;
    const bool logged = session_.update([&](SessionRecord& session) {
        const auto* record = session.session_content_variables[name].ifDictionary();
        if (record == nullptr) return false;
        newValue = (*record)["new_value"];
        contentId = intValue((*record)["content_id"]).value_or(0);
        variantId = intValue((*record)["variant_id"]).value_or(0);
        return addLog(session, name, contentId, variantId);
    });
    if (logged) reports_.feed(addAsNew, [&] { return logOf(contentId, variantId); });
    return newValue;
}

template <typename Rules>
void OrbinelContentOptimizer::feedRead(std::string_view method, std::string_view name, typename Rules::Default fallback,
                                       OrbinelVariableType dataType) noexcept {
    reports_.feedToPanel(method, [&] {
        Dictionary read{{"variableName", name}};
        if (auto value = Rules::fed(fallback); !value.isAbsent()) read.set("defaultValue", std::move(value));
        read.set("type", getContentOptimizerDataTypeAsString(dataType));
        return read;
    });
}

std::shared_ptr<const ContentRecord> OrbinelContentOptimizer::getContentFromCache(std::string_view name) {
    auto record = cache_.find(name);
    reports_.feed("getContentFromCache", [&] { return record != nullptr ? record->stored : Dictionary(); });
    if (record != nullptr) addContentOptimizerLog(*record, name);
    return record;
}

/// Most reads come after the first of their session, and need no look into its record.
void OrbinelContentOptimizer::addContentOptimizerLog(const ContentRecord& record, std::string_view name) {
    if (record.loggedIn.load(std::memory_order_relaxed) == session_.recordNumber()) return;
    const bool added = session_.update([&](SessionRecord& session) {
        record.loggedIn.store(session_.recordNumber(), std::memory_order_relaxed);
        return addLog(session, name, record.contentId, record.variantId);
    });
    if (added) reports_.feed(addAsNew, [&] { return logOf(record.contentId, record.variantId); });
}

// --- Registration ---

/// A failure with a name that no variable can have is not worth a report.
template <typename Rules>
void OrbinelContentOptimizer::addAsNewContentVariable(std::string_view name, typename Rules::Default fallback,
                                                      OrbinelVariableType dataType) noexcept {
    const GuardedOperation operation("+[OrbinelContentOptimizer addAsNewContentVariable:defaultValue:type:dataType:]");
    try {
        registerVariable<Rules>(name, fallback, dataType);
    } catch (const std::exception& exception) {
        if (validation_.isNameValid(name)) reportException(reports_, operation, exception.what());
    } catch (...) {
        if (validation_.isNameValid(name)) reportException(reports_, operation, "unknown exception");
    }
}

template <typename Rules>
void OrbinelContentOptimizer::registerVariable(std::string_view name, typename Rules::Default fallback,
                                               OrbinelVariableType dataType) {
    if (!testDevices_.isTestDevice()) {
        return reports_.feed(addAsNew, [] {
            return Dictionary{{"warning", "This device should be added as a test device via email."}};
        });
    }
    const Dictionary variable{{"default_value", Rules::described(fallback)},
                              {"variable_name", name},
                              {"data_type", static_cast<std::int32_t>(dataType)},
                              {"data_class", Rules::classCode}};
    const bool added = session_.update([&](SessionRecord& session) {
        if (session.content_variables.contains(name)) return false;
        session.content_variables.set(name, variable);
        return true;
    });
    reports_.feed(addAsNew, [&] {
        return added ? variable : Dictionary{{"warning", "This content is already exsist."}};
    });
}

std::string_view OrbinelContentOptimizer::getContentOptimizerDataTypeAsString(OrbinelVariableType dataType) noexcept {
    switch (dataType) {
        case OrbinelVariableTypeContent:
            return "OrbinelVariableTypeContent";
        case OrbinelVariableTypeElement:
            return "OrbinelVariableTypeElement";
    }
    return "Unknown";
}

// --- Deliveries ---

/// Calls `store` with the name and the record of every variable; before it, a test's variable is listed as such.
template <typename Store>
void OrbinelContentOptimizer::forEachVariable(const Value& variables, const Value& contentId, const Value& variantId,
                                              Store&& store) {
    const auto* entries = variables.ifArray();
    if (entries == nullptr) return;
    for (const auto& entry : *entries) {
        const auto* variable = entry.ifDictionary();
        const auto* name = variable != nullptr ? (*variable)["variable_name"].ifString() : nullptr;
        if (name == nullptr || !ContentCache::canHold(*name)) {
            reports_.note("Passed over a content variable without a name of its own.");
            continue;
        }
        if (contentId == Value(0)) cache_.addTestVariable(*name);
        Dictionary record{{"content_id", contentId},
                          {"variant_id", variantId},
                          {"variable_name", *name},
                          {"new_value", (*variable)["new_value"]}};
        record.eraseIf([](const Dictionary::Entry& field) { return field.second.isAbsent(); });
        store(*name, std::move(record));
    }
}

void OrbinelContentOptimizer::insertContentCampaigns(const Value& variables, const Value& contentId,
                                                     const Value& variantId) noexcept {
    guarded(reports_, "+[OrbinelContentOptimizer insertContentCampaigns:contentID:variantID:]", [&] {
        forEachVariable(variables, contentId, variantId,
                        [&](const std::string& name, Dictionary record) { cache_.insert(name, std::move(record)); });
    });
}

void OrbinelContentOptimizer::insertNonCachedContentCampaigns(const Value& variables, const Value& contentId,
                                                              const Value& variantId) noexcept {
    guarded(reports_, "+[OrbinelContentOptimizer insertNonCachedContentCampaigns:contentID:variantID:]", [&] {
        forEachVariable(variables, contentId, variantId, [&](const std::string& name, Dictionary record) {
            session_.update(
                [&](SessionRecord& session) { session.session_content_variables.set(name, std::move(record)); });
        });
    });
}

void OrbinelContentOptimizer::removeContentsFromCache(const Value& passiveVariables) noexcept {
    guarded(reports_, "+[OrbinelContentOptimizer removeContentsFromCache:]", [&] {
        if (const auto* names = passiveVariables.ifArray()) cache_.remove(*names);
    });
}

void OrbinelContentOptimizer::removeTestVariables() noexcept {
    guarded(reports_, "+[OrbinelContentOptimizer removeTestVariables]", [&] { cache_.removeTestVariables(); });
}

}  // namespace orbinel
