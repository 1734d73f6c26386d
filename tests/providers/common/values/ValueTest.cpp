#include <gtest/gtest.h>

#include "providers/common/values/Value.h"

namespace providers {
namespace {

ObjectPath fan(const std::string& id, Value number) {
  ObjectPath path{"ACME_Fan", {}};
  path.keys.setKey("DeviceID", id);
  path.keys.setKey("Number", std::move(number));
  return path;
}

Value to(const ObjectPath& path) { return std::make_shared<const ObjectPath>(path); }

TEST(Value, NumbersOfAnyWidthAreTheSameByTheirNumber) {
  EXPECT_TRUE(sameValue(std::uint8_t{7}, std::int64_t{7}));
  EXPECT_FALSE(sameValue(std::uint16_t{7}, std::uint64_t{8}));
}

TEST(Value, ANumberIsNotTheSameAsItsText) {
  EXPECT_FALSE(sameValue(std::uint8_t{7}, std::string("7")));
}

TEST(Value, NullIsTheSameOnlyAsNull) {
  EXPECT_TRUE(sameValue({}, PathPtr()));
  EXPECT_FALSE(sameValue({}, std::uint8_t{0}));
}

TEST(Value, ANegativeNumberIsNoUnsignedOne) { EXPECT_FALSE(asNumber(std::int64_t{-1})); }

TEST(Value, ABooleanIsNoNumber) { EXPECT_FALSE(asNumber(true)); }

TEST(ObjectPath, KeysCountInAnyOrderAndNamesInAnyCase) {
  ObjectPath other{"acme_FAN", {}};
  other.keys.setKey("NUMBER", std::int64_t{3});
  other.keys.setKey("deviceid", std::string("f0"));
  EXPECT_TRUE(fan("f0", std::uint32_t{3}) == other);
}

TEST(ObjectPath, TextKeysCountWithTheirCase) {
  EXPECT_FALSE(fan("f0", std::uint8_t{1}) == fan("F0", std::uint8_t{1}));
}

TEST(ObjectPath, AMissingKeyMakesAnotherPath) {
  ObjectPath other{"ACME_Fan", {}};
  other.keys.setKey("DeviceID", std::string("f0"));
  EXPECT_FALSE(fan("f0", std::uint8_t{1}) == other);
}

TEST(ObjectPath, ReferenceKeysAreComparedKeyByKey) {
  EXPECT_TRUE(sameValue(to(fan("f0", std::uint8_t{1})), to(fan("f0", std::uint64_t{1}))));
}

TEST(Properties, SettingAPropertyAgainReplacesItsValueAndKeepsItsName) {
  Properties properties{{"Name", std::string("a"), false}};
  properties.set("NAME", std::string("b"));
  ASSERT_EQ(properties.all().size(), 1U);
  EXPECT_EQ(properties.all()[0].name, "Name");
  EXPECT_EQ(asText(properties.get("name")), "b");
}

TEST(Properties, AKeyStaysOneWhateverIsMergedIntoIt) {
  Properties properties{{"DeviceID", std::string("f0"), true}, {"Speed", std::uint16_t{9}, false}};
  properties.merge({{"DeviceID", std::string("f1"), false}, {"Speed", std::uint16_t{8}, true}});
  EXPECT_EQ(asText(properties.get("DeviceID")), "f1");
  for (const Property& property : properties.all()) EXPECT_TRUE(property.key) << property.name;
}

TEST(Instance, ThePathHasTheKeysAlone) {
  Instance instance{"ACME_Fan", {}};
  instance.properties.setKey("DeviceID", std::string("f0"));
  instance.properties.set("Speed", std::uint16_t{900});
  EXPECT_EQ(instance.path().keys.all().size(), 1U);
}

}  // namespace
}  // namespace providers
