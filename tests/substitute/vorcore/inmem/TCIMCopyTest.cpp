#include <gtest/gtest.h>

#include <thread>

#include "framework/TCIMCopy.h"
#include "substitute/vorcore/inmem/ClassImport.h"
#include "tests/substitute/vorcore/Fixtures.h"
#include "tests/substitute/vorcore/Foreign.h"
#include "tests/substitute/vorcore/ForeignNamespace.h"

namespace vorcore {
namespace {

using namespace NZELVOR20;
using Names = std::vector<std::string>;

class TCIMCopyTest : public testing::Test {
 protected:
  /// A record of this run, complete.
  boost::shared_ptr<ICIMInstance> record(const std::string& id) {
    const auto made = makeRecord(*m_source, "ORG_Record", id);
    made->SetProperty("CompletionState", TCIMValue::Uint16(2), {});
    made->SetProperty("ErrorCode", texts({"a", "b"}), {});
    return made;
  }

  void expectRecord(ICIMInstance& copy) {
    EXPECT_EQ(pathOf(copy), "root/report:ORG_Record.InstanceID=\"7\"");
    EXPECT_EQ(shown(copy, "CompletionState"), "OK");
    EXPECT_EQ(shown(copy, "ErrorCode"), "{a,b}");
  }

  boost::shared_ptr<TInmemNamespace> m_source = recordNamespace("root/source");
  boost::shared_ptr<TInmemNamespace> m_target = TInmemNamespace::make("root/report");
};

TEST_F(TCIMCopyTest, TheCopyStandsBelowTheSameSuperclasses) {
  expectRecord(*TCIMCopy::CopyInstance(record("7"), m_target));
  EXPECT_EQ(idsOf(*m_target, "CIM_DiagnosticCompletionRecord", true), Names{"7"});
  EXPECT_EQ(idsOf(*m_target, "CIM_DiagnosticRecord", true), Names{"7"});
  EXPECT_EQ(m_target->GetClass("ORG_Record", {})->GetQualifier("Description", {}).ToText(),
            "A record.");
}

TEST_F(TCIMCopyTest, AClassOfAnotherKindIsAskedForItsDeclaration) {
  const ForeignInstance foreign(record("7"), true);
  expectRecord(*TCIMCopy::CopyInstance(boost::make_shared<ForeignInstance>(foreign), m_target));
  EXPECT_EQ(idsOf(*m_target, "CIM_DiagnosticCompletionRecord", true), Names{"7"});
  EXPECT_EQ(shown(*m_target->GetClass("ORG_Record", {})->AllocateInstance({}), "CompletionState"),
            "Unknown");
}

TEST_F(TCIMCopyTest, AnInstanceWithoutAClassIsCopiedByItsOwnProperties) {
  const ForeignInstance foreign(record("7"), false);
  expectRecord(*TCIMCopy::CopyInstance(boost::make_shared<ForeignInstance>(foreign), m_target));
  EXPECT_EQ(idsOf(*m_target, "ORG_Record", false), Names{"7"});
}

TEST_F(TCIMCopyTest, KeysThatOnlyThePathTellsAreKept) {
  ClassDeclaration keyless = recordClass("ORG_Keyless", "");
  keyless.properties.change(0).isKey = false;
  markKeys(keyless, TCIMReference(nullptr, "", "ORG_Keyless", {{"INSTANCEID", TCIMValue("x")}}));
  EXPECT_TRUE(keyless.properties[0].isKey);
  EXPECT_FALSE(keyless.properties[1].isKey);
}

TEST_F(TCIMCopyTest, ACopyReplacesTheOneOfTheSamePathAndLeavesTheOthers) {
  TCIMCopy::CopyInstance(record("1"), m_target);
  TCIMCopy::CopyInstance(makeRecord(*m_source, "ORG_Record", "7"), m_target);
  const auto copy = TCIMCopy::CopyInstance(record("7"), m_target);
  EXPECT_EQ(idsOf(*m_target, "ORG_Record", false), (Names{"1", "7"}));
  EXPECT_EQ(shown(*m_target->GetInstance(copy->GetObjectPath({}), {}), "CompletionState"), "OK");
}

TEST_F(TCIMCopyTest, TheCopyOutlivesItsSource) {
  const auto copy = TCIMCopy::CopyInstance(record("7"), m_target);
  m_source.reset();
  expectRecord(*m_target->GetInstance(copy->GetObjectPath({}), {}));
  EXPECT_EQ(copy->GetClass({})->GetNamespace({}), m_target);
}

TEST_F(TCIMCopyTest, TheCopyAndItsSourceChangeApart) {
  const auto source = record("7");
  const auto copy = TCIMCopy::CopyInstance(source, m_target);
  source->SetProperty("CompletionState", TCIMValue::Uint16(1), {});
  EXPECT_EQ(shown(*copy, "CompletionState"), "OK");
}

TEST_F(TCIMCopyTest, AnotherNamespaceIsWrittenToThroughItsInterface) {
  const auto inner = recordNamespace("root/report");
  const auto target = boost::make_shared<ForeignNamespace>(inner);
  expectRecord(*TCIMCopy::CopyInstance(record("7"), target));
  EXPECT_EQ(idsOf(*inner, "CIM_DiagnosticRecord", true), Names{"7"});
}

TEST_F(TCIMCopyTest, AnotherNamespaceHasToKnowTheClass) {
  const auto target = boost::make_shared<ForeignNamespace>(m_target);
  EXPECT_EQ(failureOf([&] { TCIMCopy::CopyInstance(record("7"), target); }),
            "not supported: copying to a namespace that does not know class ORG_Record");
}

TEST_F(TCIMCopyTest, EmptyHandlesAreRefused) {
  EXPECT_EQ(failureOf([&] { TCIMCopy::CopyInstance(nullptr, m_target); }),
            "invalid parameter: copying with an empty handle");
  EXPECT_EQ(failureOf([&] { TCIMCopy::CopyInstance(record("7"), nullptr); }),
            "invalid parameter: copying with an empty handle");
}

TEST_F(TCIMCopyTest, TwoThreadsCopyRecordsOfANewClass) {
  const auto copyMany = [this](const std::string& prefix) {
    for (int round = 0; round < 100; ++round) {
      TCIMCopy::CopyInstance(record(prefix + std::to_string(round)), m_target);
    }
  };
  std::thread other([&] { copyMany("a"); });
  copyMany("b");
  other.join();
  EXPECT_EQ(idsOf(*m_target, "CIM_DiagnosticRecord", true).size(), 200U);
}

}  // namespace
}  // namespace vorcore
