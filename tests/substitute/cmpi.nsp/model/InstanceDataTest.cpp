#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "substitute/cmpi.nsp/model/InstanceData.h"

namespace cmpinsp {
namespace {

using NZELVOR20::TCIMValue;

InstanceData fan() {
  auto declaration = boost::make_shared<vorcore::ClassDeclaration>();
  declaration->name = "ACME_Fan";
  for (const char* name : {"Name", "Speed"}) {
    vorcore::PropertyDeclaration property;
    property.name = name;
    declaration->properties.push_back(property);
  }
  InstanceData data;
  data.declaration = declaration;
  data.values = {TCIMValue("left"), TCIMValue::Uint32(900)};
  data.extras = {{"Colour", TCIMValue("grey")}};
  return data;
}

TEST(InstanceData, FindsADeclaredPropertyWithoutCase) {
  const InstanceData data = fan();
  ASSERT_NE(data.find("SPEED"), nullptr);
  EXPECT_EQ(*data.find("SPEED"), TCIMValue::Uint32(900));
}

TEST(InstanceData, FindsAnExtraWithoutCase) {
  const InstanceData data = fan();
  ASSERT_NE(data.find("colour"), nullptr);
  EXPECT_EQ(*data.find("colour"), TCIMValue("grey"));
}

TEST(InstanceData, FindsNothingWhereThereIsNothing) { EXPECT_EQ(fan().find("Size"), nullptr); }

// A list of values that is shorter than the declaration must not be read past its end.
TEST(InstanceData, MissingValuesAreNotFound) {
  InstanceData data = fan();
  data.values.resize(1);
  EXPECT_EQ(data.find("Speed"), nullptr);
}

}  // namespace
}  // namespace cmpinsp
