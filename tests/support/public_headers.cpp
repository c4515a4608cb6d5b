#include "support/public_headers.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

namespace orbinel::testing {

namespace {

namespace fs = std::filesystem;
const fs::path published = fs::path(ORBINEL_SOURCE_DIR) / "include" / "orbinel";

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
        if (at >= text.size()) break;
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

void addOperations(std::vector<PublicOperation>& operations, const std::string& owner, const std::string& text) {
    static const std::regex operation(R"((~?\w+)\s*\()");
    for (const auto& declaration : declarations(text)) {
        std::smatch match;
        if (declaration.find("operator") != std::string::npos || declaration.find("= delete") != std::string::npos ||
            !std::regex_search(declaration, match, operation)) {
            continue;
        }
        const auto open = static_cast<std::size_t>(match.position(0) + match.length(0)) - 1;
        const auto close = closing(declaration, open);
        const std::string name = match[1];
        if (name == owner || name[0] == '~' || declaration.find("&&", close) != std::string::npos) continue;
        operations.push_back({owner, name, namesOf(declaration.substr(open + 1, close - open - 1))});
    }
}

/// Takes each class that the library shows out of the text, and adds its operations.
std::string takeClasses(std::string text, std::vector<PublicOperation>& operations) {
    static const std::regex shown(R"((?:class|struct) ORBINEL_API (\w+)[^;{]*\{)");
    for (std::smatch match; std::regex_search(text, match, shown);) {
        const std::string owner = match[1];
        const auto begin = static_cast<std::size_t>(match.position(0));
        const auto open = begin + static_cast<std::size_t>(match.length(0)) - 1;
        auto body = text.substr(open + 1, closing(text, open) - open - 1);
        text.erase(begin, closing(text, open) - begin + 1);
        body.erase(std::min(body.find("private:"), body.size()));
        body.erase(0, body.find("public:") + 7);
        addOperations(operations, owner, body);
    }
    return text;
}

}  // namespace

std::string PublicOperation::fullName() const {
    auto full = name;
    for (std::size_t i = 0; i < arguments.size(); ++i) full += (i == 0 ? "" : arguments[i]) + ":";
    return full;
}

std::string publicHeaderWithoutComments(const std::string& file) {
    std::ifstream stream(published / file);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    return std::regex_replace(text, std::regex(R"(//[^\n]*|/\*[^*]*\*+([^/*][^*]*\*+)*/|^#[^\n]*)"), "");
}

std::vector<PublicOperation> operationsOfHeader(const std::string& file) {
    std::vector<PublicOperation> operations;
    const auto rest = takeClasses(publicHeaderWithoutComments(file), operations);
    static const std::regex shown(R"(ORBINEL_API [^;{}]*;)");
    for (std::sregex_iterator it(rest.begin(), rest.end(), shown), end; it != end; ++it) {
        addOperations(operations, "", it->str());
    }
    return operations;
}

std::vector<PublicOperation> publicOperations() {
    std::vector<PublicOperation> operations;
    for (const auto& entry : fs::directory_iterator(published)) {
        if (entry.path().extension() != ".hpp" || entry.path().filename() == "c_interface.hpp") continue;
        const auto ofHeader = operationsOfHeader(entry.path().filename().string());
        operations.insert(operations.end(), ofHeader.begin(), ofHeader.end());
    }
    return operations;
}

std::map<std::string, std::string> facadeContracts() {
    static const std::regex comment(R"(^\s*///(.*)$)");
    static const std::regex title(R"(^\s*// ---(.*)---$)");
    static const std::regex function(R"(\bstatic [^(]*?(\w+)\()");
    std::map<std::string, std::string> contracts;
    std::ifstream stream(published / "orbinel.hpp");
    std::string contract;
    std::string section;
    bool isInComment = false;
    std::smatch match;
    for (std::string line; std::getline(stream, line) && line != "private:";) {
        if (std::regex_match(line, match, title)) section = match[1];
        const bool isComment = std::regex_match(line, match, comment);
        if (isComment && !isInComment) contract.clear();
        if (isComment) contract += match[1];
        if (!isComment && std::regex_search(line, match, function)) contracts[match[1]] = contract + section;
        isInComment = isComment;
    }
    return contracts;
}

}  // namespace orbinel::testing
