#pragma once

#include <string>
#include <string_view>

namespace orbinel::tool {

/// The ID that an identity request is answered with: the "id" of the answer file, else the request's own "orbinel_id",
/// else one that depends on the identifiers alone (the same person gets the same ID), else a new one.
///
/// Both texts are valid JSON; an empty `payload` stands for none.
[[nodiscard]] std::string identityFor(std::string_view payload, std::string_view answerFile);

}  // namespace orbinel::tool
