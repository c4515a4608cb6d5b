#pragma once

#include <string>
#include <vector>

#include "orbinel/c_interface.hpp"

namespace orbinel::hosts {

/// The options that a program of another language gives, as an object. Each is taken out by whoever knows it, so that
/// what nobody knows is left over; one that is not there leaves its target as it is. Throws `WrongArgument`.
class COptions {
public:
    /// `argument`: its name in the function. A null text stands for none.
    COptions(const platform::Json& json, const char* text, const char* argument = "options")
        : options_(c_interface::readDictionary(json, argument, text)) {}

    template <typename Target>
    void text(const char* name, Target& target) {
        take(name, "a text", [&](const Value& value) { return assign(value.ifString(), target); });
    }
    template <typename Target>
    void boolean(const char* name, Target& target) {
        take(name, "true or false", [&](const Value& value) { return assign(value.ifBoolean(), target); });
    }
    template <typename Target>
    void dictionary(const char* name, Target& target) {
        take(name, "an object", [&](const Value& value) { return assign(value.ifDictionary(), target); });
    }
    void number(const char* name, double& target) {
        take(name, "a number", [&](const Value& value) {
            const auto number = value.number();
            return assign(number ? &*number : nullptr, target);
        });
    }
    void texts(const char* name, std::vector<std::string>& target) {
        take(name, "an array of texts", [&](const Value& value) {
            const auto* array = value.ifArray();
            if (array == nullptr) return false;
            for (const auto& element : *array) {
                if (element.ifString() == nullptr) return false;
                target.push_back(*element.ifString());
            }
            return true;
        });
    }

    void expectNoOthers() const {
        if (options_.empty()) return;
        throw c_interface::WrongArgument("there is no option \"" + options_.begin()->first + "\".");
    }

private:
    template <typename Content, typename Target>
    static bool assign(const Content* content, Target& target) {
        if (content != nullptr) target = *content;
        return content != nullptr;
    }

    template <typename Use>
    void take(const char* name, const char* wanted, Use&& use) {
        const auto* value = options_.find(name);
        if (value == nullptr) return;
        if (!use(*value))
            throw c_interface::WrongArgument("the option " + std::string(name) + " must be " + wanted + ".");
        options_.erase(name);
    }

    Dictionary options_;
};

}  // namespace orbinel::hosts
