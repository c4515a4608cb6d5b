#include "apps/orbinel/decode/options.hpp"

#include <iostream>
#include <utility>

namespace orbinel::tool {

OptionParser::OptionParser(std::string subcommand, std::string_view operands, std::string_view about)
    : subcommand_(std::move(subcommand)), context_(g_option_context_new(std::string(operands).c_str())) {
    g_option_context_set_summary(context_, std::string(about).c_str());
    // GLib's own --help ends the process from inside the parser.
    g_option_context_set_help_enabled(context_, FALSE);
    addEntry("help", G_OPTION_ARG_NONE, &help_, "show this help", nullptr);
}

OptionParser::~OptionParser() {
    for (auto& text : texts_) g_free(text.value);
    g_option_context_free(context_);
}

void OptionParser::addEntry(const char* name, GOptionArg kind, gpointer storage, const char* about,
                            const char* placeholder) {
    const GOptionEntry entries[] = {{name, 0, 0, kind, storage, about, placeholder}, {}};
    g_option_context_add_main_entries(context_, entries, nullptr);
}

void OptionParser::addFlag(const char* name, const char* about, bool& target) {
    auto& flag = flags_.emplace_back();
    flag.target = &target;
    addEntry(name, G_OPTION_ARG_NONE, &flag.value, about, nullptr);
}

void OptionParser::addText(const char* name, const char* placeholder, const char* about,
                           std::optional<std::string>& target) {
    auto& text = texts_.emplace_back();
    text.target = &target;
    // The kind for file names takes bytes as they stand; the one for strings converts them from the locale.
    addEntry(name, G_OPTION_ARG_FILENAME, &text.value, about, placeholder);
}

std::optional<std::vector<std::string>> OptionParser::parse(std::span<const std::string> arguments) {
    const std::string program = "orbinel " + subcommand_;
    g_set_prgname(program.c_str());
    GStrvBuilder* builder = g_strv_builder_new();
    g_strv_builder_add(builder, program.c_str());
    for (const auto& argument : arguments) g_strv_builder_add(builder, argument.c_str());
    gchar** words = g_strv_builder_end(builder);
    g_strv_builder_unref(builder);

    GError* error = nullptr;
    const bool parsed = g_option_context_parse_strv(context_, &words, &error) != FALSE;
    std::vector<std::string> operands;
    for (gchar** word = words; parsed && *word != nullptr; ++word) operands.emplace_back(*word);
    g_strfreev(words);
    if (!parsed) {
        exitStatus_ = misuse(error->message);
        g_error_free(error);
        return std::nullopt;
    }
    if (help_) {
        gchar* text = g_option_context_get_help(context_, TRUE, nullptr);
        std::cout << text;
        g_free(text);
        return std::nullopt;
    }
    operands.erase(operands.begin());  // the program
    if (!operands.empty() && operands.front() == "--") operands.erase(operands.begin());
    for (auto& flag : flags_) *flag.target = flag.value != FALSE;
    for (auto& text : texts_) {
        if (text.value != nullptr) *text.target = text.value;
    }
    return operands;
}

int OptionParser::misuse(std::string_view sentence) {
    std::cerr << "orbinel " << subcommand_ << ": " << sentence << ". See orbinel " << subcommand_ << " --help.\n";
    return exitMisuse;
}

}  // namespace orbinel::tool
