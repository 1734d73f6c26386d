#pragma once

#include <string>

namespace cmpinsp {

/// As much of a "select ... from Class ..." query as it takes to route it; the provider reads the
/// rest.
struct SelectQuery {
  std::string className;
  bool selectsEverything = false;  ///< "select * from Class" without a condition

  /// Throws `TVORException` (invalid query) where no class can be found.
  static SelectQuery parse(const std::string& query);
};

}  // namespace cmpinsp
