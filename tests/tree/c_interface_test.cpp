#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/public_headers.hpp"

// The C interface has what the C++ headers have, and nothing else: neither can gain an operation without the other.

namespace {

namespace fs = std::filesystem;
using orbinel::testing::operationsOfHeader;
using orbinel::testing::publicHeaderWithoutComments;
using orbinel::testing::publicOperations;

const std::map<std::string, std::string> prefixes{{"", "orbinel_"},
                                                  {"Orbinel", "orbinel_"},
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
const std::string delegates = "platform/delegate.hpp";

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
std::set<std::string> functionsOfCAlone() {
    std::istringstream names(
        "last_error free sender_create sender_free event_create event_copy event_free user_copy user_free product_copy "
        "product_free identifiers_create identifiers_copy identifiers_free delegate_create delegate_free "
        "completion_handler_call completion_handler_copy completion_handler_free set_application_delegate "
        "set_notification_delegate");
    std::set<std::string> functions;
    for (std::string name; names >> name;) functions.insert("orbinel_" + name);
    return functions;
}

/// In lower case with "_" between the words; an abbreviation is one word, also in the plural ("productIDs").
std::string inSnakeCase(const std::string& name) {
    auto words = std::regex_replace(name, std::regex("IDs\\b"), "Ids");
    words = std::regex_replace(words, std::regex("([a-z0-9])([A-Z])"), "$1_$2");
    words = std::regex_replace(words, std::regex("([A-Z])([A-Z][a-z])"), "$1_$2");
    std::transform(words.begin(), words.end(), words.begin(), [](unsigned char c) { return std::tolower(c); });
    return words;
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

std::set<std::string> functionsThatOperationsMake() {
    auto operations = publicOperations();
    const auto ofDelegates = operationsOfHeader(delegates);
    operations.insert(operations.end(), ofDelegates.begin(), ofDelegates.end());
    std::map<std::pair<std::string, std::string>, std::vector<std::vector<std::string>>> lists;
    for (const auto& operation : operations) {
        if (classesWithoutC.count(operation.owner) != 0) continue;
        EXPECT_EQ(prefixes.count(operation.owner), 1U) << "the class has no place in the C interface";
        lists[{prefixes.at(operation.owner), operation.name}].push_back(operation.arguments);
    }
    std::set<std::string> functions;
    for (const auto& [key, arguments] : lists) addFunctions(functions, key.first, key.second, arguments);
    return functions;
}

std::set<std::string> functionsOfC() {
    const auto text = publicHeaderWithoutComments("orbinel.h") + publicHeaderWithoutComments("orbinel_delegate.h");
    static const std::regex declared(R"(ORBINEL_API [^;]*?(orbinel_\w+)\()");
    std::set<std::string> functions;
    for (std::sregex_iterator it(text.begin(), text.end(), declared), end; it != end; ++it) functions.insert((*it)[1]);
    return functions;
}

/// What stands in quotes, joined with the name before it.
std::set<std::string> namedTexts(const std::string& file, const std::string& pattern) {
    std::ifstream stream(fs::path(ORBINEL_SOURCE_DIR) / "include" / "orbinel" / file);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
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
    EXPECT_THAT(without(there, wanted), ::testing::ElementsAreArray(functionsOfCAlone())) << "only in orbinel.h";
}

TEST(CInterface, NamesTheOperationsOfDelegatesAsTheyAreCalled) {
    auto wanted = namedTexts(delegates, R"re(string_view (\w+) =\s+"([^"]+)")re");
    EXPECT_EQ(wanted.erase("open_url_contexts scene:openURLContexts:"), 1U);  // no host of C has scenes
    EXPECT_EQ(namedTexts("orbinel_delegate.h", R"re(#define ORBINEL_(\w+)[ \\\n]+"([^"]+)")re"), wanted);
    EXPECT_EQ(wanted.size(), 10U);
}
