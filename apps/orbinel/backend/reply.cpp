#include "apps/orbinel/backend/reply.hpp"

#include <glib.h>

#include "apps/orbinel/backend/json_writing.hpp"

namespace orbinel::tool {

Reply refusal(int status, std::string clause) {
    auto sentence = clause + '.';
    sentence.front() = g_ascii_toupper(sentence.front());
    return {status, errorBody(sentence), {}, {}, std::move(clause)};
}

}  // namespace orbinel::tool
