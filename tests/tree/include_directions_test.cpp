#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <string>

// The order of the source tree: a folder includes folders before it, never one after it.

namespace {

namespace fs = std::filesystem;
const fs::path root = ORBINEL_SOURCE_DIR;

/// Each folder and the height it stands on; folders of one height do not include each other.
const std::map<std::string, int> heights{
    {"base", 0},  {"platform", 0}, {"session", 1},     {"privacy", 2},  {"events", 3},
    {"user", 4},  {"tools", 5},    {"diagnostics", 6}, {"commerce", 7}, {"personalisation", 8},
    {"inapp", 9}, {"push", 10},    {"core", 11}};

std::string firstFolder(const std::string& path) { return path.substr(0, path.find('/')); }

/// The rule holds for every inclusion below the folder: a file, relative to the root, and the text between the quotes.
void expectBelow(const fs::path& folder, const std::function<bool(const fs::path&, const std::string&)>& rule) {
    static const std::regex quoted("^\\s*#\\s*include\\s*\"([^\"]+)\"");
    std::size_t inclusions = 0;
    for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
        const auto extension = entry.path().extension();
        if (extension != ".hpp" && extension != ".cpp") continue;
        const auto path = entry.path().lexically_relative(root);
        std::ifstream file(entry.path());
        std::smatch match;
        for (std::string line; std::getline(file, line);) {
            if (!std::regex_search(line, match, quoted)) continue;
            EXPECT_TRUE(rule(path, match[1])) << path << " includes " << match[1];
            ++inclusions;
        }
    }
    EXPECT_GT(inclusions, 0u);
}

}  // namespace

TEST(SourceTree, FoldersIncludeOnlyWhatStandsBeforeThem) {
    expectBelow("src", [](const fs::path& file, const std::string& target) {
        const auto own = heights.find((++file.begin())->string());
        if (own == heights.end()) return false;
        const auto folder = firstFolder(target);
        if (folder == "orbinel" || folder == own->first) return true;
        const auto other = heights.find(folder);
        return other != heights.end() && other->second < own->second;
    });
}

TEST(SourceTree, HostsReachPlatformAndBaseOnly) {
    expectBelow("hosts", [](const fs::path&, const std::string& target) {
        const auto folder = firstFolder(target);
        const bool own = folder == "hosts" || target.find('/') == std::string::npos;
        const bool published = target.starts_with("orbinel/platform/") || target == "orbinel/value.hpp" ||
                               target == "orbinel/export.hpp" || target == "orbinel/orbinel.h" ||
                               target == "orbinel/c_interface.hpp" || target.starts_with("orbinel/headless/") ||
                               target.starts_with("orbinel/linux/") || target.starts_with("orbinel/gtk/");
        return own || published || folder == "base" || folder == "platform";
    });
}

TEST(SourceTree, PublicHeadersNeedNothingButEachOther) {
    expectBelow("include", [](const auto&, const auto& target) { return firstFolder(target) == "orbinel"; });
}

// Whoever learns from the shop finds nothing in it that an application could not do.
TEST(SourceTree, TheShopKnowsOnlyWhatApplicationsKnow) {
    expectBelow("apps/shop", [](const fs::path&, const std::string& target) {
        const auto published = [&target](const char* folder) { return fs::exists(root / folder / "include" / target); };
        return firstFolder(target) == "shop" || fs::exists(root / "include" / target) || published("hosts/gtk") ||
               published("hosts/linux");
    });
}

// The one global of the library is the facade's; everything else is handed what it needs.
TEST(SourceTree, OnlyCoreKnowsTheCurrentWorld) {
    expectBelow("src", [](const fs::path& file, const std::string& target) {
        return file.string().starts_with("src/core/") || target != "core/current_world.hpp";
    });
}
