#include "providers/common/runs/DiagnosticFamily.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

namespace providers {

DiagnosticFamily::DiagnosticFamily(const std::vector<Diagnostic*>& diagnostics) {
  if (diagnostics.empty()) throw std::invalid_argument("a family without a diagnostic");
  for (Diagnostic* diagnostic : diagnostics) {
    const DiagnosticDescription& description = diagnostic->description();
    if (description.family != diagnostics.front()->description().family)
      throw std::invalid_argument(description.name + " is of another family");
    if (find(description.name))
      throw std::invalid_argument("there are two diagnostics of the name " + description.name);
    m_services.emplace_back(*diagnostic);
  }
}

const Service* DiagnosticFamily::find(const std::string& serviceName) const {
  const auto found = std::find_if(
      m_services.begin(), m_services.end(),
      [&serviceName](const Service& service) { return service.description().name == serviceName; });
  return found == m_services.end() ? nullptr : &*found;
}

Service* DiagnosticFamily::find(const std::string& serviceName) {
  return const_cast<Service*>(std::as_const(*this).find(serviceName));
}

std::vector<Device> DiagnosticFamily::devices() const {
  std::vector<Device> all;
  std::set<std::string> known;
  for (const Service& service : m_services) {
    for (Device& device : service.diagnostic().devices())
      if (known.insert(device.id).second) all.push_back(std::move(device));
  }
  return all;
}

void DiagnosticFamily::reset() {
  for (Service& service : m_services) service.defaults().reset();
}

}  // namespace providers
