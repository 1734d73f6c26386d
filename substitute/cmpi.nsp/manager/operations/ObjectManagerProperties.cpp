#include <boost/make_shared.hpp>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"

/// Single properties: through the property interface where a provider offers it, else by way of the
/// whole instance.
namespace cmpinsp {

using NZELVOR20::TCIMValue;
using NZELVOR20::TVORException;
using NZELVOR20::TVORStatusCode;

/// False where no provider answers by its property interface. Registrations of most formats have no
/// word for that interface, so those of the instances are asked as well.
bool ObjectManager::askForProperty(const ObjectPath& path, const Question& question) const {
  requireClass(path.className);
  if (findStatic(typed(path))) return false;
  const std::vector<Route> routes = router()->towardsInstance(
      path.className, path.nameSpace, kPropertyInterface | kInstanceInterface);
  const Attempts attempts = askInTurn(path, routes, question);
  attempts.throwFailure();
  return attempts.anySuccess();
}

/// The name as the class writes it: providers compare it letter by letter.
std::string ObjectManager::declaredName(const std::string& className,
                                        const std::string& property) const {
  const vorcore::ClassDeclarationPtr declaration = m_classes->find(className);
  const std::size_t position =
      declaration ? declaration->findProperty(property) : vorcore::ClassDeclaration::kNoProperty;
  return position == vorcore::ClassDeclaration::kNoProperty
             ? property
             : declaration->properties[position].name;
}

void ObjectManager::setProperty(const ObjectPath& path, const std::string& name,
                                const TCIMValue& value) {
  const auto ask = [&](Provider& provider, const ObjectPath& asked) {
    provider.setProperty(asked, declaredName(path.className, name), value);
    return true;
  };
  if (askForProperty(path, ask)) return;
  InstanceDataPtr data = boost::make_shared<InstanceData>();
  data->path = path;
  data->declaration = m_classes->find(path.className);
  const std::size_t position = data->declaration ? data->declaration->findProperty(name)
                                                 : vorcore::ClassDeclaration::kNoProperty;
  if (position == vorcore::ClassDeclaration::kNoProperty) {
    data->extras.emplace_back(name, value);
  } else {
    const vorcore::PropertyDeclaration& property = data->declaration->properties[position];
    data->values.resize(data->declaration->properties.size());
    data->values[position] = vorcore::convertTo(value, property.type, property.isArray);
  }
  const std::vector<std::string> names{name};
  modifyInstance(path, data, &names);
}

TCIMValue ObjectManager::getProperty(const ObjectPath& path, const std::string& name) {
  TCIMValue answer;
  const auto ask = [&](Provider& provider, const ObjectPath& asked) {
    answer = provider.getProperty(asked, declaredName(path.className, name));
    return true;
  };
  if (askForProperty(path, ask)) return answer;
  const std::vector<std::string> names{name};
  const InstanceDataPtr instance = getInstance(path, &names);
  const TCIMValue* value = instance->find(name);
  if (value != nullptr) return *value;
  throw TVORException(TVORStatusCode(NZELVOR20::eVORNoSuchProperty, path.className + "." + name));
}

}  // namespace cmpinsp
