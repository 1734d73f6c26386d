#pragma once

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "providers/common/model/DiagnosticModel.h"
#include "tests/data/ShippedClasses.h"

namespace data {

inline std::set<std::string> keysOf(const std::string& className) {
  std::set<std::string> keys;
  const vorcore::ClassDeclarationPtr declaration = shipped().classes.find(className);
  if (!declaration) return {"no such class"};
  for (const vorcore::PropertyDeclaration& property : declaration->properties)
    if (property.isKey) keys.insert(property.name);
  return keys;
}

/// Every property that a diagnostic's instances have is declared, and the keys are the same.
inline void checkInstances(providers::Diagnostic&& diagnostic) {
  providers::JobRegistry registry(providers::systemClock, providers::makeJobId);
  const providers::DiagnosticFamily family({&diagnostic});
  providers::JobRequest request;
  request.serviceName = family.services().front().description().name;
  const providers::DiagnosticModel model(family, registry, "host1");
  const std::string job = registry.open(request).value();
  registry.fail(job, "for the records");
  for (const std::string& name : model.classNames()) {
    const vorcore::ClassDeclarationPtr declaration = shipped().classes.find(name);
    ASSERT_TRUE(declaration) << name;
    for (const providers::Instance& instance : model.instances(name)) {
      std::set<std::string> keys;
      for (const providers::Property& property : instance.properties.all()) {
        EXPECT_NE(declaration->findProperty(property.name), vorcore::ClassDeclaration::kNoProperty)
            << name << "." << property.name;
        if (property.key) keys.insert(property.name);
      }
      EXPECT_EQ(keys, keysOf(name)) << name;
    }
  }
}

}  // namespace data
