#include "substitute/cmpi.nsp/manager/operations/SelectQuery.h"

#include <sstream>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/query/QueryError.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {
namespace {

/// Finds the class in a query of any language that looks like this.
SelectQuery route(const std::string& query) {
  std::istringstream stream(query);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  SelectQuery select;
  for (std::size_t at = 1; at + 1 < words.size(); ++at) {
    if (!vorcore::equalNames(words[at], "from")) continue;
    select.className = words[at + 1];
    select.selectsEverything = at == 2 && words[1] == "*" && words.size() == 4;
    break;
  }
  if (select.className.empty() || !vorcore::equalNames(words.front(), "select")) {
    throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(
        NZELVOR20::eVORInvalidQuery, "\"" + query + "\" does not select from a class"));
  }
  return select;
}

}  // namespace

ReadQuery ReadQuery::of(const std::string& language, const std::string& text) {
  ReadQuery read;
  try {
    query::Query query = query::parseQuery(query::languageNamed(language), text);
    if (query.className.empty()) {
      throw query::QueryError(query::Refusal::kFeature, "a filter selects from no class");
    }
    read.query = std::move(query);
  } catch (const query::QueryError& error) {
    if (error.refusal() == query::Refusal::kSyntax) throw;
    read.refusal = std::current_exception();
  }
  return read;
}

SelectQuery SelectQuery::parse(const std::string& language, const std::string& query) {
  const ReadQuery read = ReadQuery::of(language, query);
  if (!read.query) return route(query);
  return {read.query->className, read.query->selectsAll && !read.query->condition};
}

}  // namespace cmpinsp
