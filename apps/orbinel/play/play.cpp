#include "apps/orbinel/play/play.hpp"

#include <glib.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string_view>
#include <system_error>
#include <variant>

#include "apps/orbinel/decode/examples.hpp"
#include "apps/orbinel/decode/options.hpp"
#include "apps/orbinel/play/play_host.hpp"
#include "apps/orbinel/play/player.hpp"
#include "apps/orbinel/play/scenario_reader.hpp"
#include "apps/orbinel/play/trace.hpp"

namespace orbinel::tool {

namespace {

constexpr int exitHeld = 0;
constexpr int exitExpectationFailed = 1;
constexpr int exitUnusable = 2;
constexpr int exitNotCarriedOut = 3;

constexpr std::size_t largestScenario = 64 * 1024 * 1024;  // bytes

struct PlayOptions {
    std::optional<std::string> endpoint;
    std::optional<std::string> dataDirectory;
    Interface interface = Interface::headless;
    bool pretty = false;
    std::string file;
};

/// One that is there for the length of the play; the default of --data-dir.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string name = (std::filesystem::temp_directory_path() / "orbinel-play-XXXXXX").string();
        if (g_mkdtemp(name.data()) == nullptr) throw Unusable("no temporary directory can be made");
        path_ = name;
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

int complain(const std::string& file, std::string_view clause, int exitStatus) {
    std::cerr << "orbinel play: " << (file == "-" ? "stdin" : file) << ": " << clause << ".\n";
    return exitStatus;
}

/// A scheme, a host and perhaps a port, as the library takes it.
bool isOrigin(const std::string& text) {
    GUri* uri = g_uri_parse(text.c_str(), G_URI_FLAGS_NONE, nullptr);
    if (uri == nullptr) return false;
    const std::string_view scheme = g_uri_get_scheme(uri);
    const auto* server = g_uri_get_host(uri);
    const bool isServer = (scheme == "http" || scheme == "https") && server != nullptr && *server != '\0';
    const bool isMore = g_uri_get_userinfo(uri) != nullptr || *g_uri_get_path(uri) != '\0' ||
                        g_uri_get_query(uri) != nullptr || g_uri_get_fragment(uri) != nullptr;
    g_uri_unref(uri);
    return isServer && !isMore;
}

std::string readStream(std::istream& stream) {
    std::string text;
    std::array<char, 65536> buffer{};
    while (stream.read(buffer.data(), buffer.size()), stream.gcount() > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(stream.gcount()));
        if (text.size() > largestScenario) throw Unusable("larger than 64 MiB");
    }
    if (stream.bad()) throw Unusable("cannot be read");
    return text;
}

/// The file itself, or the example of that name where there is no such file here.
std::filesystem::path scenarioFile(const std::filesystem::path& file) {
    std::error_code ignored;
    const bool isExample = !file.empty() && *file.begin() == "examples" && !std::filesystem::exists(file, ignored);
    const auto example = isExample ? findExample(file) : file;
    return std::filesystem::exists(example, ignored) ? example : file;
}

std::string readScenarioText(const std::string& name) {
    if (name == "-") return readStream(std::cin);
    const auto file = scenarioFile(name);
    if (std::filesystem::is_directory(file)) throw Unusable("is a directory");
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream.is_open()) throw Unusable(std::strerror(errno));
    return readStream(stream);
}

void makeDirectory(const std::filesystem::path& directory) {
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (error || !std::filesystem::is_directory(directory, error)) {
        throw Unusable("the data directory " + inQuotes(directory.string()) + " cannot be made");
    }
}

int exitStatusOf(Player::Verdict verdict) {
    switch (verdict) {
        case Player::Verdict::held:
            return exitHeld;
        case Player::Verdict::expectationFailed:
            return exitExpectationFailed;
        case Player::Verdict::notCarriedOut:
            break;
    }
    return exitNotCarriedOut;
}

int playIn(const std::filesystem::path& directory, const Scenario& scenario, const PlayOptions& options) {
    const auto scheduler = makeScheduler(scenario.clockStart);
    Trace trace(*scheduler, std::cout, options.pretty ? Trace::Form::pretty : Trace::Form::lines);
    PlayHost host(scheduler, scenario.clockStart.has_value(), directory, trace, options.interface);
    Player player(scenario, host, trace,
                  [&](const std::string& clause) { complain(options.file, clause, exitNotCarriedOut); });
    const auto verdict = player.play();
    if (options.endpoint && host.isUnanswered()) {
        std::cerr << "orbinel play: no request got an answer from " << *options.endpoint
                  << ": is the backend running?\n";
    }
    return exitStatusOf(verdict);
}

int play(const PlayOptions& options) {
    try {
        const auto read = readScenario(readScenarioText(options.file), options.endpoint, options.interface);
        if (const auto* unusable = std::get_if<Unusable>(&read)) throw *unusable;
        const auto& scenario = std::get<Scenario>(read);
        if (options.dataDirectory) {
            makeDirectory(*options.dataDirectory);
            return playIn(*options.dataDirectory, scenario, options);
        }
        const TemporaryDirectory directory;
        return playIn(directory.path(), scenario, options);
    } catch (const Unusable& error) {
        return complain(options.file, error.what(), exitUnusable);
    } catch (const std::exception& error) {
        return complain(options.file, error.what(), exitNotCarriedOut);
    }
}

}  // namespace

int runPlay(std::span<const std::string> arguments) {
    PlayOptions options;
    std::optional<std::string> interface;
    OptionParser parser("play", "FILE|-",
                        "Drives the library as the scenario in FILE says and writes what happens, one JSON object a "
                        "line.\nEnds with 0 when every expectation held, 1 when one failed, 2 when the scenario is "
                        "unusable\nand 3 when a step could not be carried out.");
    parser.addText("endpoint", "URL", "what ${endpoint} stands for in the scenario", options.endpoint);
    parser.addText("data-dir", "DIR", "where everything is stored (default: a temporary directory)",
                   options.dataDirectory);
    parser.addText("ui", "headless|gtk", "where messages are shown (default: headless)", interface);
    parser.addFlag("pretty", "write the trace for people", options.pretty);
    const auto files = parser.parse(arguments);
    if (!files) return parser.exitStatus();
    if (files->size() != 1) return parser.misuse("one scenario file is needed");
    if (options.endpoint && !isOrigin(*options.endpoint)) {
        return parser.misuse(
            "--endpoint takes an http or https address without a path, such as "
            "http://127.0.0.1:8787, and \"" +
            *options.endpoint + "\" is none");
    }
    if (interface && interface != "headless" && interface != "gtk") return parser.misuse("--ui takes headless or gtk");
    if (interface == "gtk") options.interface = Interface::gtk;
    options.file = files->front();
    return play(options);
}

}  // namespace orbinel::tool
