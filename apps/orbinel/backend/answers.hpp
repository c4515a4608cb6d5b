#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "apps/orbinel/backend/endpoints.hpp"

namespace orbinel::tool {

/// The bodies that the backend answers with, read from a directory at every request so that people can edit them. The
/// files of a subdirectory that is named after the request's partner come first.
///
/// Threads: any. Failure: a file that is broken is reported in one sentence on stderr and stands for itself no more:
/// the endpoint's neutral answer takes its place.
class Answers {
public:
    explicit Answers(std::filesystem::path directory) : directory_(std::move(directory)) {}

    /// Valid JSON. `${origin}` has become the backend's own address and `${uuid}` a fresh identifier, the same in the
    /// whole answer.
    [[nodiscard]] std::string bodyFor(const Endpoint& endpoint, const std::string& partner,
                                      std::string_view origin) const;

private:
    [[nodiscard]] std::filesystem::path fileOf(const Endpoint& endpoint, const std::string& partner) const;

    std::filesystem::path directory_;
};

}  // namespace orbinel::tool
