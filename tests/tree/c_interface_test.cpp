#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

// The C interface has what the C++ headers have, and nothing else: neither can gain an operation without the other.

namespace {

namespace fs = std::filesystem;
const fs::path published = fs::path(ORBINEL_SOURCE_DIR) / "include" / "orbinel";

const std::map<std::string, std::string> prefixes{{"Orbinel", "orbinel_"},
                                                  {"OrbinelEvent", "orbinel_event_"},
                                                  {"OrbinelUser", "orbinel_user_"},
                                                  {"OrbinelProduct", "orbinel_product_"},
                                                  {"OrbinelIdentifiers", "orbinel_identifiers_"},
                                                  {"Delegate", "orbinel_delegate_"},
                                                  {"DelegateClass", "orbinel_delegate_"},
                                                  {"CompletionHandler", "orbinel_completion_handler_"}};

// Values are JSON in C.
const std::set<std::string> classesWithoutC{"Dictionary", "Value"};

// Of the platform's headers, what applications use of them; the others are for ports.
const fs::path delegates = published / "platform" / "delegate.hpp";

const std::set<std::string> operationsWithoutC{
    // A delegate in C is one object with a class of its own, which nobody but the library changes afterwards.
    "orbinel_delegate_exchange_implementations",
    "orbinel_delegate_implementation",
    "orbinel_delegate_implements",
    "orbinel_delegate_name",
    "orbinel_delegate_remove_operation",
    "orbinel_delegate_responds_to",
    "orbinel_delegate_type",
    "orbinel_start",             // takes services; each host has its own, such as orbinel_start_linux
    "orbinel_is_within_depth",   // of values
    "orbinel_product_internal",  // for the library's own use
};

// What classes do by themselves, and what C needs beside the operations.
const std::set<std::string> functionsOfCAlone{"orbinel_last_error",
                                              "orbinel_free",
                                              "orbinel_sender_create",
                                              "orbinel_sender_free",
                                              "orbinel_event_create",
                                              "orbinel_event_copy",
                                              "orbinel_event_free",
                                              "orbinel_user_copy",
                                              "orbinel_user_free",
                                              "orbinel_product_copy",
                                              "orbinel_product_free",
                                              "orbinel_identifiers_create",
                                              "orbinel_identifiers_copy",
                                              "orbinel_identifiers_free",
                                              "orbinel_delegate_create",
                                              "orbinel_delegate_free",
                                              "orbinel_completion_handler_call",
                                              "orbinel_completion_handler_copy",
                                              "orbinel_completion_handler_free",
                                              "orbinel_set_application_delegate",
                                              "orbinel_set_notification_delegate"};

std::string withoutComments(const fs::path& path) {
    std::ifstream file(path);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return std::regex_replace(text, std::regex(R"(//[^\n]*|/\*[^*]*\*+([^/*][^*]*\*+)*/|^#[^\n]*)"), "");
}

/// In lower case with "_" between the words; an abbreviation is one word, also in the plural ("productIDs").
std::string inSnakeCase(const std::string& name) {
    auto words = std::regex_replace(name, std::regex("IDs\\b"), "Ids");
    words = std::regex_replace(words, std::regex("([a-z0-9])([A-Z])"), "$1_$2");
    words = std::regex_replace(words, std::regex("([A-Z])([A-Z][a-z])"), "$1_$2");
    std::transform(words.begin(), words.end(), words.begin(), [](unsigned char c) { return std::tolower(c); });
    return words;
}

/// Where the bracket at the position is closed.
std::size_t closing(const std::string& text, std::size_t open) {
    int depth = 0;
    for (auto at = open; at < text.size(); ++at) {
        if (text[at] == '(' || text[at] == '{') ++depth;
        if ((text[at] == ')' || text[at] == '}') && --depth == 0) return at;
    }
    return text.size();
}

/// Declarations, each without the body that it may have.
std::vector<std::string> declarations(const std::string& text) {
    std::vector<std::string> found(1);
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '{') at = closing(text, at);
        if (text[at] == ';' || text[at] == '}') {
            found.emplace_back();
        } else {
            found.back() += text[at];
        }
    }
    return found;
}

/// The names of the arguments in a list of parameters.
std::vector<std::string> namesOf(std::string parameters) {
    static const std::regex inBrackets(R"(<[^<>]*>|\([^()]*\))");
    while (std::regex_search(parameters, inBrackets)) parameters = std::regex_replace(parameters, inBrackets, "");
    static const std::regex name(R"((\w+)\s*(,|$))");
    std::vector<std::string> names;
    for (std::sregex_iterator it(parameters.begin(), parameters.end(), name), end; it != end; ++it) {
        names.push_back((*it)[1]);
    }
    return names;
}

/// The functions that operations of one name make: one for each list of arguments, without those of other types only.
void addFunctions(std::set<std::string>& functions, const std::string& prefix, const std::string& name,
                  std::vector<std::vector<std::string>> lists) {
    std::sort(lists.begin(), lists.end(), [](const auto& a, const auto& b) { return a.size() < b.size(); });
    for (const auto& list : lists) {
        auto function = prefix + inSnakeCase(name);
        for (auto i = lists.front().size(); i < list.size(); ++i) function += "_" + inSnakeCase(list[i]);
        functions.insert(function);
    }
}

/// The functions that the operations among the declarations make. Those on a temporary are the same as the others.
void addOperations(std::set<std::string>& functions, const std::string& prefix, const std::string& text) {
    static const std::regex operation(R"((~?\w+)\s*\()");
    std::map<std::string, std::vector<std::vector<std::string>>> found;
    for (const auto& declaration : declarations(text)) {
        std::smatch match;
        if (declaration.find("operator") != std::string::npos || declaration.find("= delete") != std::string::npos ||
            !std::regex_search(declaration, match, operation)) {
            continue;
        }
        const auto open = static_cast<std::size_t>(match.position(0) + match.length(0)) - 1;
        const auto close = closing(declaration, open);
        const std::string name = match[1];
        if (prefixes.count(name) != 0 || name[0] == '~' || declaration.find("&&", close) != std::string::npos) continue;
        found[name].push_back(namesOf(declaration.substr(open + 1, close - open - 1)));
    }
    for (const auto& [name, lists] : found) addFunctions(functions, prefix, name, lists);
}

/// Takes each class that the library shows out of the text, and adds the functions of its operations.
std::string takeClasses(std::string text, std::set<std::string>& functions) {
    static const std::regex shown(R"((?:class|struct) ORBINEL_API (\w+)[^;{]*\{)");
    for (std::smatch match; std::regex_search(text, match, shown);) {
        const std::string name = match[1];
        const auto begin = static_cast<std::size_t>(match.position(0));
        const auto open = begin + static_cast<std::size_t>(match.length(0)) - 1;
        const auto body = text.substr(open + 1, closing(text, open) - open - 1);
        text.erase(begin, closing(text, open) - begin + 1);
        if (classesWithoutC.count(name) != 0) continue;
        if (prefixes.count(name) == 0) {
            ADD_FAILURE() << "the class " << name << " has no place in the C interface";
            continue;
        }
        std::string shownBody = body.substr(0, body.find("private:"));
        shownBody.erase(0, shownBody.find("public:") + 7);
        addOperations(functions, prefixes.at(name), shownBody);
    }
    return text;
}

std::set<std::string> functionsThatOperationsMake() {
    std::set<std::string> functions;
    std::vector<fs::path> headers{delegates};
    for (const auto& entry : fs::directory_iterator(published)) {
        if (entry.path().extension() == ".hpp" && entry.path().filename() != "c_interface.hpp") {
            headers.push_back(entry.path());
        }
    }
    for (const auto& header : headers) {
        const auto rest = takeClasses(withoutComments(header), functions);
        static const std::regex shown(R"(ORBINEL_API [^;{}]*;)");
        for (std::sregex_iterator it(rest.begin(), rest.end(), shown), end; it != end; ++it) {
            addOperations(functions, "orbinel_", it->str());
        }
    }
    return functions;
}

std::set<std::string> functionsOfC() {
    const auto text = withoutComments(published / "orbinel.h") + withoutComments(published / "orbinel_delegate.h");
    static const std::regex declared(R"(ORBINEL_API [^;]*?(orbinel_\w+)\()");
    std::set<std::string> functions;
    for (std::sregex_iterator it(text.begin(), text.end(), declared), end; it != end; ++it) functions.insert((*it)[1]);
    return functions;
}

/// What stands in quotes, joined with the name before it.
std::set<std::string> namedTexts(const fs::path& path, const std::string& pattern) {
    std::ifstream file(path);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::regex named(pattern);
    std::set<std::string> found;
    for (std::sregex_iterator it(text.begin(), text.end(), named), end; it != end; ++it) {
        auto name = inSnakeCase((*it)[1]);
        found.insert(name + " " + (*it)[2].str());
    }
    return found;
}

std::set<std::string> without(const std::set<std::string>& all, const std::set<std::string>& some) {
    std::set<std::string> rest;
    std::set_difference(all.begin(), all.end(), some.begin(), some.end(), std::inserter(rest, rest.end()));
    return rest;
}

}  // namespace

TEST(CInterface, HasAFunctionForEachOperationAndNoOther) {
    const auto wanted = functionsThatOperationsMake();
    const auto there = functionsOfC();
    EXPECT_GT(there.size(), 150U);
    EXPECT_THAT(without(wanted, there), ::testing::ElementsAreArray(operationsWithoutC)) << "missing in orbinel.h";
    EXPECT_THAT(without(there, wanted), ::testing::ElementsAreArray(functionsOfCAlone)) << "only in orbinel.h";
}

TEST(CInterface, NamesTheOperationsOfDelegatesAsTheyAreCalled) {
    auto wanted = namedTexts(delegates, R"re(string_view (\w+) =\s+"([^"]+)")re");
    EXPECT_EQ(wanted.erase("open_url_contexts scene:openURLContexts:"), 1U);  // no host of C has scenes
    EXPECT_EQ(namedTexts(published / "orbinel_delegate.h", R"re(#define ORBINEL_(\w+)[ \\\n]+"([^"]+)")re"), wanted);
    EXPECT_EQ(wanted.size(), 10U);
}
