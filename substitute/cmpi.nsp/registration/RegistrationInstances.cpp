#include <map>
#include <utility>

#include "substitute/cmpi.nsp/registration/RegistrationReaders.h"
#include "substitute/cmpi.nsp/registration/RegistrationTable.h"
#include "substitute/cmpi.nsp/repository/MofValues.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

constexpr const char* kModuleClass = "PG_ProviderModule";
constexpr const char* kProviderClass = "PG_Provider";
constexpr const char* kCapabilitiesClass = "PG_ProviderCapabilities";

/// The interface of a number of PG_ProviderCapabilities.ProviderType. Indication consumers and
/// query providers have none of their own here.
unsigned interfaceNumbered(std::uint64_t type) {
  switch (type) {
    case 2:
    case 7:
      return kInstanceInterface;
    case 3:
      return kAssociationInterface;
    case 4:
      return kIndicationInterface;
    case 5:
      return kMethodInterface;
    default:
      return 0;
  }
}

/// What a PG_ProviderModule says.
struct Module {
  std::string library;
  Place place;
  bool isForeign = false;  ///< it speaks another interface
};

class InstanceReader {
 public:
  InstanceReader(std::vector<Registration>& registrations,
                 std::vector<substitute::Problem>& problems)
      : m_registrations(registrations), m_problems(problems) {}

  /// Modules and providers come first: capabilities refer to them.
  void collect(const CompilationUnit& unit) {
    m_file = &unit.file;
    for (const InstanceSyntax& instance : unit.instances) {
      if (vorcore::equalNames(instance.className, kModuleClass)) {
        addModule(instance);
      } else if (vorcore::equalNames(instance.className, kProviderClass)) {
        m_modules[textOf(instance, "Name")] = textOf(instance, "ProviderModuleName");
      }
    }
  }

  void resolve(const CompilationUnit& unit) {
    m_file = &unit.file;
    for (const InstanceSyntax& instance : unit.instances) {
      if (vorcore::equalNames(instance.className, kCapabilitiesClass)) addCapabilities(instance);
    }
  }

 private:
  void report(const Position& at, const std::string& message) {
    m_problems.push_back({*m_file, at.line, at.column, message});
  }

  void addModule(const InstanceSyntax& instance) {
    const std::string name = textOf(instance, "Name");
    const std::string interfaceType = textOf(instance, "InterfaceType");
    Module module{textOf(instance, "Location"), {*m_file, instance.at.line, instance.at.column}};
    if (!interfaceType.empty() && !vorcore::equalNames(interfaceType, "CMPI")) {
      report(instance.at, "module " + name + " is for the interface " + interfaceType +
                              ", its providers are left out: CMPI alone is spoken here");
      module.isForeign = true;
    }
    const auto [known, isNew] = m_locations.emplace(name, module);
    if (isNew || isSameLibrary(known->second.library, module.library)) return;
    report(instance.at, "module " + name + " is in library " + module.library +
                            ", but in library " + known->second.library + " at " +
                            known->second.place.toText());
  }

  std::vector<TCIMValue> listOf(const InstanceSyntax& instance, const char* name, ECIMType type) {
    const AssignmentSyntax* assignment = instance.find(name);
    if (assignment == nullptr) return {};
    try {
      const TCIMValue value = valueOf(assignment->value, type, true);
      return value.IsNull() ? std::vector<TCIMValue>() : value.ToArray();
    } catch (const SyntaxError& error) {
      report(error.at, std::string(name) + ": " + error.message);
      return {};
    }
  }

  std::string textOf(const InstanceSyntax& instance, const char* name) {
    const std::vector<TCIMValue> values = listOf(instance, name, ECIMType::eString);
    return values.size() == 1 && !values.front().IsNull() ? values.front().ToText() : std::string();
  }

  /// The library of a provider's module; reports what is missing on the way.
  std::string libraryOf(const InstanceSyntax& capabilities, const std::string& provider) {
    std::string module = textOf(capabilities, "ProviderModuleName");
    const auto declared = m_modules.find(provider);
    if (declared == m_modules.end()) {
      report(capabilities.at, "no PG_Provider named \"" + provider + "\"");
      return std::string();
    }
    if (module.empty()) module = declared->second;
    const auto location = m_locations.find(module);
    if (location != m_locations.end() && location->second.isForeign) return std::string();
    if (location == m_locations.end() || location->second.library.empty()) {
      report(capabilities.at, "no PG_ProviderModule named \"" + module + "\" with a Location");
      return std::string();
    }
    return location->second.library;
  }

  void addCapabilities(const InstanceSyntax& instance) {
    Registration registration;
    registration.place = {*m_file, instance.at.line, instance.at.column};
    registration.className = textOf(instance, "ClassName");
    registration.provider = textOf(instance, "ProviderName");
    if (registration.className.empty() || registration.provider.empty()) {
      report(instance.at, "PG_ProviderCapabilities needs ClassName and ProviderName");
      return;
    }
    registration.library = libraryOf(instance, registration.provider);
    for (const TCIMValue& name : listOf(instance, "Namespaces", ECIMType::eString)) {
      if (!name.IsNull()) registration.namespaces.push_back(name.ToText());
    }
    for (const TCIMValue& type : listOf(instance, "ProviderType", ECIMType::eUint16)) {
      if (!type.IsNull()) registration.interfaces |= interfaceNumbered(type.ToUint64());
    }
    if (registration.library.empty()) return;
    if (registration.namespaces.empty() || registration.interfaces == 0) {
      report(instance.at, "PG_ProviderCapabilities for " + registration.className +
                              " needs Namespaces and a known ProviderType");
      return;
    }
    m_registrations.push_back(std::move(registration));
  }

  std::vector<Registration>& m_registrations;
  std::vector<substitute::Problem>& m_problems;
  const std::string* m_file = nullptr;
  std::map<std::string, Module> m_locations;     ///< by the module's name
  std::map<std::string, std::string> m_modules;  ///< module by provider
};

}  // namespace

bool isRegistrationClass(const std::string& className) {
  return vorcore::equalNames(className, kModuleClass) ||
         vorcore::equalNames(className, kProviderClass) ||
         vorcore::equalNames(className, kCapabilitiesClass);
}

void readRegistrationInstances(const std::vector<CompilationUnit>& units,
                               std::vector<Registration>& registrations,
                               std::vector<substitute::Problem>& problems) {
  InstanceReader reader(registrations, problems);
  for (const CompilationUnit& unit : units) reader.collect(unit);
  for (const CompilationUnit& unit : units) reader.resolve(unit);
}

}  // namespace cmpinsp
