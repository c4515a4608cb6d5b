#pragma once

#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "orbinel/value.hpp"

namespace orbinel::tool {

/// Why a scenario cannot be played: a clause on one line, without a capital letter or an end mark.
struct Unusable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The text in double quotes, shortened, and with escapes for what would break the line.
[[nodiscard]] std::string inQuotes(std::string_view text);

/// What kind of value it is, in words ("a text"), for a clause.
[[nodiscard]] std::string_view kindInWords(const Value& value) noexcept;

/// The keys of one JSON object of a scenario. Throws `Unusable` for what is not as it must be; `what` names the object
/// or the value there.
class Fields {
public:
    /// `value` must outlive this.
    Fields(const Value& value, std::string what);

    /// Nothing where the key is missing.
    [[nodiscard]] const Value* find(std::string_view key);
    [[nodiscard]] const Value& require(std::string_view key);

    /// Throws when there is a key that nobody has asked for.
    void expectNoOthers() const;

private:
    const Dictionary& dictionary_;
    std::string what_;
    std::set<std::string, std::less<>> known_;
};

/// The content where the value is of that kind.
[[nodiscard]] const std::string& requireText(const Value& value, std::string_view what);
[[nodiscard]] bool requireBoolean(const Value& value, std::string_view what);
[[nodiscard]] const Array& requireArray(const Value& value, std::string_view what);
[[nodiscard]] const Dictionary& requireDictionary(const Value& value, std::string_view what);
[[nodiscard]] std::vector<std::string> requireTexts(const Value& value, std::string_view what);

/// A number within the bounds, both included.
[[nodiscard]] double requireNumber(const Value& value, std::string_view what, double lowest, double highest);
[[nodiscard]] std::int64_t requireWholeNumber(const Value& value, std::string_view what, std::int64_t lowest,
                                              std::int64_t highest);

}  // namespace orbinel::tool
