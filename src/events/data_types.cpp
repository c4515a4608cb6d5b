#include "events/data_types.hpp"

#include <algorithm>

namespace orbinel {

std::string_view getDataTypeOfObject(const Value& value) noexcept {
    using Kind = Value::Kind;
    switch (value.kind()) {
        case Kind::boolean:
            return kDataTypeBooleanKey;
        case Kind::string:
            return kDataTypeStringKey;
        case Kind::int32:
            return kDataTypeIntKey;
        case Kind::int64:
        case Kind::real:
            return kDataTypeDoubleKey;
        case Kind::date:
            return kDataTypeDateKey;
        case Kind::array:
            return kDataTypeArrayKey;
        case Kind::absent:
        case Kind::null:
        case Kind::dictionary:
            break;
    }
    return kDataTypeUnknown;
}

Array makeArrayValid(const Array& array) {
    Array texts;
    std::copy_if(array.begin(), array.end(), std::back_inserter(texts),
                 [](const Value& value) { return value.ifString() != nullptr; });
    return texts;
}

std::string_view removeCustomPrefix(std::string_view text) noexcept {
    return text.starts_with("c_") ? text.substr(2) : text;
}

const std::string& validateString(const Value& value) noexcept { return value.stringOrEmpty(); }

bool isValidJSONObject(const Value& value) noexcept {
    if (const auto* dictionary = value.ifDictionary()) return isValidJSONObject(*dictionary);
    const auto* array = value.ifArray();
    return array != nullptr && std::all_of(array->begin(), array->end(), isValidJSONValue);
}

bool isValidJSONObject(const Dictionary& dictionary) noexcept {
    return std::all_of(dictionary.begin(), dictionary.end(),
                       [](const Dictionary::Entry& entry) { return isValidJSONValue(entry.second); });
}

bool isValidJSONValue(const Value& value) noexcept { return !value.isAbsent() && value.kind() != Value::Kind::date; }

}  // namespace orbinel
