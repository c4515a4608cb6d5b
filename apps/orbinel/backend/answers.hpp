#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "apps/orbinel/backend/endpoints.hpp"
#include "base/mutex.hpp"

namespace orbinel::tool {

/// The bodies that the backend answers with, read from a directory at every request so that people can edit them. The
/// files of a subdirectory that is named after the request's partner come first. What is edited on the inspector page
/// stands in place of a file until it is taken back, and changes no file.
///
/// Threads: any. Failure: a file that is broken is reported in one sentence on stderr and stands for itself no more:
/// the endpoint's neutral answer takes its place. Bounds: 200 edited answers of at most 1 MB.
class Answers {
public:
    explicit Answers(std::filesystem::path directory) : directory_(std::move(directory)) {}

    /// Valid JSON. `${origin}` has become the backend's own address and `${uuid}` a fresh identifier, the same in the
    /// whole answer.
    [[nodiscard]] std::string bodyFor(const Endpoint& endpoint, const std::string& partner,
                                      std::string_view origin) const;

    enum class Origin { edited, file, builtIn };
    struct Source {
        std::string text;  // valid JSON, its placeholders as they stand
        Origin origin;
    };
    [[nodiscard]] Source sourceFor(const Endpoint& endpoint, const std::string& partner) const;

    /// Puts a text in place of a file; `partner` empty: of the one for everybody. Returns why not, a sentence, empty
    /// when all is well.
    [[nodiscard]] std::string edit(const Endpoint& endpoint, const std::string& partner, const std::string& text);
    /// The file counts again.
    void takeBack(const Endpoint& endpoint, const std::string& partner);

private:
    using Place = std::pair<std::string, std::string>;  // partner, file

    [[nodiscard]] std::optional<std::string> editedText(const Endpoint& endpoint, const std::string& partner) const;

    const std::filesystem::path directory_;
    mutable Mutex mutex_;
    std::map<Place, std::string> edited_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel::tool
