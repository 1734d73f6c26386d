#include "substitute/cmpi.nsp/broker/objects/queries/EnumerationFilterObject.h"

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/query/DataObject.h"

namespace cmpinsp::broker {

EnumerationFilterBody::EnumerationFilterBody(const std::string& language, const std::string& text)
    : query(std::make_shared<const query::Query>(
          query::parseQuery(query::languageNamed(language), text))) {}

namespace {

CMPIBoolean match(const CMPIEnumerationFilter* ef, const CMPIInstance* inst,
                  CMPIStatus* st) noexcept {
  return answer(st, CMPI_false, [&] {
    const Handle& handle = handleOf(ef, Kind::kEnumerationFilter);
    const InstanceData& data = bodyOf<InstanceBody>(inst).data();
    const Broker::Upcalls upcalls(*handle.broker);
    const query::Query& query = *bodyOf<EnumerationFilterBody>(handle).query;
    return query::selects(query, data, upcalls->classes()) ? CMPI_true : CMPI_false;
  });
}

}  // namespace

const CMPIEnumerationFilterFT kEnumerationFilterTable = {
    CMPICurrentVersion, release<EnumerationFilterBody>, clone<EnumerationFilterBody>, match};

}  // namespace cmpinsp::broker
