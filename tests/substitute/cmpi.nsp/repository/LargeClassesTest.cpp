#include <gtest/gtest.h>

#include "tests/substitute/cmpi.nsp/repository/Schema.h"

/// Classes that are far larger than published ones. What each of many takes is measured by
/// bench/GrowthBench.cpp.
namespace cmpinsp {
namespace {

constexpr int kMany = 2000;

/// `piece` with "#" for each number.
std::string repeated(const std::string& piece, int count, const std::string& between = "") {
  std::string text;
  for (int number = 0; number < count; ++number) {
    if (number > 0) text += between;
    for (const char c : piece) text += c == '#' ? std::to_string(number) : std::string(1, c);
  }
  return text;
}

TEST(LargeClasses, ManyOfAnythingInOneClassAreNoFault) {
  const struct {
    const char* name;
    std::string text;
  } rows[] = {
      {"properties", "class A { " + repeated("uint8 P#; ", kMany) + "};"},
      {"overridden properties", "class A { " + repeated("uint8 P#; ", kMany) + "}; class B : A { " +
                                    repeated("[Override(\"P#\")] uint8 P#; ", kMany) + "};"},
      {"methods", "class A { " + repeated("uint8 M#(); ", kMany) + "};"},
      {"qualifiers of a class", "[" + repeated("Q#(1)", kMany, ", ") + "] class A { };"},
      {"qualifiers of a property",
       "class A { [" + repeated("Q#(1)", kMany, ", ") + "] uint8 P; };"},
      {"overridden parameters", "class A { uint8 M(" + repeated("uint8 P#", kMany, ", ") +
                                    "); }; class B : A { uint8 M(" +
                                    repeated("uint8 P#", kMany, ", ") + "); };"},
  };
  for (const auto& row : rows) {
    const Schema schema(row.text);
    EXPECT_EQ(schema.faults(), "") << row.name;
    EXPECT_TRUE(schema.classes.find("A")) << row.name;
  }
}

TEST(LargeClasses, EachOfManyPropertiesIsFound) {
  const Schema schema("class A { " + repeated("uint8 P#; ", 70000) + "};");
  EXPECT_EQ(schema.classes.find("A")->findProperty("p0"), 0u);
  EXPECT_EQ(schema.classes.find("A")->findProperty("P69999"), 69999u);
}

// Catches subclasses with a copy each of what they inherit.
TEST(LargeClasses, WhatIsInheritedIsThereOnce) {
  const Schema schema(
      "class A { " + repeated("uint8 P#; ", 2000) + "uint8 M(); };\n" +
      repeated("class B# : A { uint8 Own#; [Override(\"P7\")] uint8 P7; };\n", 200));
  const vorcore::ClassDeclarationPtr root = schema.classes.find("A");
  for (const char* name : {"B0", "B199"}) {
    const vorcore::ClassDeclarationPtr below = schema.classes.find(name);
    EXPECT_EQ(below->properties.size(), 2001u);
    EXPECT_EQ(&below->properties[1999], &root->properties[1999]);
    EXPECT_EQ(&below->methods[0], &root->methods[0]);
    std::size_t shared = 0;
    for (std::size_t at = 0; at < root->properties.chunks().size(); ++at) {
      if (below->properties.chunks()[at] == root->properties.chunks()[at]) ++shared;
    }
    EXPECT_EQ(shared, root->properties.chunks().size() - 2) << name;
  }
}

}  // namespace
}  // namespace cmpinsp
