#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <string>
#include <utility>
#include <vector>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMProperty.h"
#include "substitute/vorcore/inmem/InmemNamespace.h"
#include "tests/substitute/vorcore/Expectations.h"

namespace vorcore {

inline PropertyDeclaration property(std::string name, NZELVOR20::ECIMType type, bool isKey = false,
                                    std::vector<Qualifier> qualifiers = {}) {
  PropertyDeclaration declared;
  declared.name = std::move(name);
  declared.type = type;
  declared.isKey = isKey;
  declared.qualifiers = std::move(qualifiers);
  return declared;
}

/// A completion record's class: a key, a state with names, and a list of texts.
inline ClassDeclaration recordClass(std::string name = "CIM_DiagnosticCompletionRecord",
                                    std::string superclass = "CIM_DiagnosticRecord") {
  ClassDeclaration declaration;
  declaration.name = std::move(name);
  declaration.superclass = std::move(superclass);
  declaration.qualifiers = {{"Description", NZELVOR20::TCIMValue("A record.")}};
  declaration.properties = {property("InstanceID", NZELVOR20::ECIMType::eString, true),
                            property("CompletionState", NZELVOR20::ECIMType::eUint16, false,
                                     {{"ValueMap", texts({"0", "1", "2"})},
                                      {"Values", texts({"Unknown", "Other", "OK"})}}),
                            property("ErrorCode", NZELVOR20::ECIMType::eString)};
  declaration.properties.change(1).defaultValue = NZELVOR20::TCIMValue::Uint16(0);
  declaration.properties.change(2).isArray = true;
  return declaration;
}

inline ClassDeclaration rootClass(std::string name) {
  ClassDeclaration declaration;
  declaration.name = std::move(name);
  declaration.properties = {property("InstanceID", NZELVOR20::ECIMType::eString, true)};
  return declaration;
}

/// A namespace with CIM_DiagnosticRecord, CIM_DiagnosticCompletionRecord and ORG_Record.
inline boost::shared_ptr<NZELVOR20::TInmemNamespace> recordNamespace(std::string name) {
  const auto ns = NZELVOR20::TInmemNamespace::make(std::move(name));
  ns->addClass(rootClass("CIM_DiagnosticRecord"));
  ns->addClass(recordClass());
  ns->addClass(recordClass("ORG_Record", "CIM_DiagnosticCompletionRecord"));
  return ns;
}

/// A new instance, not stored, of `className` in `ns`.
inline boost::shared_ptr<NZELVOR20::ICIMInstance> makeRecord(NZELVOR20::ICIMNamespace& ns,
                                                             const std::string& className,
                                                             const std::string& id) {
  const auto made = ns.GetClass(className, {})->AllocateInstance({});
  made->SetProperty("InstanceID", NZELVOR20::TCIMValue(id), {});
  return made;
}

inline std::string shown(NZELVOR20::ICIMInstance& instance, const std::string& name) {
  return instance.GetProperty(name, {})->ToString();
}

inline std::string pathOf(NZELVOR20::ICIMInstance& instance) {
  return instance.GetObjectPath({}).GetPath();
}

/// The "InstanceID" of each instance that the class enumerates.
inline std::vector<std::string> idsOf(NZELVOR20::ICIMNamespace& ns, const std::string& className,
                                      bool deep) {
  std::vector<std::string> ids;
  ns.GetClass(className, {})
      ->EnumerateInstances(
          [&](const boost::shared_ptr<NZELVOR20::ICIMInstance>& instance) {
            ids.push_back(shown(*instance, "InstanceID"));
            return true;
          },
          deep, {});
  return ids;
}

}  // namespace vorcore
