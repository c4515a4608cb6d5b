#pragma once

#include <cstddef>
#include <cstdint>
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
        [[nodiscard]] std::string version() const;  // another one for another text
    };
    [[nodiscard]] Source sourceFor(const Endpoint& endpoint, const std::string& partner) const;

    struct Outcome {
        std::string refusal;  // a sentence, empty when all is well
        bool outdated = false;
    };
    /// Puts a text in place of a file; `partner` empty: of the one for everybody. Where `basedOn` is not empty and no
    /// more the version in force, somebody else has changed it meanwhile: then nothing changes.
    [[nodiscard]] Outcome edit(const Endpoint& endpoint, const std::string& partner, const std::string& text,
                               const std::string& basedOn);
    /// The file counts again; `basedOn` as above.
    [[nodiscard]] Outcome takeBack(const Endpoint& endpoint, const std::string& partner, const std::string& basedOn);

private:
    using Place = std::pair<std::string, std::string>;  // partner, file
    using Edits = std::map<Place, std::string>;

    template <typename Change>
    [[nodiscard]] Outcome change(const Endpoint& endpoint, const std::string& partner, const std::string& basedOn,
                                 const Change& change);

    [[nodiscard]] std::optional<std::string> editedText(const Endpoint& endpoint, const std::string& partner) const;

    const std::filesystem::path directory_;
    mutable Mutex mutex_;
    Edits edited_ ORBINEL_GUARDED_BY(mutex_);
    std::uint64_t changes_ ORBINEL_GUARDED_BY(mutex_) = 0;  // so many have been made
};

}  // namespace orbinel::tool
