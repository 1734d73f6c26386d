#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/registration/InstancePlacement.h"
#include "substitute/cmpi.nsp/repository/MofParser.h"
#include "tests/substitute/cmpi.nsp/Problems.h"
#include "tests/substitute/cmpi.nsp/TemporaryFolder.h"

namespace cmpinsp {
namespace {

struct InstancePlacementTest : testing::Test {
  InstancePlacementTest() {
    folder.write("providers/a.mof", "");
    folder.write("schema/sub/b.mof", "");
  }

  std::string pathTo(const char* file) const {
    return (folder.path() / std::filesystem::u8path(file)).lexically_normal().u8string();
  }

  /// Adds the unit of a file with an instance, and one behind a pragma.
  void add(const char* file, const char* askedFor) {
    units.push_back(parseMof(pathTo(file),
                             "instance of A { };\n#pragma namespace(\"root/own\")\n"
                             "instance of A { };",
                             problems));
    units.back().askedFor = pathTo(askedFor);
  }

  /// The namespaces of all instances.
  std::string placed(const std::vector<InstancePlacement>& placements) {
    placeInstances(placements, {pathTo("providers"), pathTo("schema")}, units, problems);
    std::string text;
    for (const CompilationUnit& unit : units) {
      for (const InstanceSyntax& instance : unit.instances) text += "[" + instance.nameSpace + "]";
    }
    return text;
  }

  TemporaryFolder folder;
  std::vector<substitute::Problem> problems;
  std::vector<CompilationUnit> units;
};

TEST_F(InstancePlacementTest, AFileIsNamedBelowTheProvidersOrTheSchema) {
  add("providers/a.mof", "providers/a.mof");
  add("schema/sub/b.mof", "schema/sub/b.mof");
  EXPECT_EQ(placed({{"a.mof", "/root/acme", {}}, {"sub/b.mof", "root/b", {}}}),
            "[root/acme][root/own][root/b][root/own]");
  EXPECT_EQ(linesOf(problems), "");
}

TEST_F(InstancePlacementTest, OtherFilesStayWhereTheyAre) {
  add("providers/other.mof", "providers/other.mof");
  EXPECT_EQ(placed({{"a.mof", "root/acme", {}}}), "[][root/own]");
}

TEST_F(InstancePlacementTest, WhatAFileIncludesGoesWithItUnlessItIsNamedItself) {
  add("providers/included.mof", "providers/a.mof");
  add("schema/sub/b.mof", "providers/a.mof");
  EXPECT_EQ(placed({{"a.mof", "root/acme", {}}, {"sub/b.mof", "root/b", {}}}),
            "[root/acme][root/own][root/b][root/own]");
}

TEST_F(InstancePlacementTest, ANameOfNoFileIsAFault) {
  placed({{"gone.mof", "root/acme", {"f.registration", 3, 1}}});
  EXPECT_EQ(linesOf(problems), "f.registration:3:1: there is no file gone.mof with instances\n");
}

TEST_F(InstancePlacementTest, ASecondNamespaceIsAFaultAndTheFirstStays) {
  add("providers/a.mof", "providers/a.mof");
  EXPECT_EQ(placed({{"a.mof", "root/acme", {"f", 1, 1}},
                    {"a.mof", "ROOT/acme", {"f", 2, 1}},
                    {"a.mof", "root/b", {"f", 3, 1}}}),
            "[root/acme][root/own]");
  EXPECT_EQ(linesOf(problems),
            "f:3:1: the instances of a.mof are in namespace root/acme by f:1:1\n");
}

}  // namespace
}  // namespace cmpinsp
