#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/query/DataObject.h"
#include "tests/substitute/cmpi.nsp/query/QueryText.h"

namespace cmpinsp::query {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

/// Fan with a Name and a Speed, below Device.
class Classes final : public ClassRepository {
 public:
  Classes() {
    auto fan = boost::make_shared<vorcore::ClassDeclaration>();
    fan->name = "Fan";
    for (const char* name : {"Name", "Speed"}) {
      vorcore::PropertyDeclaration property;
      property.name = name;
      fan->properties.push_back(property);
    }
    m_fan = fan;
  }
  vorcore::ClassDeclarationPtr find(const std::string& name) const override {
    return vorcore::equalNames(name, "Fan") ? m_fan : vorcore::ClassDeclarationPtr();
  }
  bool knows(const std::string& name) const override { return find(name) != nullptr; }
  std::string superclassOf(const std::string& name) const override {
    return knows(name) ? "Device" : "";
  }
  bool isA(const std::string& name, const std::string& ancestor) const override {
    return vorcore::equalNames(name, ancestor) || (name == "Fan" && ancestor == "Device");
  }
  std::vector<std::string> subclasses(const std::string&, bool) const override { return {}; }
  std::vector<std::string> rootClasses() const override { return {}; }

 private:
  vorcore::ClassDeclarationPtr m_fan;
};

class DataObjectTest : public testing::Test {
 protected:
  DataObjectTest() {
    fan.path = {"root", "Fan", {{"Name", TCIMValue("left")}}};
    fan.declaration = classes.find("Fan");
    fan.values = {TCIMValue("left"), TCIMValue::Uint16(900)};
    stranger.path = {"root", "Stranger", {{"Id", TCIMValue("7")}}};
    stranger.extras = {{"Size", TCIMValue::Uint16(5)}};
  }

  Classes classes;
  InstanceData fan;
  InstanceData stranger;
};

TEST_F(DataObjectTest, HasThePropertiesOfItsClass) {
  const DataObject object(fan, classes);
  EXPECT_EQ(object.property("SPEED"), TCIMValue::Uint16(900));
  EXPECT_EQ(object.className(), "Fan");
  EXPECT_TRUE(object.isA("Fan", "Device"));
  EXPECT_THROW(object.property("Colour"), NZELVOR20::TVORException);
}

TEST_F(DataObjectTest, OfAnUndeclaredClassHasWhatItHas) {
  const DataObject object(stranger, classes);
  EXPECT_EQ(object.property("size"), TCIMValue::Uint16(5));
  EXPECT_EQ(object.property("Id"), TCIMValue("7"));
  EXPECT_TRUE(object.property("Colour")->IsNull());
}

struct Row {
  const char* query;
  bool fanIsSelected;
};

constexpr Row kRows[] = {
    {"SELECT * FROM Fan", true},
    {"SELECT * FROM Device", true},
    {"SELECT * FROM Disk", false},
    {"SELECT * FROM Fan WHERE Speed = 900", true},
    {"SELECT * FROM Fan WHERE Speed <> 900", false},
    {"SELECT * FROM Disk WHERE Speed = 900", false},
};

TEST_F(DataObjectTest, IsSelectedByClassAndCondition) {
  for (const Row& row : kRows) {
    const Query query = parseQuery(Language::kWql, row.query);
    EXPECT_EQ(selects(query, fan, classes), row.fanIsSelected) << row.query;
  }
}

TEST_F(DataObjectTest, OfAnUndeclaredClassIsNotRuledOutByIt) {
  EXPECT_TRUE(selects(parseQuery(Language::kWql, "SELECT * FROM Fan"), stranger, classes));
  EXPECT_FALSE(selects(where("Size = 6"), stranger, classes));
}

TEST_F(DataObjectTest, WhoseConditionIsUnknownIsNotSelected) {
  fan.values[1] = TCIMValue::Null(ECIMType::eUint16);
  EXPECT_FALSE(selects(where("Speed = 900"), fan, classes));
  EXPECT_FALSE(selects(where("NOT Speed = 900"), fan, classes));
}

}  // namespace
}  // namespace cmpinsp::query
