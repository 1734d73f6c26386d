#pragma once

#include <exception>
#include <optional>
#include <string>

#include "substitute/cmpi.nsp/query/Query.h"

namespace cmpinsp {

/// A query as far as it is understood here: a provider may know other languages, and more of one.
struct ReadQuery {
  std::optional<query::Query> query;  ///< selects from a class, where it is there
  std::exception_ptr refusal;         ///< why it is not

  /// Throws `QueryError` (syntax) for what is no query of its language.
  static ReadQuery of(const std::string& language, const std::string& text);
};

/// As much of a "select ... from Class ..." query as it takes to route it, in any language.
struct SelectQuery {
  std::string className;
  bool selectsEverything = false;  ///< "select * from Class" without a condition

  /// Throws `TVORException` (invalid query) for what is no query of its language, and where no
  /// class can be found.
  static SelectQuery parse(const std::string& language, const std::string& query);
};

}  // namespace cmpinsp
