#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "apps/orbinel/play/arguments.hpp"
#include "orbinel/value.hpp"

namespace orbinel::tool {

/// One line of a `where`: a place in an entry and what has to stand there.
struct Condition {
    struct Contains {
        std::string text;
    };
    struct Absent {};

    std::vector<std::string> path;  // the parts of a JSON pointer (RFC 6901)
    std::variant<Value, Contains, Absent> wanted;
};

/// Which trace entries are meant: those of the kind that meet every condition.
struct EntryPattern {
    std::string kind;
    std::vector<Condition> where;

    [[nodiscard]] bool matches(const Value& entry) const;
};

struct Expectation {
    EntryPattern pattern;
    std::size_t least = 1;
    std::optional<std::size_t> most;

    [[nodiscard]] bool holdsFor(std::size_t found) const { return found >= least && (!most || found <= *most); }
};

/// Reads `{"in": KIND, "where": {…}}` and, for an expectation, "count". Throws `Unusable`.
[[nodiscard]] EntryPattern readPattern(const Value& json, ArgumentReader& arguments);
[[nodiscard]] Expectation readExpectation(const Value& json, ArgumentReader& arguments);

/// The content of an expectation's `where`, in words, for a report of one that failed.
[[nodiscard]] std::string inWords(const Expectation& expectation);

}  // namespace orbinel::tool
