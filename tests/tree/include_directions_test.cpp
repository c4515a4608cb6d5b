#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <optional>
#include <regex>
#include <string>
#include <vector>

// The order of the source tree: a folder includes folders before it, never one after it.

namespace {

namespace fs = std::filesystem;
const fs::path root = ORBINEL_SOURCE_DIR;

/// Each folder and the height it stands on; folders of one height do not include each other.
constexpr std::array<std::pair<const char*, int>, 13> heights{{{"base", 0},
                                                               {"platform", 0},
                                                               {"session", 1},
                                                               {"privacy", 2},
                                                               {"events", 3},
                                                               {"user", 4},
                                                               {"tools", 5},
                                                               {"diagnostics", 6},
                                                               {"commerce", 7},
                                                               {"personalisation", 8},
                                                               {"inapp", 9},
                                                               {"push", 10},
                                                               {"core", 11}}};

std::optional<int> heightOf(const std::string& folder) {
    for (const auto& [name, height] : heights) {
        if (folder == name) return height;
    }
    return std::nullopt;
}

struct Inclusion {
    fs::path file;       // relative to the root
    std::string target;  // as written between the quotes
};

std::vector<Inclusion> inclusionsBelow(const fs::path& folder) {
    static const std::regex quoted("^\\s*#\\s*include\\s*\"([^\"]+)\"");
    std::vector<Inclusion> found;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
        const auto extension = entry.path().extension();
        if (extension != ".hpp" && extension != ".cpp") continue;
        std::ifstream file(entry.path());
        std::smatch match;
        for (std::string line; std::getline(file, line);) {
            if (std::regex_search(line, match, quoted))
                found.push_back({entry.path().lexically_relative(root), match[1]});
        }
    }
    return found;
}

std::string firstFolder(const std::string& path) { return path.substr(0, path.find('/')); }

std::string describe(const Inclusion& inclusion) { return inclusion.file.string() + " includes " + inclusion.target; }

}  // namespace

TEST(SourceTree, FoldersIncludeOnlyWhatStandsBeforeThem) {
    std::vector<std::string> wrong;
    for (const auto& inclusion : inclusionsBelow("src")) {
        const auto own = (++inclusion.file.begin())->string();
        const auto target = firstFolder(inclusion.target);
        ASSERT_TRUE(heightOf(own)) << own << " has no place in the order";
        if (target == "orbinel" || target == own) continue;
        const auto height = heightOf(target);
        if (!height || *height >= *heightOf(own)) wrong.push_back(describe(inclusion));
    }
    EXPECT_THAT(wrong, testing::IsEmpty());
}

TEST(SourceTree, HostsReachPlatformAndBaseOnly) {
    std::vector<std::string> wrong;
    for (const auto& inclusion : inclusionsBelow("hosts")) {
        const auto& target = inclusion.target;
        const auto folder = firstFolder(target);
        const bool own = folder == "hosts" || target.find('/') == std::string::npos;
        const bool published = target.starts_with("orbinel/platform/") || target == "orbinel/value.hpp" ||
                               target == "orbinel/export.hpp" || target.starts_with("orbinel/headless/") ||
                               target.starts_with("orbinel/linux/") || target.starts_with("orbinel/gtk/");
        if (!own && !published && folder != "base" && folder != "platform") wrong.push_back(describe(inclusion));
    }
    EXPECT_THAT(wrong, testing::IsEmpty());
}

TEST(SourceTree, PublicHeadersNeedNothingButEachOther) {
    std::vector<std::string> wrong;
    for (const auto& inclusion : inclusionsBelow("include")) {
        if (firstFolder(inclusion.target) != "orbinel") wrong.push_back(describe(inclusion));
    }
    EXPECT_THAT(wrong, testing::IsEmpty());
}

// The one global of the library is the facade's; everything else is handed what it needs.
TEST(SourceTree, OnlyCoreKnowsTheCurrentWorld) {
    std::vector<std::string> wrong;
    for (const auto& inclusion : inclusionsBelow("src")) {
        const bool core = inclusion.file.string().starts_with("src/core/");
        if (!core && inclusion.target == "core/current_world.hpp") wrong.push_back(describe(inclusion));
    }
    EXPECT_THAT(wrong, testing::IsEmpty());
}
