#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"

namespace providers {

/// What tells a test from others before it is run. The rest of a description is the same of all, or
/// follows from this.
struct TestFacts {
  std::string family;       ///< "DIAGS_Fan"
  std::string name;         ///< "DIAGS: Fan Balance"
  std::string elementName;  ///< "Fan Balance Test"
  std::string text;
  Properties type;  ///< the number of its kind, where the DMTF has one
  std::vector<std::uint16_t> characteristics;
  std::vector<std::uint16_t> testTypes;
  Properties settings;  ///< beside those that every test has; its service modes follow from them
  std::string settingsClass;  ///< empty for the family's own
  Properties capabilities;    ///< beside those that every test has
  std::uint32_t seconds = 1;  ///< that a pass takes
  bool looks =
      false;  ///< and does nothing that would take time: repeated for a time, once a second
};

DiagnosticDescription describeTest(const TestFacts& test);

/// What stands around the names of all tests of a family that has several, and what tells their
/// kinds apart.
struct FamilyFacts {
  const char* family;              ///< "DIAGS_Fan"
  const char* namePrefix;          ///< "DIAGS: Fan "
  const char* elementName;         ///< "Fan "
  const char* typeProperty;        ///< whose value is the number of the kind
  const char* settingsClass = "";  ///< of those tests that name none
};

/// What tells one of them from another; beside that, as in `TestFacts`.
struct FamilyTest {
  std::uint16_t type = 0;
  std::string name;  ///< "Balance"
  std::string text;
  std::vector<std::uint16_t> characteristics;
  std::vector<std::uint16_t> testTypes;
  Properties settings;
  std::string settingsClass;
  Properties capabilities;
  std::uint32_t seconds = 1;
  bool looks = false;
};

DiagnosticDescription describeTest(const FamilyFacts& family, const FamilyTest& test);

}  // namespace providers
