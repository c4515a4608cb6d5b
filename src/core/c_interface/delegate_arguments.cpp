#include "core/c_interface/delegate_arguments.hpp"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

#include "base/hexadecimal.hpp"
#include "base/special_objects.hpp"
#include "orbinel/c_interface.hpp"

namespace orbinel::c_interface {

namespace {

namespace operations = platform::delegate_operations;
using Arguments = platform::DelegateArguments;

/// Takes entries out, so that what the operation does not carry is left over.
class Entries {
public:
    explicit Entries(Dictionary described) : described_(std::move(described)) {}

    template <typename Target>
    void text(const char* key, Target& target) {
        take(key, "a text", [&](Value& value) {
            if (value.ifString() != nullptr) target = *value.ifString();
            return value.ifString() != nullptr;
        });
    }
    void number(const char* key, std::int64_t& target) {
        take(key, "a whole number", [&](Value& value) {
            if (value.ifInt32() != nullptr) target = *value.ifInt32();
            if (value.ifInt64() != nullptr) target = *value.ifInt64();
            return value.ifInt32() != nullptr || value.ifInt64() != nullptr;
        });
    }
    void dictionary(const char* key, Dictionary& target) {
        take(key, "an object", [&](Value& value) {
            auto* dictionary = value.ifDictionary();
            if (dictionary != nullptr) target = std::move(*dictionary);
            return dictionary != nullptr;
        });
    }
    void bytes(const char* key, std::vector<std::uint8_t>& target) {
        take(key, "a text of hexadecimal digits, two a byte", [&](Value& value) {
            try {
                const auto read = specialValue("$bytes", value);
                const auto& content = read->stringOrEmpty();
                target.assign(content.begin(), content.end());
                return true;
            } catch (const WrongSpecialObject&) {
                return false;
            }
        });
    }

    void expectNoOthers() const {
        if (described_.empty()) return;
        throw WrongArgument("the operation has no argument \"" + described_.begin()->first + "\".");
    }

private:
    template <typename Use>
    void take(const char* key, const char* wanted, Use&& use) {
        auto* value = described_.find(key);
        if (value == nullptr) return;
        if (!use(*value)) throw WrongArgument("the argument " + std::string(key) + " must be " + wanted + ".");
        described_.erase(key);
    }

    Dictionary described_;
};

// --- What operations carry ---

Dictionary describeToken(const Arguments& it) { return {{"device_token", lowerCaseHex(it.deviceToken)}}; }
void readToken(Entries& entries, Arguments& it) { entries.bytes("device_token", it.deviceToken); }

Dictionary describeFailure(const Arguments& it) {
    return {{"code", it.failure.code}, {"description", it.failure.description}};
}
void readFailure(Entries& entries, Arguments& it) {
    entries.number("code", it.failure.code);
    entries.text("description", it.failure.description);
}

Dictionary describePush(const Arguments& it) { return {{"user_info", it.userInfo}}; }
void readPush(Entries& entries, Arguments& it) { entries.dictionary("user_info", it.userInfo); }

Dictionary describeUrl(const Arguments& it) { return {{"url", it.url}}; }
void readUrl(Entries& entries, Arguments& it) { entries.text("url", it.url); }

Dictionary describeUrlAndOptions(const Arguments& it) { return {{"url", it.url}, {"options", it.options}}; }
void readUrlAndOptions(Entries& entries, Arguments& it) {
    readUrl(entries, it);
    entries.dictionary("options", it.options);
}

Dictionary describeUrlAndSource(const Arguments& it) {
    auto described = describeUrl(it);
    if (it.sourceApplication) described.set("source_application", *it.sourceApplication);
    return described;
}
void readUrlAndSource(Entries& entries, Arguments& it) {
    readUrl(entries, it);
    entries.text("source_application", it.sourceApplication);
}

Dictionary describeActivity(const Arguments& it) {
    Dictionary described{{"type", it.activity.type}};
    if (it.activity.webpageUrl) described.set("webpage_url", *it.activity.webpageUrl);
    return described;
}
void readActivity(Entries& entries, Arguments& it) {
    entries.text("type", it.activity.type);
    entries.text("webpage_url", it.activity.webpageUrl);
}

struct Carried {
    std::string_view operation;
    Dictionary (*describe)(const Arguments& arguments);
    void (*read)(Entries& entries, Arguments& arguments);
};

constexpr Carried table[] = {
    {operations::didRegisterForRemoteNotifications, &describeToken, &readToken},
    {operations::didFailToRegisterForRemoteNotifications, &describeFailure, &readFailure},
    {operations::didReceiveRemoteNotificationFetching, &describePush, &readPush},
    {operations::didReceiveRemoteNotification, &describePush, &readPush},
    {operations::openUrlWithOptions, &describeUrlAndOptions, &readUrlAndOptions},
    {operations::handleOpenUrl, &describeUrl, &readUrl},
    {operations::openUrlWithSourceApplication, &describeUrlAndSource, &readUrlAndSource},
    {operations::continueUserActivity, &describeActivity, &readActivity},
    {operations::didReceiveNotificationResponse, &describePush, &readPush},
    {operations::willPresentNotification, &describePush, &readPush},
};
static_assert(std::size(table) == operations::onApplication.size());

const Carried* find(std::string_view operation) noexcept {
    const auto* found = std::find_if(std::begin(table), std::end(table),
                                     [&](const Carried& one) { return one.operation == operation; });
    return found != std::end(table) ? found : nullptr;
}

}  // namespace

std::string_view knownOperation(const char* name) {
    const std::string wanted = name != nullptr ? name : "";
    const auto* found = find(wanted);
    if (found == nullptr) throw WrongArgument("there is no operation \"" + wanted + "\".");
    return found->operation;
}

Dictionary describedArguments(std::string_view operation, const platform::DelegateArguments& arguments) {
    return find(operation)->describe(arguments);
}

platform::DelegateArguments readArguments(std::string_view operation, Dictionary described) {
    Entries entries(std::move(described));
    platform::DelegateArguments arguments;
    find(operation)->read(entries, arguments);
    entries.expectNoOthers();
    return arguments;
}

}  // namespace orbinel::c_interface
