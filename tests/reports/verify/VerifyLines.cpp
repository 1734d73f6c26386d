#include <iostream>

#include "reports/verify/OcpVerifier.h"

/// Writes the number of each line of standard input that does not follow the schema, and "object"
/// behind it where something else stands in the place of an object.
int main() {
  reports::verifyOcp(std::cin, "standard input", [](const reports::Finding& finding) {
    if (finding.rule == reports::Rule::kSchema) std::cout << finding.line << '\n';
    if (finding.rule == reports::Rule::kObject) std::cout << finding.line << " object\n";
  });
}
