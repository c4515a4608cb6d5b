#pragma once

#include <map>
#include <string>
#include <vector>

namespace orbinel::testing {

/// One operation that the headers of applications (include/orbinel/*.hpp) declare. Constructors, operators, overloads
/// on a temporary and what is deleted are none.
struct PublicOperation {
    std::string owner;  // the class; empty for a function of its own
    std::string name;
    std::vector<std::string> arguments;  // their names, in order

    /// The name that diagnoses and scenarios use: "sendError:desc:".
    [[nodiscard]] std::string fullName() const;
};

/// Those of one header, by its path below include/orbinel.
[[nodiscard]] std::vector<PublicOperation> operationsOfHeader(const std::string& file);

[[nodiscard]] std::vector<PublicOperation> publicOperations();

/// What the facade's header says above each function, by the function's name: the comment of its group, and behind it
/// the title of its section.
[[nodiscard]] std::map<std::string, std::string> facadeContracts();

/// A header as the compiler sees it, of the folder include/orbinel.
[[nodiscard]] std::string publicHeaderWithoutComments(const std::string& file);

}  // namespace orbinel::testing
