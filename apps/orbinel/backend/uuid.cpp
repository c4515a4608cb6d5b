#include "apps/orbinel/backend/uuid.hpp"

#include <glib.h>

namespace orbinel::tool {

std::string freshUuid() {
    gchar* text = g_uuid_string_random();
    std::string uuid(text);
    g_free(text);
    return uuid;
}

}  // namespace orbinel::tool
