#include "substitute/cmpi.nsp/broker/objects/queries/SelectCondObject.h"

#include "substitute/cmpi.nsp/broker/objects/NamedValues.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/queries/SubCondObject.h"

namespace cmpinsp::broker {
namespace {

CMPICount getCountAndType(const CMPISelectCond* sc, int* type, CMPIStatus* st) noexcept {
  return answer(st, CMPICount{0}, [&] {
    const SelectCondBody& body = bodyOf<SelectCondBody>(sc);
    if (type != nullptr) {
      *type = body.form == query::Form::kOrOfAnds ? CMPI_COND_DOC : CMPI_COND_COD;
    }
    return static_cast<CMPICount>(body.groups->size());
  });
}

CMPISubCond* getSubCondAt(const CMPISelectCond* sc, CMPICount index, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPISubCond*>(nullptr), [&] {
    Handle& handle = handleOf(sc, Kind::kSelectCond);
    const auto& groups = bodyOf<SelectCondBody>(handle).groups;
    if (index >= groups->size()) noSuchIndex(index);
    return makeChild(handle, std::make_unique<SubCondBody>(
                                 std::shared_ptr<const query::Group>(groups, &(*groups)[index])));
  });
}

}  // namespace

const CMPISelectCondFT kSelectCondTable = {CMPICurrentVersion, release<SelectCondBody>,
                                           clone<SelectCondBody>, getCountAndType, getSubCondAt};

}  // namespace cmpinsp::broker
