#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/public_headers.hpp"

// The C interface has what the C++ headers have, and nothing else: neither can gain an operation without the other.

namespace {

using orbinel::testing::publicHeaderWithoutComments;
using orbinel::testing::publicOperations;

const std::map<std::string, std::string> prefixes{{"", "orbinel_"},
                                                  {"Orbinel", "orbinel_"},
                                                  {"OrbinelEvent", "orbinel_event_"},
                                                  {"OrbinelUser", "orbinel_user_"},
                                                  {"OrbinelProduct", "orbinel_product_"},
                                                  {"OrbinelIdentifiers", "orbinel_identifiers_"}};

// Values are JSON in C.
const std::set<std::string> classesWithoutC{"Dictionary", "Value"};

const std::set<std::string> operationsWithoutC{
    "orbinel_start",             // takes services; each host has its own, such as orbinel_start_linux
    "orbinel_is_within_depth",   // of values
    "orbinel_product_internal",  // for the library's own use
};

// What classes do by themselves, and what C needs beside the operations.
const std::set<std::string> functionsOfCAlone{"orbinel_last_error",       "orbinel_free",
                                              "orbinel_sender_create",    "orbinel_sender_free",
                                              "orbinel_event_create",     "orbinel_event_copy",
                                              "orbinel_event_free",       "orbinel_user_copy",
                                              "orbinel_user_free",        "orbinel_product_copy",
                                              "orbinel_product_free",     "orbinel_identifiers_create",
                                              "orbinel_identifiers_copy", "orbinel_identifiers_free"};

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
    std::map<std::pair<std::string, std::string>, std::vector<std::vector<std::string>>> lists;
    for (const auto& operation : publicOperations()) {
        if (classesWithoutC.count(operation.owner) != 0) continue;
        EXPECT_EQ(prefixes.count(operation.owner), 1U) << "the class has no place in the C interface";
        lists[{prefixes.at(operation.owner), operation.name}].push_back(operation.arguments);
    }
    std::set<std::string> functions;
    for (const auto& [key, arguments] : lists) addFunctions(functions, key.first, key.second, arguments);
    return functions;
}

std::set<std::string> functionsOfC() {
    const auto text = publicHeaderWithoutComments("orbinel.h");
    static const std::regex declared(R"(ORBINEL_API [^;]*?(orbinel_\w+)\()");
    std::set<std::string> functions;
    for (std::sregex_iterator it(text.begin(), text.end(), declared), end; it != end; ++it) functions.insert((*it)[1]);
    return functions;
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
