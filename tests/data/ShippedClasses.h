#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/repository/SchemaReader.h"

namespace data {

/// The classes of the schema as it is shipped, and the faults found in it.
struct ShippedClasses {
  ShippedClasses() {
    cmpinsp::SchemaReader reader(problems);
    reader.readFolder(std::string(DIAGS_SOURCE_DIR) + "/data/schema", false);
    reader.build(qualifiers, classes);
  }

  std::vector<substitute::Problem> problems;
  cmpinsp::QualifierTable qualifiers;
  cmpinsp::ClassTable classes;
};

/// Read once.
inline const ShippedClasses& shipped() {
  static const ShippedClasses classes;
  return classes;
}

}  // namespace data
