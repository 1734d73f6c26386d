#include "providers/common/model/DiagnosticProvider.h"

#include <algorithm>

#include "providers/common/runs/Settings.h"

namespace providers {

namespace {

bool roleFits(const std::string& wanted, const std::string& role) {
  return wanted.empty() || sameName(wanted, role);
}

bool isPath(const Property& property, const ObjectPath& path) {
  const auto* end = std::get_if<PathPtr>(&property.value);
  return end && *end && **end == path;
}

/// The references of an association other than the one that is `mine`.
std::vector<ObjectPath> otherEnds(const Instance& association, const Property& mine,
                                  const AssociationQuery& query) {
  std::vector<ObjectPath> ends;
  for (const Property& property : association.properties.all()) {
    const auto* end = std::get_if<PathPtr>(&property.value);
    if (end && *end && &property != &mine && roleFits(query.resultRole, property.name))
      ends.push_back(**end);
  }
  return ends;
}

}  // namespace

DiagnosticProvider::DiagnosticProvider(DiagnosticFamily& family, JobRegistry& registry,
                                       std::string systemName)
    : m_family(family), m_registry(registry), m_model(family, registry, std::move(systemName)) {}

std::vector<Instance> DiagnosticProvider::enumerate(const std::string& className,
                                                    CallServices& services) const {
  std::vector<Instance> result;
  for (const std::string& mine : m_model.classNames()) {
    if (!sameName(mine, className) && !services.isA(mine, className)) continue;
    for (Instance& instance : m_model.instances(mine)) result.push_back(std::move(instance));
  }
  return result;
}

Instance DiagnosticProvider::get(const ObjectPath& path) const {
  const InstancePtr instance = m_model.find(path);
  if (!instance) throw ProviderError(kErrorNotFound, "no such instance of " + path.className);
  return *instance;
}

void DiagnosticProvider::modify(const ObjectPath& path, const Properties& changed,
                                const std::vector<std::string>* names) {
  if (!m_model.isSettingsClass(path.className))
    throw ProviderError(kErrorNotSupported, "instances of " + path.className + " stay as they are");
  Service& service = serviceOfSettings(path);
  try {
    service.defaults().change(changed, names);
  } catch (const BadSetting& error) {
    throw ProviderError(kErrorInvalidParameter, error.what());
  }
}

Service& DiagnosticProvider::serviceOfSettings(const ObjectPath& path) {
  for (Service& service : m_family.services())
    if (m_model.settings(service).path() == path) return service;
  throw ProviderError(kErrorNotFound, "no such instance of " + path.className);
}

void DiagnosticProvider::remove(const ObjectPath& path) {
  const ClassNames& names = m_model.names();
  const std::string id = asText(path.keys.get("InstanceID")).value_or(std::string());
  bool removed = false;
  if (sameName(path.className, names.job)) {
    removed = m_registry.removeJob(id);
  } else if (sameName(path.className, names.completionRecord) ||
             sameName(path.className, names.serviceRecord)) {
    removed = m_registry.removeRecord(id);
  } else {
    throw ProviderError(kErrorNotSupported, "instances of " + path.className + " are permanent");
  }
  if (!removed) throw ProviderError(kErrorNotFound, "nothing to remove: " + id);
}

std::vector<Instance> DiagnosticProvider::references(const ObjectPath& path,
                                                     const AssociationQuery& query,
                                                     CallServices& services) const {
  std::vector<Instance> result;
  for (const std::string& mine : m_model.associationNames()) {
    const std::string& wanted = query.associationClass;
    if (!wanted.empty() && !sameName(mine, wanted) && !services.isA(mine, wanted)) continue;
    for (Instance& association : m_model.instances(mine)) {
      const auto& properties = association.properties.all();
      const bool refers = std::any_of(properties.begin(), properties.end(), [&](const auto& end) {
        return isPath(end, path) && roleFits(query.role, end.name);
      });
      if (refers) result.push_back(std::move(association));
    }
  }
  return result;
}

std::vector<ObjectPath> DiagnosticProvider::associators(const ObjectPath& path,
                                                        const AssociationQuery& query,
                                                        CallServices& services) const {
  std::vector<ObjectPath> result;
  for (const Instance& association : references(path, query, services)) {
    for (const Property& property : association.properties.all()) {
      if (!isPath(property, path) || !roleFits(query.role, property.name)) continue;
      for (ObjectPath& end : otherEnds(association, property, query)) {
        const std::string& wanted = query.resultClass;
        if (wanted.empty() || sameName(end.className, wanted) ||
            services.isA(end.className, wanted))
          result.push_back(std::move(end));
      }
    }
  }
  return result;
}

}  // namespace providers
