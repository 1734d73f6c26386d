#include "engine/worker/model/ObjectReading.h"

#include <algorithm>
#include <map>
#include <stdexcept>

#include "engine/worker/model/CimText.h"
#include "framework/ICIMClass.h"
#include "framework/ICIMProperty.h"
#include "framework/TVORException.h"

namespace engine::worker {
namespace {

using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using NZELVOR20::TVORException;

boost::shared_ptr<NZELVOR20::ICIMClass> classNamed(const Objects& objects, const char* name) {
  try {
    return objects->GetClass(name, {});
  } catch (const TVORException&) {
    return {};
  }
}

std::map<std::string, std::string> comparable(const TCIMReference& reference) {
  std::map<std::string, std::string> keys;
  for (const auto& key : reference.GetKeys()) {
    // A key may be a reference itself, whose namespace counts as little.
    const bool isReference = key.second.GetType() == NZELVOR20::ECIMType::eReference &&
                             !key.second.IsNull() && !key.second.IsArray();
    std::string text = key.second.ToString(10);
    if (isReference) text = text.substr(text.find(':') + 1);
    keys.emplace(lowered(key.first), std::move(text));
  }
  return keys;
}

}  // namespace

TCIMValue valueOf(const InstancePtr& instance, const char* name) {
  if (!instance) return {};
  try {
    const auto property = instance->GetProperty(name, {});
    return property ? property->GetValue({}) : TCIMValue();
  } catch (const TVORException&) {
    return {};
  }
}

std::string textOf(const InstancePtr& instance, const char* name) {
  const TCIMValue value = valueOf(instance, name);
  return value.IsNull() ? std::string() : value.ToString(10);
}

std::uint64_t numberOf(const InstancePtr& instance, const char* name, std::uint64_t otherwise) {
  const TCIMValue value = valueOf(instance, name);
  if (value.IsNull() || value.IsArray() || !isUnsigned(value.GetType())) return otherwise;
  return value.ToUint64();
}

InstancePtr endOf(const Objects& objects, const InstancePtr& association, const char* role) {
  const TCIMReference reference = valueOf(association, role).ToReference();
  const InstancePtr instance = objects->GetInstance(reference, {});
  if (!instance) throw std::runtime_error("no instance of " + reference.GetClassName());
  return instance;
}

void forEach(const Objects& objects, const char* className,
             const std::function<void(const InstancePtr&)>& take) {
  const auto theClass = classNamed(objects, className);
  if (!theClass) return;
  theClass->EnumerateInstances(
      [&take](const InstancePtr& instance) {
        if (instance) take(instance);
        return true;
      },
      true, {});
}

bool sameObject(const TCIMReference& left, const TCIMReference& right) {
  return sameName(left.GetClassName(), right.GetClassName()) &&
         comparable(left) == comparable(right);
}

bool isBelow(const boost::shared_ptr<NZELVOR20::ICIMClass>& theClass, const char* ancestor) {
  for (auto one = theClass; one; one = one->GetSuperclass({})) {
    if (sameName(one->GetName(), ancestor)) return true;
  }
  return false;
}

}  // namespace engine::worker
