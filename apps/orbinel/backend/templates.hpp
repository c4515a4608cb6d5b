#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "apps/orbinel/backend/reading.hpp"
#include "apps/orbinel/backend/reply.hpp"

namespace orbinel::tool {

/// Who asks for which page: /templates/NAME/UDID/USER/LANGUAGE.
struct TemplateAddress {
    std::string name;
    std::string device;
    std::string user;
    std::string language;  // empty: the device has none
};

[[nodiscard]] bool isTemplatePath(std::string_view path);

/// Nothing for a path that lacks a part, has one too many or has a name with other characters than a-z, 0-9, _ and -.
[[nodiscard]] std::optional<TemplateAddress> templateAddressOf(std::string_view path);

/// Never fails: whatever is wrong with the request becomes `problem`.
[[nodiscard]] Reading readTemplateRequest(const Incoming& request);

/// The pages of in-app messages, HTML files read from a directory at every request so that people can edit them. They
/// go out with a policy that lets them do nothing but run their own inline scripts and send actions to the application.
///
/// Threads: any. Failure: a page that cannot be read is answered with 404.
class Templates {
public:
    explicit Templates(std::filesystem::path directory) : directory_(std::move(directory)) {}

    [[nodiscard]] Reply reply(const TemplateAddress& address) const;

private:
    const std::filesystem::path directory_;
};

}  // namespace orbinel::tool
