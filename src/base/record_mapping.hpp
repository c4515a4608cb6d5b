#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "orbinel/value.hpp"

/// The mapping between record types and dictionaries.
///
/// A record type describes its fields once, at compile time:
///
///     struct Summary { std::string inappId; std::int32_t timestamp = 0; };
///     template <> struct orbinel::RecordFields<Summary> {
///         static constexpr auto fields = std::tuple{recordField("inapp_id", &Summary::inappId),
///                                                   recordField("timestamp", &Summary::timestamp)};
///     };
///
/// `toDictionary` writes the fields under their keys in the order of the description, leaving out what is absent;
/// `fromDictionary` reads them back, keeping a field's initial value where the key is missing or holds another kind.
/// A key mapper renames every key, a value transformer changes how one field travels.
namespace orbinel {

/// To be specialised for every record type; see above.
template <typename Record>
struct RecordFields;

template <typename Record>
concept MappedRecord = requires {
    RecordFields<Record>::fields;
};

/// How a field's content travels. To be specialised for further types, or replaced for one field.
struct PlainTransformer;

template <typename Record, typename Member, typename Transformer = PlainTransformer>
struct RecordField {
    using TransformerType = Transformer;
    std::string_view key;
    Member Record::*member;
};

template <typename Transformer = PlainTransformer, typename Record, typename Member>
constexpr RecordField<Record, Member, Transformer> recordField(std::string_view key, Member Record::*member) {
    return {key, member};
}

/// Leaves every key as it is described.
struct SameKeys {
    std::string_view operator()(std::string_view key) const noexcept { return key; }
};

template <MappedRecord Record, typename KeyMapper = SameKeys>
[[nodiscard]] Dictionary toDictionary(Record record, const KeyMapper& mapKey = {});

template <MappedRecord Record, typename KeyMapper = SameKeys>
[[nodiscard]] Record fromDictionary(const Dictionary& dictionary, const KeyMapper& mapKey = {});

struct PlainTransformer {
    template <typename Content>
    static Value toValue(Content content) {
        if constexpr (MappedRecord<Content>) {
            return toDictionary(std::move(content));
        } else {
            return Value(std::move(content));
        }
    }
    template <typename Element>
    static Value toValue(std::vector<Element> elements) requires(!std::is_same_v<Element, Value>) {
        Array array;
        array.reserve(elements.size());
        for (auto& element : elements) array.push_back(toValue(std::move(element)));
        return array;
    }

    /// Nothing where the value is of another kind than the content.
    template <typename Content>
    static std::optional<Content> fromValue(const Value& value) {
        if constexpr (MappedRecord<Content>) {
            if (const auto* dictionary = value.ifDictionary()) return fromDictionary<Content>(*dictionary);
        } else if constexpr (std::is_same_v<Content, Value>) {
            return value;
        } else if constexpr (std::is_same_v<Content, bool>) {
            if (const auto* boolean = value.ifBoolean()) return *boolean;
        } else if constexpr (std::is_same_v<Content, double>) {
            return value.number();
        } else if constexpr (std::integral<Content>) {
            const auto integer = value.integer();
            if (integer && std::in_range<Content>(*integer)) return static_cast<Content>(*integer);
        } else if constexpr (std::is_same_v<Content, std::string>) {
            if (const auto* text = value.ifString()) return *text;
        } else if constexpr (std::is_same_v<Content, Dictionary>) {
            if (const auto* dictionary = value.ifDictionary()) return *dictionary;
        } else if constexpr (std::is_same_v<Content, Array>) {
            if (const auto* array = value.ifArray()) return *array;
        } else {
            return fromOptional(value, static_cast<Content*>(nullptr));
        }
        return std::nullopt;
    }

private:
    template <typename Inner>
    static std::optional<std::optional<Inner>> fromOptional(const Value& value, std::optional<Inner>*) {
        if (auto inner = fromValue<Inner>(value)) return std::optional<Inner>(std::move(*inner));
        return std::nullopt;
    }
    template <typename Element>
    static std::optional<std::vector<Element>> fromOptional(const Value& value, std::vector<Element>*) {
        const auto* array = value.ifArray();
        if (array == nullptr) return std::nullopt;
        std::vector<Element> elements;
        for (const auto& element : *array) {
            if (auto read = fromValue<Element>(element)) elements.push_back(std::move(*read));
        }
        return elements;
    }
};

template <MappedRecord Record, typename KeyMapper>
Dictionary toDictionary(Record record, const KeyMapper& mapKey) {
    Dictionary dictionary;
    std::apply(
        [&](const auto&... field) {
            dictionary.reserve(sizeof...(field));
            const auto write = [&](const auto& one) {
                using Transformer = typename std::remove_cvref_t<decltype(one)>::TransformerType;
                auto value = Transformer::toValue(std::move(record.*one.member));
                if (!value.isAbsent()) dictionary.set(mapKey(one.key), std::move(value));
            };
            (write(field), ...);
        },
        RecordFields<Record>::fields);
    return dictionary;
}

template <MappedRecord Record, typename KeyMapper>
Record fromDictionary(const Dictionary& dictionary, const KeyMapper& mapKey) {
    Record record;
    std::apply(
        [&](const auto&... field) {
            const auto read = [&](const auto& one) {
                using Transformer = typename std::remove_cvref_t<decltype(one)>::TransformerType;
                using Member = std::remove_cvref_t<decltype(record.*one.member)>;
                const auto* value = dictionary.find(mapKey(one.key));
                if (value == nullptr) return;
                if (auto content = Transformer::template fromValue<Member>(*value)) {
                    record.*one.member = std::move(*content);
                }
            };
            (read(field), ...);
        },
        RecordFields<Record>::fields);
    return record;
}

}  // namespace orbinel
