#include <gtest/gtest.h>

#include "providers/common/cmpi/CmpiValues.h"
#include "providers/common/model/DiagnosticProvider.h"
#include "tests/providers/common/ShowValue.h"
#include "tests/providers/common/cmpi/FakeBroker.h"

namespace providers {
namespace {

PathPtr fanPath() {
  ObjectPath path{"ACME_Fan", {}};
  path.keys.setKey("DeviceID", std::string("f0"));
  path.keys.setKey("Slot", std::uint8_t{3});
  return std::make_shared<const ObjectPath>(path);
}

InstancePtr fan(std::uint32_t speed) {
  Instance instance{"ACME_Fan", {}};
  instance.properties.set("Speed", speed);
  return std::make_shared<const Instance>(instance);
}

class CmpiValuesTest : public ::testing::Test {
 protected:
  static Properties only(Value value) { return {{"Value", std::move(value), false}}; }

  CMPIArgs* args() { return broker.get()->eft->newArgs(broker.get(), nullptr); }
  CMPIInstance* instanceOf(const Value& value) {
    return values.makeInstance({"ACME_Fan", only(value)}, nullptr);
  }
  std::string refusal(const std::function<void()>& operation) {
    try {
      operation();
    } catch (const ProviderError& error) {
      return std::to_string(error.code()) + " " + error.what();
    }
    return "none";
  }

  FakeBroker broker;
  const CmpiValues values{broker.get(), "root/acme"};
};

struct TypeRow {
  const char* name;
  Value value;
  CMPIType type;
  std::string readBack;
};

class EachType : public CmpiValuesTest, public ::testing::WithParamInterface<TypeRow> {};

TEST_P(EachType, CrossesAsAPropertyAndComesBack) {
  const CMPIInstance* made = instanceOf(GetParam().value);
  ASSERT_EQ(FakeBroker::valuesOf(made).size(), 1U);
  EXPECT_EQ(FakeBroker::valuesOf(made)[0].first, "Value");
  EXPECT_EQ(FakeBroker::valuesOf(made)[0].second.type, GetParam().type);
  EXPECT_EQ(FakeBroker::valuesOf(made)[0].second.state, CMPI_goodValue);
  EXPECT_EQ(show(values.readInstance(made).properties.get("Value")), GetParam().readBack);
}

TEST_P(EachType, CrossesAsAParameterAndComesBack) {
  const CMPIArgs* made = args();
  values.addArguments(const_cast<CMPIArgs*>(made), only(GetParam().value));
  ASSERT_EQ(FakeBroker::valuesOf(made).size(), 1U);
  EXPECT_EQ(FakeBroker::valuesOf(made)[0].second.type, GetParam().type);
  EXPECT_EQ(show(values.readArguments(made).get("Value")), GetParam().readBack);
}

using U16 = std::vector<std::uint16_t>;
using U32 = std::vector<std::uint32_t>;
using Texts = std::vector<std::string>;

INSTANTIATE_TEST_SUITE_P(
    Types, EachType,
    ::testing::Values(
        TypeRow{"True", true, CMPI_boolean, "true"}, TypeRow{"False", false, CMPI_boolean, "false"},
        TypeRow{"Uint8", std::uint8_t{255}, CMPI_uint8, "uint8 255"},
        TypeRow{"Uint16", std::uint16_t{65535}, CMPI_uint16, "uint16 65535"},
        TypeRow{"Uint32", std::uint32_t{4294967295}, CMPI_uint32, "uint32 4294967295"},
        TypeRow{"Uint64", ~std::uint64_t{0}, CMPI_uint64, "uint64 18446744073709551615"},
        TypeRow{"Sint64", std::int64_t{-5}, CMPI_sint64, "sint64 -5"},
        TypeRow{"Text", std::string("a b"), CMPI_string, "\"a b\""},
        TypeRow{"EmptyText", std::string(), CMPI_string, "\"\""},
        TypeRow{"Time", DateTime{1700000000000001, false}, CMPI_dateTime, "time 1700000000000001"},
        TypeRow{"Interval", DateTime{90000000, true}, CMPI_dateTime, "interval 90000000"},
        TypeRow{"Reference", fanPath(), CMPI_ref, "ACME_Fan.DeviceID*=\"f0\";Slot*=uint8 3;"},
        TypeRow{"Instance", fan(900), CMPI_instance, "ACME_Fan{Speed=uint32 900;}"},
        TypeRow{"Uint16s", U16{1, 65535}, CMPI_uint16A, "[uint16 1, uint16 65535]"},
        TypeRow{"NoUint16s", U16{}, CMPI_uint16A, "[]"},
        TypeRow{"Uint32s", U32{7, 4294967295}, CMPI_uint32A, "[uint32 7, uint32 4294967295]"},
        TypeRow{"Texts", Texts{"a", "", "c"}, CMPI_stringA, "[\"a\", \"\", \"c\"]"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(CmpiValuesTest, ElementsOfAnArrayHaveItsType) {
  struct Row {
    Value value;
    CMPIType type;
  };
  for (const Row& row :
       {Row{U16{1}, CMPI_uint16}, Row{U32{1}, CMPI_uint32}, Row{Texts{"a"}, CMPI_string},
        Row{std::vector<InstancePtr>{fan(1)}, CMPI_instance}}) {
    const CMPIArray* array = FakeBroker::valuesOf(instanceOf(row.value))[0].second.value.array;
    EXPECT_EQ(array->ft->getSimpleType(array, nullptr), row.type) << show(row.value);
    EXPECT_EQ(array->ft->getElementAt(array, 0, nullptr).type, row.type) << show(row.value);
  }
}

// No parameter of ours takes any, so they cross in one direction alone.
TEST_F(CmpiValuesTest, InstancesOfAnArrayCross) {
  const CMPIInstance* made = instanceOf(std::vector<InstancePtr>{fan(1), fan(2)});
  ASSERT_EQ(FakeBroker::valuesOf(made).size(), 1U);
  EXPECT_EQ(FakeBroker::valuesOf(made)[0].second.type, CMPI_instanceA);
  const CMPIArray* array = FakeBroker::valuesOf(made)[0].second.value.array;
  ASSERT_EQ(array->ft->getSize(array, nullptr), 2U);
  const CMPIInstance* second = array->ft->getElementAt(array, 1, nullptr).value.inst;
  EXPECT_EQ(values.readInstance(second).className, "ACME_Fan");
  EXPECT_EQ(show(values.readInstance(second).properties, ""), "Speed=uint32 2");
}

TEST_F(CmpiValuesTest, NullIsLeftOutOfAnInstanceAndStaysAParameter) {
  for (const Value& value : {Value(), Value(PathPtr()), Value(InstancePtr())}) {
    EXPECT_TRUE(FakeBroker::valuesOf(instanceOf(value)).empty()) << show(value);
    CMPIArgs* made = args();
    values.addArguments(made, only(value));
    ASSERT_EQ(FakeBroker::valuesOf(made).size(), 1U) << show(value);
    EXPECT_EQ(FakeBroker::valuesOf(made)[0].second.state, CMPI_nullValue) << show(value);
    EXPECT_TRUE(isNull(values.readArguments(made).get("Value"))) << show(value);
  }
}

TEST_F(CmpiValuesTest, APathHasTheNamespaceOfTheCallItsClassAndItsKeys) {
  const CMPIObjectPath* made = values.makePath(*fanPath());
  EXPECT_EQ(FakeBroker::nameSpaceOf(made), "root/acme");
  EXPECT_EQ(FakeBroker::valuesOf(made)[1].second.type, CMPI_uint8);
  EXPECT_TRUE(values.readPath(made) == *fanPath());
}

TEST_F(CmpiValuesTest, AnInstanceIsMadeAtThePathOfItsKeys) {
  Instance instance{"ACME_Fan", fanPath()->keys};
  instance.properties.set("Speed", std::uint16_t{900});
  CMPIInstance* made = values.makeInstance(instance, nullptr);
  EXPECT_TRUE(values.readPath(made->ft->getObjectPath(made, nullptr)) == *fanPath());
  EXPECT_EQ(show(values.readInstance(made).properties, " "),
            "DeviceID=\"f0\" Slot=uint8 3 Speed=uint16 900 ");
}

TEST_F(CmpiValuesTest, AListOfNamesLeavesTheseInAnyCaseAndTheKeys) {
  Instance instance{"ACME_Fan", fanPath()->keys};
  instance.properties.set("Speed", std::uint16_t{900});
  instance.properties.set("Noise", std::uint16_t{30});
  const char* names[] = {"Colour", "SPEED", nullptr};
  EXPECT_EQ(show(values.readInstance(values.makeInstance(instance, names)).properties, " "),
            "DeviceID=\"f0\" Slot=uint8 3 Speed=uint16 900 ");
  const char* none[] = {nullptr};
  EXPECT_EQ(show(values.readInstance(values.makeInstance(instance, none)).properties, " "),
            "DeviceID=\"f0\" Slot=uint8 3 ");
}

TEST_F(CmpiValuesTest, WithoutParametersNoneAreRead) {
  EXPECT_TRUE(values.readArguments(nullptr).empty());
}

TEST_F(CmpiValuesTest, AnInstanceWithoutAPathHasNoClassButItsProperties) {
  CMPIInstance* made = instanceOf(std::uint8_t{7});
  CMPIInstanceFT table = *made->ft;
  table.getObjectPath = [](const CMPIInstance*, CMPIStatus*) -> CMPIObjectPath* { return nullptr; };
  CMPIInstance without{made->hdl, &table};
  const Instance read = values.readInstance(&without);
  EXPECT_EQ(read.className, "");
  EXPECT_EQ(show(read.properties, ""), "Value=uint8 7");
}

/// What comes from a client, in types that no diagnostic gives back.
class ForeignValue : public CmpiValuesTest {
 protected:
  std::string read(CMPIType type, CMPIValue value, CMPIValueState state = CMPI_goodValue) {
    const CMPIArgs* in = args();
    FakeBroker::valuesOf(in).emplace_back("Value", dataOf(type, value, state));
    return show(values.readArguments(in).get("Value"));
  }
};

TEST_F(ForeignValue, OfASignedTypeIsReadWithItsSign) {
  CMPIValue value{};
  value.sint8 = -8;
  EXPECT_EQ(read(CMPI_sint8, value), "sint64 -8");
  value.sint16 = -16000;
  EXPECT_EQ(read(CMPI_sint16, value), "sint64 -16000");
  value.sint32 = -2000000000;
  EXPECT_EQ(read(CMPI_sint32, value), "sint64 -2000000000");
  value.sint64 = -9000000000000000000;
  EXPECT_EQ(read(CMPI_sint64, value), "sint64 -9000000000000000000");
}

TEST_F(ForeignValue, OfCharactersIsAText) {
  char text[] = "loose";
  CMPIValue value{};
  value.chars = text;
  EXPECT_EQ(read(CMPI_chars, value), "\"loose\"");
  value.chars = nullptr;
  EXPECT_EQ(read(CMPI_chars, value), "\"\"");
}

TEST_F(ForeignValue, WithoutAStringIsEmpty) { EXPECT_EQ(read(CMPI_string, {}), "\"\""); }

TEST_F(ForeignValue, ThatIsNullBadOrMissingIsNull) {
  CMPIValue value{};
  value.uint8 = 7;
  for (const int state : {CMPI_nullValue, CMPI_badValue, CMPI_notFound})
    EXPECT_EQ(read(CMPI_uint8, value, static_cast<CMPIValueState>(state)), "null") << state;
  EXPECT_EQ(read(CMPI_uint8, value, CMPI_keyValue), "uint8 7");
}

TEST_F(ForeignValue, OfATypeThatNoSettingHasIsNull) {
  CMPIValue value{};
  value.real64 = 1.5;
  EXPECT_EQ(read(CMPI_real64, value), "null");
  value.array = broker.array(CMPI_boolean, {});
  EXPECT_EQ(read(CMPI_booleanA, value), "null");
}

TEST_F(ForeignValue, OfAnArrayTypeWithoutAnArrayIsNull) {
  EXPECT_EQ(read(CMPI_uint16A, {}), "null");
}

struct RefusalRow {
  const char* function;
  const char* doing;
};

class EachRefusal : public CmpiValuesTest, public ::testing::WithParamInterface<RefusalRow> {
 protected:
  Instance everything() const {
    Instance instance{"ACME_Fan", fanPath()->keys};
    instance.properties.set("Since", DateTime{1, false});
    instance.properties.set("Slots", U16{1});
    return instance;
  }
};

TEST_P(EachRefusal, OfTheBrokerIsAnErrorThatSaysInWhat) {
  const std::string expected =
      std::string("1 the broker failed in ") + GetParam().doing + ": no " + GetParam().function;
  CMPIArgs* out = args();
  broker.refuse(GetParam().function);
  EXPECT_EQ(refusal([&] {
              values.makeInstance(everything(), nullptr);
              values.addArguments(out, only(std::uint8_t{1}));
            }),
            expected);
}

INSTANTIATE_TEST_SUITE_P(Functions, EachRefusal,
                         ::testing::Values(RefusalRow{"newObjectPath", "making a path"},
                                           RefusalRow{"addKey", "adding a key"},
                                           RefusalRow{"newInstance", "making an instance"},
                                           RefusalRow{"newDateTimeFromBinary", "making a date"},
                                           RefusalRow{"newArray", "making an array"},
                                           RefusalRow{"setElementAt", "filling an array"},
                                           RefusalRow{"setProperty", "setting a property"},
                                           RefusalRow{"addArg", "adding an argument"}),
                         [](const auto& row) { return std::string(row.param.function); });

TEST_F(CmpiValuesTest, ARefusalKeepsItsCodeAndNeedsNoMessage) {
  EXPECT_EQ(refusal([] {
              check({CMPI_RC_ERR_NOT_SUPPORTED, nullptr}, "dancing");
            }),
            "7 the broker failed in dancing: ");
  EXPECT_EQ(refusal([] { check({CMPI_RC_OK, nullptr}, "dancing"); }), "none");
}

TEST_F(CmpiValuesTest, ATextWithoutCharactersIsEmpty) {
  CMPIString* string = broker.text("a");
  CMPIStringFT table = *string->ft;
  table.getCharPtr = [](const CMPIString*, CMPIStatus*) -> const char* { return nullptr; };
  const CMPIString without{string->hdl, &table};
  EXPECT_EQ(textOf(string), "a");
  EXPECT_EQ(textOf(&without), "");
  EXPECT_EQ(textOf(nullptr), "");
}

}  // namespace
}  // namespace providers
