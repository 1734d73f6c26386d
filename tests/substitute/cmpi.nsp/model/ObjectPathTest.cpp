#include <gtest/gtest.h>

#include "substitute/cmpi.nsp/model/ObjectPath.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

ObjectPath fan(const std::string& name) {
  ObjectPath path{"root/cimv2", "ACME_Fan", {}};
  path.setKey("Name", TCIMValue(name));
  return path;
}

TEST(ObjectPath, PrintsNamespaceClassAndKeysInNameOrder) {
  ObjectPath path = fan("left");
  path.setKey("Box", TCIMValue::Uint32(3));
  EXPECT_EQ(path.toText(), "root/cimv2:ACME_Fan.Box=3,Name=\"left\"");
}

TEST(ObjectPath, QuotesInAKeyAreEscaped) {
  EXPECT_EQ(fan("a\"b\\c").toText(), "root/cimv2:ACME_Fan.Name=\"a\\\"b\\\\c\"");
}

TEST(ObjectPath, SettingAKeyAgainReplacesIt) {
  ObjectPath path = fan("left");
  path.setKey("NAME", TCIMValue("right"));
  ASSERT_EQ(path.keys.size(), 1U);
  EXPECT_EQ(*path.findKey("name"), TCIMValue("right"));
}

struct EqualityRow {
  const char* name;
  ObjectPath left;
  ObjectPath right;
  bool equal;
};

ObjectPath withKeys(std::vector<std::pair<std::string, TCIMValue>> keys) {
  return ObjectPath{"root/cimv2", "ACME_Fan", std::move(keys)};
}

std::vector<EqualityRow> equalityRows() {
  const TCIMValue reference(referenceTo(fan("left"), {}));
  return {
      {"the same", fan("left"), fan("left"), true},
      {"another key value", fan("left"), fan("right"), false},
      {"names in another case", fan("left"),
       ObjectPath{"ROOT/cimv2", "acme_fan", {{"NAME", TCIMValue("left")}}}, true},
      {"text in another case", fan("left"), fan("Left"), false},
      {"another namespace", fan("left"), ObjectPath{"root", "ACME_Fan", fan("left").keys}, false},
      {"a key more", fan("left"), withKeys({{"Name", TCIMValue("left")}, {"B", TCIMValue("")}}),
       false},
      {"keys in another order", withKeys({{"A", TCIMValue("1")}, {"B", TCIMValue("2")}}),
       withKeys({{"B", TCIMValue("2")}, {"A", TCIMValue("1")}}), true},
      {"another integer width", withKeys({{"A", TCIMValue::Uint16(5)}}),
       withKeys({{"A", TCIMValue::Signed(ECIMType::eSint64, 5)}}), true},
      {"negative against large", withKeys({{"A", TCIMValue::Uint64(~std::uint64_t{0})}}),
       withKeys({{"A", TCIMValue::Signed(ECIMType::eSint64, -1)}}), false},
      {"a number against its digits", withKeys({{"A", TCIMValue::Uint16(5)}}),
       withKeys({{"A", TCIMValue("5")}}), false},
      {"a reference against its text", withKeys({{"A", reference}}),
       withKeys({{"A", TCIMValue(fan("left").toText())}}), true},
      {"a reference against other text", withKeys({{"A", reference}}),
       withKeys({{"A", TCIMValue("no path at all")}}), false},
      {"a null key", withKeys({{"A", TCIMValue()}}), withKeys({{"A", reference}}), false},
  };
}

TEST(ObjectPath, EqualityIgnoresCaseOrderAndWidth) {
  for (const EqualityRow& row : equalityRows()) {
    EXPECT_EQ(row.left == row.right, row.equal) << row.name;
    EXPECT_EQ(row.right == row.left, row.equal) << row.name << ", swapped";
  }
}

}  // namespace
}  // namespace cmpinsp
