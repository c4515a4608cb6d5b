#pragma once

#include <glib.h>

#include <list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orbinel::tool {

inline constexpr int exitSuccess = 0;
inline constexpr int exitFailure = 1;
inline constexpr int exitMisuse = 2;

/// The options of one subcommand, read by GLib: `--help` and misuse are answered in the same way everywhere.
///
/// Ending: targets must outlive `parse`, which writes them.
class OptionParser {
public:
    /// `operands` names what follows the options ("[FILE|-]", or nothing); `about` is shown above the list of options.
    OptionParser(std::string subcommand, std::string_view operands, std::string_view about);
    ~OptionParser();
    OptionParser(const OptionParser&) = delete;
    OptionParser& operator=(const OptionParser&) = delete;

    void addFlag(const char* name, const char* about, bool& target);
    void addText(const char* name, const char* placeholder, const char* about, std::optional<std::string>& target);

    /// The operands. Nothing when the command is to end with `exitStatus()`: after `--help`, or after misuse, of which
    /// one sentence has been written to stderr.
    [[nodiscard]] std::optional<std::vector<std::string>> parse(std::span<const std::string> arguments);
    [[nodiscard]] int exitStatus() const { return exitStatus_; }

    /// Writes the sentence with a hint to stderr and returns the exit status of misuse.
    int misuse(std::string_view sentence);

private:
    template <typename Stored, typename Target>
    struct Option {
        Stored value{};
        Target* target;
    };

    void addEntry(const char* name, GOptionArg kind, gpointer storage, const char* about, const char* placeholder);

    std::string subcommand_;
    int exitStatus_ = exitSuccess;
    gboolean help_ = FALSE;
    GOptionContext* context_;
    // Lists, since GLib keeps the addresses of their elements.
    std::list<Option<gboolean, bool>> flags_;
    std::list<Option<gchar*, std::optional<std::string>>> texts_;
};

}  // namespace orbinel::tool
