#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"

#include "substitute/cmpi.nsp/broker/objects/ObjectPathObject.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::TCIMValue;

CMPIData getProperty(const CMPIInstance* inst, const char* name, CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(inst, Kind::kInstance);
    const TCIMValue* value =
        bodyOf<InstanceBody>(handle).find(required(name, "the property's name"));
    if (value == nullptr) noSuchValue(name);
    return dataOf(handle, *value);
  });
}

CMPIData getPropertyAt(const CMPIInstance* inst, CMPICount index, CMPIString** name,
                       CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(inst, Kind::kInstance);
    const std::string* text = nullptr;
    const TCIMValue* value = nullptr;
    if (!bodyOf<InstanceBody>(handle).at(index, text, value)) noSuchIndex(index);
    const CMPIData data = dataOf(handle, *value);
    if (name != nullptr) *name = childString(handle, *text);
    return data;
  });
}

CMPICount getPropertyCount(const CMPIInstance* inst, CMPIStatus* st) noexcept {
  return answer(st, CMPICount{0},
                [&] { return static_cast<CMPICount>(bodyOf<InstanceBody>(inst).count()); });
}

CMPIStatus setProperty(const CMPIInstance* inst, const char* name, const CMPIValue* value,
                       CMPIType type) noexcept {
  return perform([&] {
    InstanceBody& body = bodyOf<InstanceBody>(inst);
    body.set(required(name, "the property's name"), readValue(value, type));
  });
}

CMPIObjectPath* getObjectPath(const CMPIInstance* inst, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIObjectPath*>(nullptr), [&] {
    Handle& handle = handleOf(inst, Kind::kInstance);
    const ObjectPath& path = bodyOf<InstanceBody>(handle).data().path;
    return makeChild(handle, std::make_unique<ObjectPathBody>(path));
  });
}

CMPIStatus setPropertyFilter(const CMPIInstance* inst, const char** props,
                             const char** keys) noexcept {
  return perform([&] { bodyOf<InstanceBody>(inst).setFilter(props, keys); });
}

CMPIStatus setObjectPath(const CMPIInstance* inst, const CMPIObjectPath* path) noexcept {
  return perform([&] { bodyOf<InstanceBody>(inst).setPath(bodyOf<ObjectPathBody>(path).path); });
}

CMPIStatus setPropertyWithOrigin(const CMPIInstance* inst, const char* name, const CMPIValue* value,
                                 const CMPIType type, const char*) noexcept {
  // The class declaration says where a property comes from.
  return setProperty(inst, name, value, type);
}

}  // namespace

const CMPIInstanceFT kInstanceTable = {
    CMPICurrentVersion, release<InstanceBody>, clone<InstanceBody>,  getProperty,
    getPropertyAt,      getPropertyCount,      setProperty,          getObjectPath,
    setPropertyFilter,  setObjectPath,         setPropertyWithOrigin};

}  // namespace cmpinsp::broker
