#include "apps/orbinel/play/operations.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "apps/orbinel/play/fields.hpp"
#include "orbinel/orbinel.hpp"

namespace orbinel::tool {

namespace {

using Kind = ArgumentKind;

/// The arguments of one call, of which each is known to be of its kind.
class Given {
public:
    explicit Given(std::span<const CallArgument> arguments) : arguments_(arguments) {}

    [[nodiscard]] const Value& value(std::size_t i) const { return std::get<Value>(arguments_[i]); }
    [[nodiscard]] OptionalText text(std::size_t i) const {
        const auto* text = value(i).ifString();
        return text != nullptr ? OptionalText(*text) : OptionalText(nullptr);
    }
    [[nodiscard]] std::optional<Dictionary> anyDictionary(std::size_t i) const {
        const auto* dictionary = value(i).ifDictionary();
        return dictionary != nullptr ? std::optional(*dictionary) : std::nullopt;
    }
    [[nodiscard]] std::optional<Date> date(std::size_t i) const {
        const auto* date = value(i).ifDate();
        return date != nullptr ? std::optional(*date) : std::nullopt;
    }
    [[nodiscard]] const std::string& callback(std::size_t i) const {
        return std::get<CallbackName>(arguments_[i]).name;
    }
    [[nodiscard]] std::weak_ptr<Target> target(std::size_t i) const {
        const auto* target = std::get_if<std::shared_ptr<Target>>(&arguments_[i]);
        return target != nullptr ? *target : nullptr;
    }

private:
    std::span<const CallArgument> arguments_;
};

Thing nothing() { return {}; }

/// Traces each call of a callback that takes one argument.
template <typename Content>
auto traced(Trace& trace, std::string name) {
    return [&trace, name = std::move(name)](Target&, const Content& content) {
        trace.write({{"callback", name}, {"args", Array{Value(content)}}});
    };
}

constexpr std::array<Kind, 0> noArguments{};
constexpr std::array text{Kind::text};
constexpr std::array anything{Kind::any};
constexpr std::array boolean{Kind::boolean};
constexpr std::array twoTexts{Kind::text, Kind::text};
constexpr std::array threeArguments{Kind::anyDictionary, Kind::text, Kind::text};
constexpr std::array fourArguments{Kind::anyDictionary, Kind::text, Kind::text, Kind::text};
constexpr std::array nameAndOptions{Kind::text, Kind::anyDictionary};
constexpr std::array callbackAndTarget{Kind::callback, Kind::target};
constexpr std::array keyAndInt{Kind::text, Kind::int32};
constexpr std::array keyAndNumber{Kind::text, Kind::number};
constexpr std::array keyAndBoolean{Kind::text, Kind::boolean};
constexpr std::array keyAndDate{Kind::text, Kind::date};
constexpr std::array keyAndArray{Kind::text, Kind::array};
constexpr std::array dictionary{Kind::dictionary};

using Arguments = std::span<const CallArgument>;

const std::array facadeOperations{
    Operation{"initWithLaunchOptions:partnerName:appGroup:", ThingKind::nothing, threeArguments, ThingKind::nothing,
              [](Arguments all, OrbinelEvent*, Trace&) {
                  const Given given(all);
                  Orbinel::initWithLaunchOptions(given.anyDictionary(0), given.text(1), given.text(2));
                  return nothing();
              }},
    Operation{"initWithLaunchOptions:partnerName:appGroup:customEndpoint:", ThingKind::nothing, fourArguments,
              ThingKind::nothing,
              [](Arguments all, OrbinelEvent*, Trace&) {
                  const Given given(all);
                  Orbinel::initWithLaunchOptions(given.anyDictionary(0), given.text(1), given.text(2), given.text(3));
                  return nothing();
              }},
    Operation{"initSDK:launchOptions:", ThingKind::nothing, nameAndOptions, ThingKind::nothing,
              [](Arguments all, OrbinelEvent*, Trace&) {
                  Orbinel::initSDK(Given(all).text(0), Given(all).anyDictionary(1));
                  return nothing();
              }},
    Operation{"reinitWithPartnerName:", ThingKind::nothing, text, ThingKind::nothing,
              [](Arguments all, OrbinelEvent*, Trace&) {
                  Orbinel::reinitWithPartnerName(Given(all).text(0));
                  return nothing();
              }},
    Operation{"partnerNameIsValid:", ThingKind::nothing, anything, ThingKind::boolean,
              [](Arguments all, OrbinelEvent*, Trace&) {
                  return Thing(Value(Orbinel::partnerNameIsValid(Given(all).value(0))));
              }},
    Operation{"disableAutoIntegration", ThingKind::nothing, noArguments, ThingKind::nothing,
              [](Arguments, OrbinelEvent*, Trace&) {
                  Orbinel::disableAutoIntegration();
                  return nothing();
              }},
    Operation{"setHybridSDKVersion:", ThingKind::nothing, text, ThingKind::nothing,
              [](Arguments all, OrbinelEvent*, Trace&) {
                  Orbinel::setHybridSDKVersion(Given(all).text(0));
                  return nothing();
              }},
    Operation{"hybridApplicationDidBecomeActive", ThingKind::nothing, noArguments, ThingKind::nothing,
              [](Arguments, OrbinelEvent*, Trace&) {
                  Orbinel::hybridApplicationDidBecomeActive();
                  return nothing();
              }},
    Operation{"tagEvent:", ThingKind::nothing, text, ThingKind::event,
              [](Arguments all, OrbinelEvent*, Trace&) {
                  return Thing(std::make_shared<OrbinelEvent>(Orbinel::tagEvent(Given(all).text(0))));
              }},
    Operation{"signUpConfirmation", ThingKind::nothing, noArguments, ThingKind::nothing,
              [](Arguments, OrbinelEvent*, Trace&) {
                  Orbinel::signUpConfirmation();
                  return nothing();
              }},
    Operation{"getOrbinelID", ThingKind::nothing, noArguments, ThingKind::text,
              [](Arguments, OrbinelEvent*, Trace&) { return Thing(Value(Orbinel::getOrbinelID())); }},
    Operation{"registerOrbinelIDListenerWithSelector:sender:", ThingKind::nothing, callbackAndTarget,
              ThingKind::nothing,
              [](Arguments all, OrbinelEvent*, Trace& trace) {
                  const Given given(all);
                  Orbinel::registerOrbinelIDListenerWithSelector(traced<std::string>(trace, given.callback(0)),
                                                                 given.target(1));
                  return nothing();
              }},
    Operation{"registerOrbinelCallbackWithSelector:sender:", ThingKind::nothing, callbackAndTarget, ThingKind::nothing,
              [](Arguments all, OrbinelEvent*, Trace& trace) {
                  const Given given(all);
                  Orbinel::registerOrbinelCallbackWithSelector(traced<Dictionary>(trace, given.callback(0)),
                                                               given.target(1));
                  return nothing();
              }},
    Operation{"sendError:desc:", ThingKind::nothing, twoTexts, ThingKind::nothing,
              [](Arguments all, OrbinelEvent*, Trace&) {
                  Orbinel::sendError(Given(all).text(0), Given(all).text(1));
                  return nothing();
              }},
    Operation{"getSDKVersion", ThingKind::nothing, noArguments, ThingKind::text,
              [](Arguments, OrbinelEvent*, Trace&) { return Thing(Value(Orbinel::getSDKVersion())); }},
    Operation{"setDevelopmentLog:", ThingKind::nothing, boolean, ThingKind::nothing,
              [](Arguments all, OrbinelEvent*, Trace&) {
                  Orbinel::setDevelopmentLog(Given(all).value(0).truth());
                  return nothing();
              }},
    Operation{"new:Target", ThingKind::nothing, noArguments, ThingKind::target,
              [](Arguments, OrbinelEvent*, Trace&) { return Thing(std::make_shared<Target>()); }},
};

// Those that add a parameter give the event itself, which the caller knows: their result is its receiver.
const std::array eventOperations{
    Operation{"addParameterWithString", ThingKind::event, twoTexts, ThingKind::event,
              [](Arguments all, OrbinelEvent* event, Trace&) {
                  event->addParameterWithString(Given(all).text(0), Given(all).text(1));
                  return nothing();
              }},
    Operation{"addParameterWithInt", ThingKind::event, keyAndInt, ThingKind::event,
              [](Arguments all, OrbinelEvent* event, Trace&) {
                  event->addParameterWithInt(Given(all).text(0), *Given(all).value(1).ifInt32());
                  return nothing();
              }},
    Operation{"addParameterWithDouble", ThingKind::event, keyAndNumber, ThingKind::event,
              [](Arguments all, OrbinelEvent* event, Trace&) {
                  event->addParameterWithDouble(Given(all).text(0), Given(all).value(1).number().value_or(0));
                  return nothing();
              }},
    Operation{"addParameterWithBoolean", ThingKind::event, keyAndBoolean, ThingKind::event,
              [](Arguments all, OrbinelEvent* event, Trace&) {
                  event->addParameterWithBoolean(Given(all).text(0), Given(all).value(1).truth());
                  return nothing();
              }},
    Operation{"addParameterWithDate", ThingKind::event, keyAndDate, ThingKind::event,
              [](Arguments all, OrbinelEvent* event, Trace&) {
                  event->addParameterWithDate(Given(all).text(0), Given(all).date(1));
                  return nothing();
              }},
    Operation{"addParameterWithArray", ThingKind::event, keyAndArray, ThingKind::event,
              [](Arguments all, OrbinelEvent* event, Trace&) {
                  event->addParameterWithArray(Given(all).text(0), *Given(all).value(1).ifArray());
                  return nothing();
              }},
    Operation{"addParameters", ThingKind::event, dictionary, ThingKind::event,
              [](Arguments all, OrbinelEvent* event, Trace&) {
                  event->addParameters(*Given(all).value(0).ifDictionary());
                  return nothing();
              }},
    Operation{"build", ThingKind::event, noArguments, ThingKind::nothing,
              [](Arguments, OrbinelEvent* event, Trace&) {
                  event->build();
                  return nothing();
              }},
    Operation{"getName", ThingKind::event, noArguments, ThingKind::text,
              [](Arguments, OrbinelEvent* event, Trace&) { return Thing(Value(event->getName())); }},
    Operation{"getParameters", ThingKind::event, noArguments, ThingKind::dictionary,
              [](Arguments, OrbinelEvent* event, Trace&) { return Thing(Value(event->getParameters())); }},
};

std::string_view inWords(ThingKind kind) {
    switch (kind) {
        case ThingKind::nothing:
            return "nothing";
        case ThingKind::text:
            return "a text";
        case ThingKind::boolean:
            return "a boolean";
        case ThingKind::dictionary:
            return "a dictionary";
        case ThingKind::event:
            return "an event";
        case ThingKind::target:
            return "a target";
    }
    return "a thing";
}

struct KindRule {
    Kind kind;
    std::string_view inWords;
    bool (*takes)(const Value& value);
    bool (*takesKept)(ThingKind kept);
};

bool isDictionary(const Value& value) { return value.ifDictionary() != nullptr; }
bool never(const Value&) { return false; }
bool neverKept(ThingKind) { return false; }
bool isKeptDictionary(ThingKind kept) { return kept == ThingKind::dictionary; }

const std::array kindRules{
    KindRule{Kind::text, "a text or null", [](const Value& v) { return v.isAbsent() || v.ifString() != nullptr; },
             [](ThingKind kept) { return kept == ThingKind::text; }},
    KindRule{Kind::int32, "a whole number of 32 bits", [](const Value& v) { return v.ifInt32() != nullptr; },
             neverKept},
    KindRule{Kind::number, "a number", [](const Value& v) { return v.isNumber(); }, neverKept},
    KindRule{Kind::boolean, "true or false", [](const Value& v) { return v.ifBoolean() != nullptr; },
             [](ThingKind kept) { return kept == ThingKind::boolean; }},
    KindRule{Kind::date, "a {\"$date\"} or null", [](const Value& v) { return v.isAbsent() || v.ifDate() != nullptr; },
             neverKept},
    KindRule{Kind::array, "a list", [](const Value& v) { return v.ifArray() != nullptr; }, neverKept},
    KindRule{Kind::dictionary, "an object", isDictionary, isKeptDictionary},
    KindRule{Kind::anyDictionary, "an object or null", [](const Value& v) { return v.isAbsent() || isDictionary(v); },
             isKeptDictionary},
    KindRule{
        Kind::any, "a value", [](const Value&) { return true; },
        [](ThingKind kept) { return kept == ThingKind::text || kept == ThingKind::boolean || isKeptDictionary(kept); }},
    KindRule{Kind::callback, "a {\"$callback\"}", never, neverKept},
    KindRule{Kind::target, "a {\"$ref\"} to a target or null", [](const Value& v) { return v.isAbsent(); },
             [](ThingKind kept) { return kept == ThingKind::target; }},
};

}  // namespace

const Operation& findOperation(std::string_view name, ThingKind receiver) {
    const std::span<const Operation> candidates =
        receiver == ThingKind::nothing ? std::span<const Operation>(facadeOperations)
        : receiver == ThingKind::event ? std::span<const Operation>(eventOperations)
                                       : std::span<const Operation>();
    const auto found = std::find_if(candidates.begin(), candidates.end(),
                                    [&](const Operation& operation) { return operation.name == name; });
    if (found != candidates.end()) return *found;
    const auto owner = receiver == ThingKind::nothing ? std::string() : " of " + std::string(inWords(receiver));
    throw Unusable("there is no operation " + inQuotes(name) + owner);
}

void checkArgument(const Argument& argument, ThingKind kept, ArgumentKind wanted, std::string_view what) {
    const auto& rule =
        *std::find_if(kindRules.begin(), kindRules.end(), [&](const KindRule& one) { return one.kind == wanted; });
    const auto refuse = [&](std::string_view given) {
        throw Unusable(std::string(what) + " must be " + std::string(rule.inWords) + ", not " + std::string(given));
    };
    if (const auto* value = std::get_if<Value>(&argument)) {
        if (!rule.takes(*value)) refuse(kindInWords(*value));
    } else if (std::holds_alternative<Reference>(argument)) {
        if (!rule.takesKept(kept)) refuse(inWords(kept));
    } else if (wanted != Kind::callback) {
        refuse("a callback");
    }
}

}  // namespace orbinel::tool
