#include "substitute/cmpi.nsp/broker/objects/EnumerationObject.h"

#include "substitute/cmpi.nsp/broker/objects/ArrayObject.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/objects/ObjectPathObject.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

CMPIData itemAt(Handle& handle, std::size_t position) {
  const EnumerationBody& body = bodyOf<EnumerationBody>(handle);
  CMPIData data{};
  if (body.isOfInstances) {
    data.type = CMPI_instance;
    data.value.inst =
        makeChild(handle, std::make_unique<InstanceBody>(body.instances[position], body.names()));
  } else {
    data.type = CMPI_ref;
    data.value.ref = makeChild(handle, std::make_unique<ObjectPathBody>(body.paths[position]));
  }
  return data;
}

CMPIData getNext(const CMPIEnumeration* en, CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(en, Kind::kEnumeration);
    EnumerationBody& body = bodyOf<EnumerationBody>(handle);
    if (body.next >= body.size()) {
      throw Failure(CMPI_RC_NO_MORE_ELEMENTS, "the enumeration is at its end");
    }
    const CMPIData data = itemAt(handle, body.next);
    ++body.next;
    return data;
  });
}

CMPIBoolean hasNext(const CMPIEnumeration* en, CMPIStatus* st) noexcept {
  return answer(st, CMPI_false, [&] {
    const EnumerationBody& body = bodyOf<EnumerationBody>(en);
    return body.next < body.size() ? CMPI_true : CMPI_false;
  });
}

boost::shared_ptr<NZELVOR20::ICIMNamespace> namespaceOf(const Handle& handle) {
  if (handle.broker == nullptr) return {};
  return handle.broker->namespaceHandle();
}

CMPIArray* toArray(const CMPIEnumeration* en, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIArray*>(nullptr), [&] {
    Handle& handle = handleOf(en, Kind::kEnumeration);
    const EnumerationBody& body = bodyOf<EnumerationBody>(handle);
    const auto ns = namespaceOf(handle);
    std::vector<TCIMValue> elements;
    elements.reserve(body.size());
    for (const InstanceDataPtr& instance : body.instances) {
      elements.push_back(TCIMValue::Instance(makeInstance(filtered(instance, body.names()), ns)));
    }
    for (const ObjectPath& path : body.paths) elements.emplace_back(referenceTo(path, ns));
    const ECIMType type = body.isOfInstances ? ECIMType::eInstance : ECIMType::eReference;
    return makeChild(handle, std::make_unique<ArrayBody>(type, std::move(elements)));
  });
}

}  // namespace

const CMPIEnumerationFT kEnumerationTable = {CMPICurrentVersion,
                                             release<EnumerationBody>,
                                             clone<EnumerationBody>,
                                             getNext,
                                             hasNext,
                                             toArray};

}  // namespace cmpinsp::broker
