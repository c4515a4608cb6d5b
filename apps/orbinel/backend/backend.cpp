#include "apps/orbinel/backend/backend.hpp"

#include <unistd.h>

#include <charconv>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>

#include "apps/orbinel/backend/server.hpp"
#include "apps/orbinel/decode/examples.hpp"
#include "apps/orbinel/decode/options.hpp"

namespace orbinel::tool {
namespace {

constexpr int defaultPort = 8787;

std::optional<int> parsePort(std::string_view text) {
    int port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port < 0 || port > 65535) return std::nullopt;
    return port;
}

bool isMissing(const std::optional<std::string>& directory) {
    std::error_code ignored;
    return directory && !std::filesystem::is_directory(*directory, ignored);
}

/// Serves on a thread of its own while this one waits for a signal.
int serveUntilSignal(BackendServer& server) {
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    // Before any thread begins, so that all inherit it and only `sigwait` sees the two.
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);

    std::cout << "listening on " << server.origin() << std::endl;

    bool served = true;
    std::thread serving([&] {
        served = server.serve();
        kill(getpid(), SIGTERM);  // wakes the wait below when the server ended by itself
    });
    int signal = 0;
    sigwait(&ending, &signal);
    server.stop();
    serving.join();
    const auto count = server.requestCount();
    std::cout << "ended after " << count << (count == 1 ? " request" : " requests") << std::endl;
    return served ? exitSuccess : exitFailure;
}

}  // namespace

int runBackend(std::span<const std::string> arguments) {
    std::optional<std::string> portText;
    std::optional<std::string> answers;
    std::optional<std::string> templates;
    ServerOptions options;
    OptionParser parser("backend", "",
                        "Stands in for the API on this machine: answers every request, decodes it, prints a line about "
                        "it.\nOpen its address in a browser to look inside the requests.");
    parser.addText("port", "N", "the port to listen on, 0 for any free one (default: 8787)", portText);
    parser.addText("answers", "DIR", "the answers, JSON files read at every request (default: examples/backend)",
                   answers);
    parser.addText("templates", "DIR",
                   "the pages of in-app messages, HTML files read at every request (default: examples/templates)",
                   templates);
    parser.addFlag("quiet", "print no line for each request", options.quiet);
    parser.addFlag("payloads", "print the decoded payload under each line", options.payloads);
    const auto operands = parser.parse(arguments);
    if (!operands) return parser.exitStatus();
    if (!operands->empty()) return parser.misuse("\"" + operands->front() + "\" is one argument too many");
    const auto port = portText ? parsePort(*portText) : defaultPort;
    if (!port) return parser.misuse("\"" + *portText + "\" is not a port from 0 to 65535");
    for (const auto& directory : {answers, templates}) {
        if (isMissing(directory)) return parser.misuse(*directory + " is not a directory");
    }
    options.answers = answers ? std::filesystem::path(*answers) : findExample("examples/backend");
    options.templates = templates ? std::filesystem::path(*templates) : findExample("examples/templates");

    BackendServer server(std::move(options));
    if (!server.bind(*port)) {
        std::cerr << "orbinel backend: port " << *port << " cannot be used; another program may be listening on it.\n";
        return exitFailure;
    }
    return serveUntilSignal(server);
}

}  // namespace orbinel::tool
