#include "apps/orbinel/play/expectation.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <utility>

#include "apps/orbinel/play/fields.hpp"
#include "apps/orbinel/play/traceable.hpp"

namespace orbinel::tool {

namespace {

constexpr std::array<std::string_view, 17> kinds{"step",        "request",
                                                 "response",    "callback",
                                                 "console",     "state",
                                                 "expectation", "view",
                                                 "page",        "script",
                                                 "opened",      "permission_request",
                                                 "pasteboard",  "registered_for_push",
                                                 "haptic",      "review_prompt",
                                                 "host_called"};

/// Entries of these kinds are one object; those of all others have their content beside the kind.
bool startsInside(std::string_view kind) { return kind == "request" || kind == "response"; }

std::string unescaped(std::string_view part) {
    std::string text;
    for (std::size_t i = 0; i < part.size(); ++i) {
        if (part[i] != '~') {
            text += part[i];
            continue;
        }
        const char escape = i + 1 < part.size() ? part[++i] : '\0';
        if (escape != '0' && escape != '1') throw Unusable("\"~\" of a pointer must be followed by 0 or 1");
        text += escape == '0' ? '~' : '/';
    }
    return text;
}

std::vector<std::string> pathOf(std::string_view pointer) {
    std::vector<std::string> path;
    if (pointer.empty()) return path;
    if (pointer.front() != '/') throw Unusable("the pointer " + inQuotes(pointer) + " must begin with \"/\"");
    std::size_t begin = 1;
    for (;;) {
        const auto end = std::min(pointer.find('/', begin), pointer.size());
        path.push_back(unescaped(pointer.substr(begin, end - begin)));
        if (end == pointer.size()) return path;
        begin = end + 1;
    }
}

const Value* elementAt(const Array& array, std::string_view part) {
    std::size_t index = 0;
    const auto* end = part.data() + part.size();
    const auto read = std::from_chars(part.data(), end, index);
    const bool isIndex = read.ec == std::errc() && read.ptr == end && (part.size() == 1 || part.front() != '0');
    return isIndex && index < array.size() ? &array[index] : nullptr;
}

const Value* resolve(const Value* value, const std::vector<std::string>& path) {
    for (const auto& part : path) {
        if (value == nullptr) return nullptr;
        if (const auto* dictionary = value->ifDictionary()) {
            value = dictionary->find(part);
        } else if (const auto* array = value->ifArray()) {
            value = elementAt(*array, part);
        } else {
            return nullptr;
        }
    }
    return value;
}

bool isMet(const Condition& condition, const Value& root) {
    const auto* found = resolve(&root, condition.path);
    if (std::holds_alternative<Condition::Absent>(condition.wanted)) return found == nullptr;
    if (found == nullptr) return false;
    if (const auto* contains = std::get_if<Condition::Contains>(&condition.wanted)) {
        const auto* text = found->ifString();
        return text != nullptr && text->find(contains->text) != std::string::npos;
    }
    return *found == std::get<Value>(condition.wanted);
}

Condition readCondition(const Dictionary::Entry& entry, ArgumentReader& arguments) {
    const auto& [pointer, json] = entry;
    auto path = pathOf(pointer);
    const auto* matcher = json.ifDictionary();
    if (matcher != nullptr && matcher->size() == 1) {
        const auto& [name, content] = *matcher->begin();
        if (name == "contains") return {std::move(path), Condition::Contains{requireText(content, "\"contains\"")}};
        if (name == "absent") {
            if (!requireBoolean(content, "\"absent\"")) throw Unusable("\"absent\" can only be true");
            return {std::move(path), Condition::Absent{}};
        }
    }
    // Compared in the form that the trace has.
    return {std::move(path), traceable(arguments.element(json))};
}

EntryPattern readPattern(Fields& fields, ArgumentReader& arguments) {
    EntryPattern pattern;
    pattern.kind = requireText(fields.require("in"), "\"in\"");
    if (std::find(kinds.begin(), kinds.end(), pattern.kind) == kinds.end()) {
        throw Unusable("the trace has no entries of the kind " + inQuotes(pattern.kind));
    }
    if (const auto* where = fields.find("where")) {
        for (const auto& entry : requireDictionary(*where, "\"where\"")) {
            pattern.where.push_back(readCondition(entry, arguments));
        }
    }
    return pattern;
}

std::size_t readCount(const Value& value, std::string_view what) {
    return static_cast<std::size_t>(requireWholeNumber(value, what, 0, 1'000'000'000));
}

void readBounds(const Value& count, Expectation& expectation) {
    if (count.ifDictionary() == nullptr) {
        expectation.least = readCount(count, "\"count\"");
        expectation.most = expectation.least;
        return;
    }
    Fields bounds(count, "\"count\"");
    const auto* least = bounds.find("min");
    const auto* most = bounds.find("max");
    bounds.expectNoOthers();
    if (least == nullptr && most == nullptr) throw Unusable("\"count\" has neither \"min\" nor \"max\"");
    expectation.least = least != nullptr ? readCount(*least, "\"min\"") : 0;
    if (most != nullptr) expectation.most = readCount(*most, "\"max\"");
    if (expectation.most && *expectation.most < expectation.least) throw Unusable("\"max\" is below \"min\"");
}

}  // namespace

bool EntryPattern::matches(const Value& entry) const {
    const auto* dictionary = entry.ifDictionary();
    if (dictionary == nullptr || !dictionary->contains(kind)) return false;
    const auto& root = startsInside(kind) ? (*dictionary)[kind] : entry;
    return std::all_of(where.begin(), where.end(), [&](const Condition& condition) { return isMet(condition, root); });
}

EntryPattern readPattern(const Value& json, ArgumentReader& arguments) {
    Fields fields(json, "\"wait_for\"");
    auto pattern = readPattern(fields, arguments);
    fields.expectNoOthers();
    return pattern;
}

Expectation readExpectation(const Value& json, ArgumentReader& arguments) {
    Fields fields(json, "\"expect\"");
    Expectation expectation;
    expectation.pattern = readPattern(fields, arguments);
    if (const auto* count = fields.find("count")) readBounds(*count, expectation);
    fields.expectNoOthers();
    return expectation;
}

std::string inWords(const Expectation& expectation) {
    const auto least = std::to_string(expectation.least);
    const std::string count = !expectation.most ? "at least " + least
                              : *expectation.most == expectation.least
                                  ? least
                                  : least + " to " + std::to_string(*expectation.most);
    return count + " of the kind " + inQuotes(expectation.pattern.kind);
}

}  // namespace orbinel::tool
