#include "orbinel/linux/linux_host.hpp"

#include <errno.h>
#include <glib.h>

#include <utility>

#include "hosts/common/glib_base64.hpp"
#include "hosts/common/in_process_notification_centre.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "hosts/common/without_window.hpp"
#include "hosts/linux/curl_http.hpp"
#include "hosts/linux/device_facts_reader.hpp"
#include "hosts/linux/file_secure_items.hpp"
#include "hosts/linux/file_system.hpp"
#include "hosts/linux/linux_application.hpp"
#include "hosts/linux/linux_device.hpp"
#include "hosts/linux/linux_notifications.hpp"
#include "hosts/linux/sqlite_defaults.hpp"
#include "hosts/linux/stderr_console.hpp"
#include "hosts/linux/system_scheduler.hpp"

namespace orbinel::hosts {

namespace {

std::string programName() { return program_invocation_short_name; }

std::filesystem::path directoryOf(const LinuxHostOptions& options) {
    if (!options.dataDirectory.empty()) return options.dataDirectory;
    return std::filesystem::path(g_get_user_data_dir()) / "orbinel" / safeFileName(programName());
}

platform::ApplicationBundle bundleOf(LinuxHostOptions options) {
    auto localisation = std::move(options.localisation);
    if (!localisation) localisation = preferredLanguage(LocaleEnvironment::current());
    return {std::move(options.applicationVersion), std::move(options.applicationIdentifier).value_or(programName()),
            std::move(localisation), std::move(options.urlSchemes), std::move(options.information)};
}

}  // namespace

struct LinuxHost::Parts {
    std::shared_ptr<SystemScheduler> scheduler = std::make_shared<SystemScheduler>();
    platform::Services services;
};

LinuxHost::LinuxHost(LinuxHostOptions options) : parts_(std::make_unique<Parts>()) {
    const auto directory = directoryOf(options);
    const bool maySuspend = options.backgroundMaySuspend;
    auto& services = parts_->services;
    services.scheduler = parts_->scheduler;
    services.http = makeLinuxHttp(std::move(options.network));
    services.json = std::make_shared<RapidJson>();
    services.base64 = std::make_shared<GlibBase64>();
    services.defaults = makeLinuxDefaults(directory, services.json);
    services.secureItems = makeLinuxSecureItems(directory);
    services.notificationCentre = std::make_shared<InProcessNotificationCentre>();
    services.application =
        std::make_shared<LinuxApplication>(bundleOf(std::move(options)), maySuspend, services.scheduler);
    services.device = std::make_shared<LinuxDevice>(directory, services.scheduler);
    services.notifications = std::make_shared<LinuxNotifications>();
    services.console = std::make_shared<StderrConsole>();
    services.views = std::make_shared<NoViews>();
    services.accelerometer = std::make_shared<NoAccelerometer>();
    services.haptics = std::make_shared<NoHaptics>();
    services.pasteboard = std::make_shared<NoPasteboard>();
    services.reviewPrompt = std::make_shared<NoReviewPrompt>();
}

LinuxHost::~LinuxHost() = default;

const platform::Services& LinuxHost::services() const noexcept { return parts_->services; }

std::size_t LinuxHost::runMainQueue() { return parts_->scheduler->runMainQueue(); }

bool LinuxHost::runUntil(const std::function<bool()>& predicate, std::chrono::milliseconds limit) {
    return parts_->scheduler->runUntil(predicate, limit);
}

void LinuxHost::run() { parts_->scheduler->run(); }

void LinuxHost::quit() noexcept { parts_->scheduler->quit(); }

void LinuxHost::attachToGlibMainContext() { parts_->scheduler->attachToGlibMainContext(); }

std::shared_ptr<platform::Http> makeLinuxHttp(LinuxNetworkOptions network) {
    return std::make_shared<CurlHttp>(std::move(network));
}

std::shared_ptr<platform::Defaults> makeLinuxDefaults(const std::filesystem::path& directory,
                                                      std::shared_ptr<const platform::Json> json) {
    return std::make_shared<SqliteDefaults>(directory, std::move(json));
}

std::shared_ptr<platform::SecureItems> makeLinuxSecureItems(const std::filesystem::path& directory) {
    return std::make_shared<FileSecureItems>(directory / "secure");
}

}  // namespace orbinel::hosts
