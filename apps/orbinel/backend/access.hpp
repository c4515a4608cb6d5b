#pragma once

#include <httplib.h>

#include <string>

namespace orbinel::tool {

/// Why a request may not be served, a clause; empty when it may.
///
/// The backend is for this machine. A page of a foreign site that is open in a browser here must neither read what it
/// remembers, by a name of its own that leads to the loopback address, nor change anything.
[[nodiscard]] std::string accessProblem(const httplib::Request& request, int port);

/// Whether a browser says that another site asks for what only the inspector page and tools are to read.
[[nodiscard]] bool comesFromAnotherSite(const httplib::Request& request);

}  // namespace orbinel::tool
