#include "substitute/cmpi.nsp/broker/objects/queries/SelectExpObject.h"

#include <memory>

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"
#include "substitute/cmpi.nsp/broker/objects/queries/AccessorObject.h"
#include "substitute/cmpi.nsp/broker/objects/queries/SelectCondObject.h"
#include "substitute/cmpi.nsp/query/DataObject.h"

namespace cmpinsp::broker {

SelectExpBody::SelectExpBody(const std::string& language, const std::string& text)
    : query(std::make_shared<const query::Query>(
          query::parseQuery(query::languageNamed(language), text))) {}

namespace {

using query::Form;
using query::Truth;

CMPIBoolean evaluate(const CMPISelectExp* se, const CMPIInstance* inst, CMPIStatus* st) noexcept {
  return answer(st, CMPI_false, [&] {
    const Handle& handle = handleOf(se, Kind::kSelectExp);
    const InstanceData& data = bodyOf<InstanceBody>(inst).data();
    const Broker::Upcalls upcalls(*handle.broker);
    const query::Query& query = *bodyOf<SelectExpBody>(handle).query;
    return query::selects(query, data, upcalls->classes()) ? CMPI_true : CMPI_false;
  });
}

CMPIString* getString(const CMPISelectExp* se, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIString*>(nullptr), [&] {
    Handle& handle = handleOf(se, Kind::kSelectExp);
    return childString(handle, bodyOf<SelectExpBody>(handle).query->text);
  });
}

template <Form form>
CMPISelectCond* getCondition(const CMPISelectExp* se, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPISelectCond*>(nullptr), [&] {
    Handle& handle = handleOf(se, Kind::kSelectExp);
    const query::Query& query = *bodyOf<SelectExpBody>(handle).query;
    return makeChild(handle,
                     std::make_unique<SelectCondBody>(form, query::normalForm(query, form)));
  });
}

CMPIBoolean evaluateUsingAccessor(const CMPISelectExp* se, CMPIAccessor* fn, void* parm,
                                  CMPIStatus* st) noexcept {
  return answer(st, CMPI_false, [&] {
    const Handle& handle = handleOf(se, Kind::kSelectExp);
    const AccessorObject object(*handle.broker, fn, parm);
    const Truth truth = query::evaluate(*bodyOf<SelectExpBody>(handle).query, object);
    return truth == Truth::kTrue ? CMPI_true : CMPI_false;
  });
}

}  // namespace

const CMPISelectExpFT kSelectExpTable = {CMPICurrentVersion,
                                         release<SelectExpBody>,
                                         clone<SelectExpBody>,
                                         evaluate,
                                         getString,
                                         getCondition<Form::kOrOfAnds>,
                                         getCondition<Form::kAndOfOrs>,
                                         evaluateUsingAccessor};

}  // namespace cmpinsp::broker
