#pragma once

#include "hosts/common/c_options.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "orbinel/linux/linux_host.hpp"

namespace orbinel::hosts {

/// The options that orbinel_linux.h describes; null stands for none. Throws `WrongArgument`.
[[nodiscard]] inline LinuxHostOptions linuxOptionsOf(const char* text) {
    COptions given(RapidJson(), text);
    LinuxHostOptions options;
    given.text("data_directory", options.dataDirectory);
    given.text("application_version", options.applicationVersion);
    given.text("application_identifier", options.applicationIdentifier);
    given.text("localisation", options.localisation);
    given.texts("url_schemes", options.urlSchemes);
    given.dictionary("information", options.information);
    given.boolean("background_may_suspend", options.backgroundMaySuspend);
    given.text("proxy", options.network.proxy);
    given.text("certificate_authorities", options.network.certificateAuthorities);
    given.expectNoOthers();
    return options;
}

}  // namespace orbinel::hosts
