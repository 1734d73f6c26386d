#include "substitute/cmpi.nsp/broker/objects/queries/SubCondObject.h"

#include "substitute/cmpi.nsp/broker/objects/NamedValues.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/queries/PredicateObject.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp::broker {
namespace {

CMPICount getCount(const CMPISubCond* sc, CMPIStatus* st) noexcept {
  return answer(st, CMPICount{0},
                [&] { return static_cast<CMPICount>(bodyOf<SubCondBody>(sc).group->size()); });
}

CMPIPredicate* getPredicateAt(const CMPISubCond* sc, CMPICount index, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIPredicate*>(nullptr), [&] {
    Handle& handle = handleOf(sc, Kind::kSubCond);
    const query::Group& group = *bodyOf<SubCondBody>(handle).group;
    if (index >= group.size()) noSuchIndex(index);
    return makeChild(handle, std::make_unique<PredicateBody>(group[index]));
  });
}

/// The first one of that property.
CMPIPredicate* getPredicate(const CMPISubCond* sc, const char* name, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIPredicate*>(nullptr), [&]() -> CMPIPredicate* {
    Handle& handle = handleOf(sc, Kind::kSubCond);
    const std::string wanted = required(name, "the property's name");
    for (const auto& predicate : *bodyOf<SubCondBody>(handle).group) {
      if (!vorcore::equalNames(predicate->property, wanted)) continue;
      return makeChild(handle, std::make_unique<PredicateBody>(predicate));
    }
    noSuchValue(name);
  });
}

}  // namespace

const CMPISubCondFT kSubCondTable = {CMPICurrentVersion, release<SubCondBody>, clone<SubCondBody>,
                                     getCount,           getPredicateAt,       getPredicate};

}  // namespace cmpinsp::broker
