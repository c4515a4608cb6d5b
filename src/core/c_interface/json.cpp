#include "core/c_interface/json.hpp"

#include <string>
#include <utility>

#include "base/visit.hpp"
#include "core/current_world.hpp"
#include "core/world.hpp"
#include "orbinel/c_interface.hpp"

namespace orbinel::c_interface {

std::shared_ptr<const platform::Json> jsonService() {
    const Visit<World> world(current_world::entrance());
    if (!world) throw WrongArgument("the library is not started, and so cannot read or write JSON.");
    return world->services.json;
}

Array arrayOf(const char* argument, const char* text) {
    if (text == nullptr) return {};
    auto value = readValue(*jsonService(), argument, text);
    if (auto* array = value.ifArray()) return std::move(*array);
    throw WrongArgument(std::string(argument) + " must be a JSON array.");
}

Dictionary dictionaryOf(const char* argument, const char* text) {
    return text != nullptr ? readDictionary(*jsonService(), argument, text) : Dictionary();
}

std::optional<Dictionary> optionalDictionaryOf(const char* argument, const char* text) {
    return text != nullptr ? std::optional(dictionaryOf(argument, text)) : std::nullopt;
}

char* jsonOf(const Value& value) { return newJson(*jsonService(), value); }

}  // namespace orbinel::c_interface
