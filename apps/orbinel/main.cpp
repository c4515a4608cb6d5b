#include <array>
#include <exception>
#include <iostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "apps/orbinel/backend/backend.hpp"
#include "apps/orbinel/decode/decode.hpp"
#include "apps/orbinel/decode/options.hpp"
#include "apps/orbinel/play/play.hpp"

namespace {

struct Subcommand {
    std::string_view name;
    std::string_view about;
    int (*run)(std::span<const std::string> arguments);
};

constexpr std::array subcommands{
    Subcommand{"play", "drive the library from a scenario file and trace what it does", orbinel::tool::runPlay},
    Subcommand{"backend", "stand in for the API on this machine, with a live inspector page",
               orbinel::tool::runBackend},
    Subcommand{"decode", "unscramble a captured request body", orbinel::tool::runDecode},
};

void printUsage(std::ostream& out) {
    out << "Usage: orbinel SUBCOMMAND [OPTION…]\n\n";
    for (const auto& subcommand : subcommands) {
        out << "  " << subcommand.name << std::string(10 - subcommand.name.size(), ' ') << subcommand.about << '\n';
    }
    out << "\norbinel SUBCOMMAND --help tells more; orbinel --version names the version.\n";
}

int misuse(std::string_view sentence) {
    std::cerr << "orbinel: " << sentence << ".\n\n";
    printUsage(std::cerr);
    return orbinel::tool::exitMisuse;
}

int run(const std::vector<std::string>& arguments) {
    if (arguments.empty()) return misuse("a subcommand is missing");
    const std::string& name = arguments.front();
    if (name == "--help" || name == "-h" || name == "help") {
        printUsage(std::cout);
        return orbinel::tool::exitSuccess;
    }
    if (name == "--version") {
        std::cout << "orbinel " ORBINEL_VERSION "\n";
        return orbinel::tool::exitSuccess;
    }
    for (const auto& subcommand : subcommands) {
        if (subcommand.name == name) return subcommand.run(std::span(arguments).subspan(1));
    }
    return misuse("there is no subcommand \"" + name + "\"");
}

}  // namespace

int main(int count, char** words) {
    try {
        return run(std::vector<std::string>(words + 1, words + count));
    } catch (const std::exception& error) {
        std::cerr << "orbinel: " << error.what() << ".\n";
        return orbinel::tool::exitFailure;
    }
}
