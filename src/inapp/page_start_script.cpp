#include "inapp/page_start_script.hpp"

#include "orbinel/value.hpp"

namespace orbinel {

namespace {

/// The name as a CSS string.
std::string cssString(const std::string& name) {
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '"' || c == '\\') quoted += '\\';
        if (static_cast<unsigned char>(c) >= ' ') quoted += c;
    }
    return quoted + '"';
}

constexpr const char* forwardConsole =
    "(function(){var log=console.log;console.log=function(){log.apply(console,arguments);"
    "window.webkit.messageHandlers.orbinel.postMessage(Array.prototype.map.call(arguments,String).join(' '));};})();";

}  // namespace

std::string pageStartScript(const platform::Json& json, const CustomFonts& fonts, bool debugging) {
    Dictionary properties;
    if (!fonts.regular.empty()) properties.set("--orbinel-regular-font", cssString(fonts.regular));
    if (!fonts.bold.empty()) properties.set("--orbinel-bold-font", cssString(fonts.bold));
    if (!fonts.italic.empty()) properties.set("--orbinel-italic-font", cssString(fonts.italic));

    std::string script;
    if (!properties.empty()) {
        const auto object = json.serialise(properties, platform::JsonStyle::compact).value_or("{}");
        script += "(function(f){for(var n in f)document.documentElement.style.setProperty(n,f[n]);})(" + object + ");";
    }
    if (debugging) script += forwardConsole;
    return script;
}

}  // namespace orbinel
