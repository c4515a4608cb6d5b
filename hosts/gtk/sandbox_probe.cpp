#include "hosts/gtk/sandbox_probe.hpp"

#include <glib.h>
#include <poll.h>
#include <unistd.h>

#include <string_view>

namespace orbinel::hosts {

namespace {

constexpr int limitMilliseconds = 500;
constexpr std::string_view yes = "yes\n";

/// Inside such a package the engine asks the package's own runtime for its sandbox; and a person may have turned it
/// off.
bool engineUsesNoNamespaces() {
    return g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS) != FALSE ||
           g_strcmp0(g_getenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS"), "1") == 0;
}

}  // namespace

SandboxProbe::SandboxProbe() {
    if (engineUsesNoNamespaces()) {
        verdict_ = Verdict::works;
        return;
    }
    const char* command[] = {"bwrap",          "--ro-bind",     "/",    "/",   "--proc", "/proc", "--dev", "/dev",
                             "--unshare-user", "--unshare-pid", "echo", "yes", nullptr};
    // Without a watch on the child GLib leaves nothing behind that the application would have to reap.
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDERR_TO_DEV_NULL);
    if (!g_spawn_async_with_pipes(nullptr, const_cast<char**>(command), nullptr, flags, nullptr, nullptr, nullptr,
                                  nullptr, &answer_, nullptr, nullptr)) {
        verdict_ = Verdict::fails;
    }
}

SandboxProbe::~SandboxProbe() {
    if (answer_ >= 0) ::close(answer_);
}

bool SandboxProbe::works() {
    if (verdict_ == Verdict::open) verdict_ = saysYes() ? Verdict::works : Verdict::fails;
    return verdict_ == Verdict::works;
}

bool SandboxProbe::saysYes() const {
    pollfd waiting{answer_, POLLIN, 0};
    char text[yes.size()] = {};
    if (TEMP_FAILURE_RETRY(::poll(&waiting, 1, limitMilliseconds)) != 1) return false;
    const auto length = TEMP_FAILURE_RETRY(::read(answer_, text, sizeof text));
    return length == static_cast<ssize_t>(yes.size()) && std::string_view(text, yes.size()) == yes;
}

}  // namespace orbinel::hosts
