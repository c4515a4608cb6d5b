#pragma once

#include <filesystem>
#include <string>

namespace shop {

/// Who is logged in.
struct Person {
    std::string name;
    std::string email;
};

/// What the person has decided, kept in a small file: the library keeps consents itself, but collection switches have
/// to be set again at each launch.
struct Preferences {
    Person person;  // an empty e-mail address: nobody is logged in
    bool consent = true;
    bool consentOnDevice = true;
    bool collectAdvertisingId = false;
    bool collectIpAddress = true;
    bool collectLocation = true;
    bool collectCarrier = true;
    bool dark = false;

    [[nodiscard]] bool isLoggedIn() const { return !person.email.empty(); }

    /// What is missing or unreadable is as above.
    [[nodiscard]] static Preferences read(const std::filesystem::path& file);

    /// A file that cannot be written costs only the memory of it.
    void write(const std::filesystem::path& file) const;
};

/// Something before an "@", something with a dot after it, and no blanks.
[[nodiscard]] bool looksLikeEmail(const std::string& text);

}  // namespace shop
