#include "substitute/cmpi.nsp/manager/face/CmpiInstance.h"

#include <boost/make_shared.hpp>
#include <utility>

#include "framework/ICIMClass.h"
#include "substitute/cmpi.nsp/manager/face/CmpiNamespace.h"
#include "substitute/cmpi.nsp/manager/face/CmpiProperty.h"
#include "substitute/cmpi.nsp/manager/face/Failure.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp {

using namespace NZELVOR20;

namespace {

constexpr std::size_t kNoProperty = vorcore::ClassDeclaration::kNoProperty;

std::size_t positionOf(const InstanceData& data, const std::string& name) {
  if (data.declaration) {
    const std::size_t declared = data.declaration->findProperty(name);
    if (declared < data.values.size()) return declared;
  }
  for (std::size_t at = 0; at < data.extras.size(); ++at) {
    if (vorcore::equalNames(data.extras[at].first, name)) return data.values.size() + at;
  }
  return kNoProperty;
}

}  // namespace

boost::shared_ptr<ICIMNamespace> CmpiInstance::requireNamespace() const {
  boost::shared_ptr<ICIMNamespace> ns = m_namespace.lock();
  if (ns) return ns;
  throw failure(eVORInvalidNamespace, "the namespace of " + m_data->path.className + " is gone");
}

TCIMReference CmpiInstance::GetObjectPath(TOptionsMap) {
  boost::shared_ptr<ICIMNamespace> ns = m_namespace.lock();
  if (auto* served = dynamic_cast<TCMPINamespace*>(ns.get())) {
    if (boost::shared_ptr<ICIMNamespace> upcall = served->GetUpcallNamespace()) ns = upcall;
  }
  return referenceTo(m_data->path, ns);
}

boost::shared_ptr<ICIMProperty> CmpiInstance::GetProperty(std::string name, TOptionsMap) {
  const std::size_t position = positionOf(*m_data, name);
  if (position != kNoProperty) return boost::make_shared<CmpiProperty>(m_data, position);
  throw failure(eVORNoSuchProperty, m_data->path.className + "." + name);
}

void CmpiInstance::SetProperty(std::string name, TCIMValue value, TOptionsMap) {
  const std::size_t position = positionOf(*m_data, name);
  const bool isOpen = !m_data->declaration || m_data->declaration->isOpen;
  if (position == kNoProperty && !isOpen) {
    throw failure(eVORNoSuchProperty, m_data->path.className + "." + name);
  }
  InstanceDataPtr changed = boost::make_shared<InstanceData>(*m_data);
  if (position == kNoProperty) {
    changed->extras.emplace_back(std::move(name), std::move(value));
  } else if (position >= changed->values.size()) {
    changed->extras[position - changed->values.size()].second = std::move(value);
  } else {
    const vorcore::PropertyDeclaration& property = changed->declaration->properties[position];
    changed->values[position] = vorcore::convertTo(value, property.type, property.isArray);
    if (property.isKey) changed->path.setKey(property.name, changed->values[position]);
  }
  m_data = std::move(changed);
}

boost::shared_ptr<ICIMClass> CmpiInstance::GetClass(TOptionsMap options) {
  return requireNamespace()->GetClass(m_data->path.className, std::move(options));
}

void CmpiInstance::EnumerateProperties(TPropertyCallback callback, TOptionsMap) {
  const InstanceDataPtr data = m_data;
  const std::size_t count = data->values.size() + data->extras.size();
  boost::shared_ptr<CmpiProperty> property;
  for (std::size_t position = 0; position < count; ++position) {
    // What the receiver has not kept serves once more.
    if (property && property.use_count() == 1) {
      property->moveTo(position);
    } else {
      property = boost::make_shared<CmpiProperty>(data, position);
    }
    if (!callback(property)) return;
  }
}

TCIMValue CmpiInstance::InvokeMethod(std::string name, TParameterMap& parameters, TOptionsMap) {
  const boost::shared_ptr<CmpiNamespace> server =
      cmpiNamespaceOf(requireNamespace(), m_data->path.className);
  const Arguments in(parameters.begin(), parameters.end());
  Arguments out;
  TCIMValue answer = server->manager().invokeMethod(m_data->path, name, in, out);
  parameters = TParameterMap(out.begin(), out.end());
  return answer;
}

}  // namespace cmpinsp
