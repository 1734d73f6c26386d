#include <gtest/gtest.h>

#include <thread>

#include "framework/TInmemInstance.h"
#include "tests/substitute/vorcore/Fixtures.h"
#include "tests/substitute/vorcore/Foreign.h"

namespace vorcore {
namespace {

using namespace NZELVOR20;

std::vector<std::string> shownProperties(ICIMInstance& instance) {
  std::vector<std::string> lines;
  instance.EnumerateProperties(
      [&](const boost::shared_ptr<ICIMProperty>& each) {
        lines.push_back(each->GetName() + "=" + each->ToString());
        return true;
      },
      {});
  return lines;
}

class TInmemInstanceTest : public testing::Test {
 protected:
  boost::shared_ptr<TInmemNamespace> m_ns = recordNamespace("root/a");
  TInmemInstance m_instance{m_ns->GetClass("ORG_Record", {})};
};

TEST_F(TInmemInstanceTest, BeginsWithTheDeclaredDefaults) {
  EXPECT_EQ(shownProperties(m_instance),
            (std::vector<std::string>{"InstanceID=", "CompletionState=Unknown", "ErrorCode="}));
  const TCIMValue codes = m_instance.GetProperty("ErrorCode", {})->GetValue({});
  EXPECT_TRUE(codes == TCIMValue::Null(ECIMType::eString, true));
}

TEST_F(TInmemInstanceTest, APropertyTakesItsDeclaredType) {
  m_instance.SetProperty("completionstate", TCIMValue("2"), {});
  const auto state = m_instance.GetProperty("COMPLETIONSTATE", {});
  EXPECT_TRUE(state->GetValue({}) == TCIMValue::Uint16(2));
  EXPECT_EQ(state->ToString(), "OK");
  EXPECT_EQ(state->GetName(), "CompletionState");
  EXPECT_EQ(state->GetType(), ECIMType::eUint16);
  EXPECT_FALSE(state->IsArray());
}

TEST_F(TInmemInstanceTest, AValueOfAnotherTypeIsRefusedAndNothingChanges) {
  EXPECT_EQ(failureOf([&] { m_instance.SetProperty("CompletionState", TCIMValue("x"), {}); }),
            "type mismatch: string \"x\" cannot be read as an unsigned integer");
  EXPECT_EQ(shown(m_instance, "CompletionState"), "Unknown");
}

TEST_F(TInmemInstanceTest, AnUnknownPropertyIsNamed) {
  EXPECT_EQ(failureOf([&] { m_instance.GetProperty("Nope", {}); }),
            "no such property: Nope of class ORG_Record");
  EXPECT_EQ(failureOf([&] { m_instance.SetProperty("Nope", TCIMValue("x"), {}); }),
            "no such property: Nope of class ORG_Record");
}

TEST_F(TInmemInstanceTest, ThePathHasTheKeys) {
  m_instance.SetProperty("InstanceID", TCIMValue("7"), {});
  EXPECT_EQ(pathOf(m_instance), "root/a:ORG_Record.InstanceID=\"7\"");
  EXPECT_EQ(m_instance.GetObjectPath({}).GetNamespace(), m_ns);
  EXPECT_EQ(m_instance.GetPegasusNSPStr(), "");
}

TEST_F(TInmemInstanceTest, QualifiersComeFromTheDeclaration) {
  EXPECT_TRUE(m_instance.GetProperty("InstanceID", {})->GetQualifier("key", {}).ToBoolean());
  EXPECT_TRUE(m_instance.GetProperty("ErrorCode", {})->GetQualifier("Key", {}).IsNull());
  EXPECT_EQ(m_instance.GetProperty("CompletionState", {})->GetQualifier("values", {}).ToString(10),
            "{Unknown,Other,OK}");
}

TEST_F(TInmemInstanceTest, EnumerationStopsWhenToldSo) {
  int count = 0;
  m_instance.EnumerateProperties(
      [&](const boost::shared_ptr<ICIMProperty>&) { return ++count < 2; }, {});
  EXPECT_EQ(count, 2);
}

TEST_F(TInmemInstanceTest, ACopyIsIndependentInBothDirections) {
  TInmemInstance copy = m_instance;
  copy.SetProperty("InstanceID", TCIMValue("copy"), {});
  EXPECT_EQ(shown(m_instance, "InstanceID"), "");
  m_instance.SetProperty("CompletionState", TCIMValue::Uint16(2), {});
  EXPECT_EQ(shown(copy, "CompletionState"), "Unknown");
}

TEST_F(TInmemInstanceTest, APropertyHandleKeepsTheValueOfItsTime) {
  const auto before = m_instance.GetProperty("CompletionState", {});
  m_instance.SetProperty("CompletionState", TCIMValue::Uint16(2), {});
  EXPECT_EQ(before->ToString(), "Unknown");
}

TEST_F(TInmemInstanceTest, SettingAPropertyDuringAnEnumerationDoesNotDisturbIt) {
  std::vector<std::string> seen;
  m_instance.EnumerateProperties(
      [&](const boost::shared_ptr<ICIMProperty>& each) {
        m_instance.SetProperty("CompletionState", TCIMValue::Uint16(2), {});
        seen.push_back(each->ToString());
        return true;
      },
      {});
  EXPECT_EQ(seen, (std::vector<std::string>{"", "Unknown", ""}));
  EXPECT_EQ(shown(m_instance, "CompletionState"), "OK");
}

TEST_F(TInmemInstanceTest, AnyClassWillDo) {
  TInmemInstance instance(boost::make_shared<ForeignClass>(m_ns->GetClass("ORG_Record", {})));
  instance.SetProperty("InstanceID", TCIMValue("7"), {});
  instance.SetProperty("CompletionState", TCIMValue::Uint16(2), {});
  EXPECT_EQ(shown(instance, "CompletionState"), "OK");
  EXPECT_EQ(pathOf(instance), "ORG_Record.InstanceID=\"7\"");
}

TEST_F(TInmemInstanceTest, WithoutAClassThereIsNoInstance) {
  EXPECT_EQ(failureOf([] { TInmemInstance(boost::shared_ptr<ICIMClass>()); }),
            "invalid parameter: an instance without a class");
}

TEST_F(TInmemInstanceTest, OutlivesItsNamespace) {
  m_instance.SetProperty("InstanceID", TCIMValue("7"), {});
  m_ns.reset();
  EXPECT_EQ(pathOf(m_instance), "root/a:ORG_Record.InstanceID=\"7\"");
  EXPECT_FALSE(m_instance.GetObjectPath({}).GetNamespace());
  EXPECT_EQ(failureOf([&] { m_instance.GetClass({})->GetSuperclass({}); }),
            "invalid namespace: the namespace of class ORG_Record is gone");
}

TEST_F(TInmemInstanceTest, SeveralThreadsReadIt) {
  m_instance.SetProperty("CompletionState", TCIMValue::Uint16(2), {});
  const auto readOften = [&] {
    for (int round = 0; round < 500; ++round) {
      ASSERT_EQ(shown(m_instance, "CompletionState"), "OK");
      ASSERT_EQ(shownProperties(m_instance).size(), 3U);
    }
  };
  std::thread other(readOften);
  readOften();
  other.join();
}

TEST_F(TInmemInstanceTest, OneThreadReadsWhatAnotherThreadsCopyWasMadeFrom) {
  TInmemInstance copy = m_instance;
  std::thread writer([&] {
    for (int round = 0; round < 500; ++round) {
      copy.SetProperty("CompletionState", TCIMValue::Uint16(2), {});
    }
  });
  for (int round = 0; round < 500; ++round) {
    ASSERT_EQ(shown(m_instance, "CompletionState"), "Unknown");
  }
  writer.join();
}

}  // namespace
}  // namespace vorcore
