#include "substitute/cmpi.nsp/query/DataObject.h"

#include "framework/TVORException.h"

namespace cmpinsp::query {

using NZELVOR20::TCIMValue;

std::optional<TCIMValue> DataObject::property(const std::string& name) const {
  if (const TCIMValue* value = m_data.find(name)) return *value;
  if (const TCIMValue* key = m_data.path.findKey(name)) return *key;
  if (!m_data.declaration) return TCIMValue();
  throw NZELVOR20::TVORException(
      NZELVOR20::TVORStatusCode(NZELVOR20::eVORNoSuchProperty,
                                "class " + m_data.path.className + " has no property " + name));
}

bool isOfSelectedClass(const Query& query, const InstanceData& data,
                       const ClassRepository& classes) {
  const std::string& className = data.path.className;
  return query.className.empty() || classes.isA(className, query.className) ||
         !classes.knows(className);
}

bool selects(const Query& query, const InstanceData& data, const ClassRepository& classes) {
  return isOfSelectedClass(query, data, classes) &&
         evaluate(query, DataObject(data, classes)) == Truth::kTrue;
}

}  // namespace cmpinsp::query
