#include "hosts/linux/device_facts_reader.hpp"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "hosts/linux/file_system.hpp"

namespace orbinel::hosts {

namespace {

constexpr std::size_t longestFile = 1024 * 1024;
constexpr unsigned routeIsUp = 0x1;
constexpr unsigned routeRejects = 0x200;

// What makers of main boards leave in place of a name.
constexpr std::array<std::string_view, 5> placeholders = {"Unknown", "System Product Name", "To be filled by O.E.M.",
                                                          "Default string", "None"};

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string trimmed(std::string text) {
    constexpr std::string_view blank(" \t\r\n\0", 5);
    text.erase(std::min(text.find_last_not_of(blank) + 1, text.size()));
    text.erase(0, std::min(text.find_first_not_of(blank), text.size()));
    return text;
}

/// What stands after "zoneinfo/" in the path of a zone's file.
std::optional<std::string> zoneOfPath(const std::string& path) {
    constexpr std::string_view folder = "zoneinfo/";
    const auto found = path.rfind(folder);
    if (found == std::string::npos) return std::nullopt;
    return path.substr(found + folder.size());
}

}  // namespace

LocaleEnvironment LocaleEnvironment::current() {
    LocaleEnvironment environment{variable("LANGUAGE"), {}, variable("TZ")};
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (environment.messages.empty()) environment.messages = variable(name);
    }
    return environment;
}

std::optional<std::string> preferredLanguage(const LocaleEnvironment& environment) {
    const auto plain = [](const std::string& locale) { return locale.substr(0, locale.find_first_of(".@")); };
    auto name = plain(environment.messages);
    if (name.empty() || name == "C" || name == "POSIX") return std::nullopt;
    // The list counts only where the locale is not neutral.
    const auto first = plain(environment.language.substr(0, environment.language.find(':')));
    if (!first.empty() && first != "C") name = first;
    std::replace(name.begin(), name.end(), '_', '-');
    return name;
}

DeviceFactsReader::DeviceFactsReader(std::filesystem::path root, LocaleEnvironment environment)
    : root_(std::move(root)), environment_(std::move(environment)) {}

platform::DeviceFacts DeviceFactsReader::read() const noexcept {
    platform::DeviceFacts facts;
    facts.machine = machine();
    facts.modelName = "Linux";
    const std::unique_ptr<char, void (*)(void*)> version(g_get_os_info(G_OS_INFO_KEY_VERSION_ID), g_free);
    if (version) facts.osVersion = version.get();
    facts.preferredLanguage = preferredLanguage(environment_);
    facts.timezone = timezone();
    facts.battery = battery();
    facts.connection = connection();
    return facts;
}

std::optional<std::string> DeviceFactsReader::machine() const {
    for (const char* file : {"proc/device-tree/model", "sys/class/dmi/id/product_name"}) {
        auto name = text(file);
        if (name && !name->empty() &&
            std::find(placeholders.begin(), placeholders.end(), *name) == placeholders.end()) {
            return name;
        }
    }
    return std::nullopt;
}

std::optional<std::string> DeviceFactsReader::timezone() const {
    if (!environment_.timezone.empty()) {
        const auto name = environment_.timezone.substr(environment_.timezone.front() == ':' ? 1 : 0);
        if (auto zone = zoneOfPath(name)) return zone;
        std::error_code error;
        if (!name.empty() && std::filesystem::is_regular_file(root_ / "usr/share/zoneinfo" / name, error)) return name;
        return std::nullopt;  // a rule written out has no name
    }
    std::error_code error;
    const auto target = std::filesystem::read_symlink(root_ / "etc/localtime", error);
    if (!error) return zoneOfPath(target.string());
    if (auto name = text("etc/timezone"); name && !name->empty()) return name;
    return "UTC";  // what the C library takes where nothing is set
}

std::optional<double> DeviceFactsReader::battery() const {
    const std::filesystem::path supplies = "sys/class/power_supply";
    std::error_code error;
    // Not a range-for, which would throw where a supply is unplugged meanwhile.
    for (std::filesystem::directory_iterator supply(root_ / supplies, error), end; !error && supply != end;
         supply.increment(error)) {
        const auto folder = supplies / supply->path().filename();
        // The scope "Device" is a mouse or a pen, not this machine.
        if (text(folder / "type") != "Battery" || text(folder / "scope") == "Device") continue;
        const auto capacity = text(folder / "capacity");
        if (capacity && !capacity->empty()) return std::clamp(std::strtod(capacity->c_str(), nullptr), 0.0, 100.0);
    }
    return std::nullopt;
}

platform::Connection DeviceFactsReader::connection() const {
    bool known = false;
    const auto interface = defaultInterface(known);
    if (interface) return kindOf(*interface);
    return known ? platform::Connection::none : platform::Connection::unknown;
}

/// The interface of the default route, IPv4 before IPv6, the lowest metric first. `known` where the kernel says at all.
std::optional<std::string> DeviceFactsReader::defaultInterface(bool& known) const {
    std::optional<std::pair<unsigned long, std::string>> best;
    const auto offer = [&](unsigned long metric, unsigned long flags, const std::string& interface) {
        if ((flags & routeIsUp) == 0 || (flags & routeRejects) != 0 || interface == "lo") return;
        if (!best || metric < best->first) best = {metric, interface};
    };
    if (const auto routes = text("proc/net/route")) {
        known = true;
        std::istringstream lines(*routes);
        std::string line;
        std::getline(lines, line);  // the names of the columns
        while (std::getline(lines, line)) {
            std::istringstream fields(line);
            std::string interface, destination, gateway, flags, references, uses, metric, mask;
            fields >> interface >> destination >> gateway >> flags >> references >> uses >> metric >> mask;
            if (destination != "00000000" || mask != "00000000") continue;
            offer(std::strtoul(metric.c_str(), nullptr, 10), std::strtoul(flags.c_str(), nullptr, 16), interface);
        }
    }
    if (best) return best->second;
    if (const auto routes = text("proc/net/ipv6_route")) {
        known = true;
        std::istringstream lines(*routes);
        std::string line;
        while (std::getline(lines, line)) {
            std::istringstream fields(line);
            std::string destination, length, source, sourceLength, hop, metric, references, uses, flags, interface;
            fields >> destination >> length >> source >> sourceLength >> hop >> metric >> references >> uses >> flags >>
                interface;
            if (length != "00" || destination.find_first_not_of('0') != std::string::npos) continue;
            offer(std::strtoul(metric.c_str(), nullptr, 16), std::strtoul(flags.c_str(), nullptr, 16), interface);
        }
    }
    if (best) return best->second;
    return std::nullopt;
}

platform::Connection DeviceFactsReader::kindOf(const std::string& interface) const {
    const auto folder = std::filesystem::path("sys/class/net") / interface;
    const auto facts = text(folder / "uevent").value_or("");
    if (facts.find("DEVTYPE=wwan") != std::string::npos) return platform::Connection::cellular;
    for (const char* prefix : {"wwan", "rmnet", "ppp"}) {
        if (interface.starts_with(prefix)) return platform::Connection::cellular;
    }
    return platform::Connection::wifi;
}

std::optional<std::string> DeviceFactsReader::text(const std::filesystem::path& relative) const {
    auto content = readWholeFile(root_ / relative, longestFile);
    if (!content) return std::nullopt;
    return trimmed(std::move(*content));
}

}  // namespace orbinel::hosts
