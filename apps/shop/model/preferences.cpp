#include "shop/model/preferences.hpp"

#include <glib.h>

#include <algorithm>
#include <array>
#include <memory>
#include <system_error>
#include <utility>

namespace shop {

namespace {

struct KeyFileFree {
    void operator()(GKeyFile* file) const noexcept { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileFree>;

constexpr const char* group = "shop";

constexpr std::array<std::pair<const char*, bool Preferences::*>, 7> switches{{
    {"consent", &Preferences::consent},
    {"consent-on-device", &Preferences::consentOnDevice},
    {"collect-advertising-id", &Preferences::collectAdvertisingId},
    {"collect-ip-address", &Preferences::collectIpAddress},
    {"collect-location", &Preferences::collectLocation},
    {"collect-carrier", &Preferences::collectCarrier},
    {"dark", &Preferences::dark},
}};

constexpr std::array<std::pair<const char*, std::string Person::*>, 2> texts{{
    {"name", &Person::name},
    {"email", &Person::email},
}};

}  // namespace

Preferences Preferences::read(const std::filesystem::path& file) {
    Preferences read;
    const KeyFile keys(g_key_file_new());
    if (g_key_file_load_from_file(keys.get(), file.c_str(), G_KEY_FILE_NONE, nullptr) == FALSE) return read;
    for (const auto& [key, field] : switches) {
        GError* error = nullptr;
        const bool value = g_key_file_get_boolean(keys.get(), group, key, &error) != FALSE;
        if (error == nullptr) read.*field = value;
        g_clear_error(&error);
    }
    for (const auto& [key, field] : texts) {
        const std::unique_ptr<char, decltype(&g_free)> value(g_key_file_get_string(keys.get(), group, key, nullptr),
                                                             &g_free);
        if (value != nullptr) read.person.*field = value.get();
    }
    return read;
}

void Preferences::write(const std::filesystem::path& file) const {
    const KeyFile keys(g_key_file_new());
    for (const auto& [key, field] : switches) g_key_file_set_boolean(keys.get(), group, key, this->*field);
    for (const auto& [key, field] : texts) g_key_file_set_string(keys.get(), group, key, (person.*field).c_str());
    std::error_code ignored;
    std::filesystem::create_directories(file.parent_path(), ignored);
    g_key_file_save_to_file(keys.get(), file.c_str(), nullptr);
}

bool looksLikeEmail(const std::string& text) {
    const auto at = text.find('@');
    const auto dot = text.rfind('.');
    const bool hasBlanks = std::any_of(text.begin(), text.end(), [](char c) { return g_ascii_isspace(c); });
    return at != std::string::npos && at > 0 && dot != std::string::npos && dot > at + 1 && dot + 1 < text.size() &&
           !hasBlanks;
}

}  // namespace shop
