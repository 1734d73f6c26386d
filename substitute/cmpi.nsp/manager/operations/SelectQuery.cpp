#include "substitute/cmpi.nsp/manager/operations/SelectQuery.h"

#include <sstream>
#include <vector>

#include "framework/TVORException.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

SelectQuery SelectQuery::parse(const std::string& query) {
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

}  // namespace cmpinsp
