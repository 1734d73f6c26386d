#include <gtest/gtest.h>

#include <thread>

#include "framework/INamespaceProvider.h"
#include "framework/TCIMQualifierDecl.h"
#include "framework/TInmemInstance.h"
#include "substitute/vorcore/inmem/InmemNamespace.h"
#include "tests/substitute/vorcore/Fixtures.h"
#include "tests/substitute/vorcore/Foreign.h"

namespace vorcore {
namespace {

using namespace NZELVOR20;
using Names = std::vector<std::string>;

Names rootsOf(ICIMNamespace& ns) {
  Names names;
  ns.EnumerateRootClasses(
      [&](const boost::shared_ptr<ICIMClass>& each) {
        names.push_back(each->GetName());
        return true;
      },
      {});
  return names;
}

Names subclassesOf(ICIMNamespace& ns, const std::string& name, bool deep) {
  Names names;
  ns.GetClass(name, {})->EnumerateSubclasses(
      [&](const boost::shared_ptr<ICIMClass>& each) {
        names.push_back(each->GetName());
        return true;
      },
      deep, {});
  return names;
}

TCIMReference idReference(const std::string& className, const TCIMValue& id) {
  return TCIMReference(nullptr, "", className, {{"instanceid", id}});
}

class InmemNamespaceTest : public testing::Test {
 protected:
  void store(const std::string& className, const std::string& id) {
    m_ns->ModifyInstance(makeRecord(*m_ns, className, id), {});
  }

  boost::shared_ptr<TInmemNamespace> m_ns = recordNamespace("root/a");
};

TEST_F(InmemNamespaceTest, ClassesAreFoundWithoutCase) {
  const auto found = m_ns->GetClass("org_RECORD", {});
  EXPECT_EQ(found->GetName(), "ORG_Record");
  EXPECT_EQ(found->GetNamespace({}), m_ns);
  EXPECT_EQ(found->GetSuperclass({})->GetName(), "CIM_DiagnosticCompletionRecord");
  EXPECT_FALSE(m_ns->GetClass("CIM_DiagnosticRecord", {})->GetSuperclass({}));
  EXPECT_EQ(found->GetQualifier("description", {}).ToText(), "A record.");
  EXPECT_TRUE(found->GetQualifier("Version", {}).IsNull());
}

// Catches a report that nothing was copied to yet and that fails whoever looks for records in it.
TEST_F(InmemNamespaceTest, AnUnknownClassIsAnEmptyHandle) {
  EXPECT_FALSE(m_ns->GetClass("CIM_Foo", {}));
  EXPECT_FALSE(m_ns->GetClass("", {}));
  EXPECT_FALSE(TInmemNamespace::make("root/report")->GetClass("ORG_Record", {}));
}

TEST_F(InmemNamespaceTest, TheHierarchyIsEnumerated) {
  m_ns->AllocateClass("ORG_Other", "CIM_DiagnosticRecord", {});
  m_ns->AllocateClass("ORG_Root", "", {});
  EXPECT_EQ(rootsOf(*m_ns), (Names{"CIM_DiagnosticRecord", "ORG_Root"}));
  EXPECT_EQ(subclassesOf(*m_ns, "CIM_DiagnosticRecord", false),
            (Names{"CIM_DiagnosticCompletionRecord", "ORG_Other"}));
  EXPECT_EQ(subclassesOf(*m_ns, "CIM_DiagnosticRecord", true),
            (Names{"CIM_DiagnosticCompletionRecord", "ORG_Record", "ORG_Other"}));
  EXPECT_EQ(subclassesOf(*m_ns, "ORG_Record", true), Names());
}

TEST_F(InmemNamespaceTest, ANewSubclassHasWhatItInherits) {
  ClassDeclaration base = recordClass("ORG_Base", "");
  base.isAbstract = true;
  base.qualifiers.push_back({"ABSTRACT", TCIMValue::Boolean(true)});
  m_ns->addClass(base);
  const auto made = m_ns->AllocateClass("ORG_New", "org_base", {});
  EXPECT_EQ(made->GetSuperclass({})->GetName(), "ORG_Base");
  EXPECT_TRUE(made->GetQualifier("Abstract", {}).IsNull());
  EXPECT_EQ(made->GetQualifier("Description", {}).ToText(), "A record.");
  EXPECT_EQ(pathOf(*makeRecord(*m_ns, "ORG_New", "7")), "root/a:ORG_New.InstanceID=\"7\"");
}

TEST_F(InmemNamespaceTest, AClassIsMadeOnceAndBelowAKnownOne) {
  EXPECT_EQ(failureOf([&] { m_ns->AllocateClass("org_record", "", {}); }),
            "already exists: class org_record");
  EXPECT_EQ(failureOf([&] { m_ns->AllocateClass("X", "CIM_Foo", {}); }),
            "invalid class: class CIM_Foo");
  EXPECT_EQ(failureOf([&] { m_ns->addClass(recordClass("X", "CIM_Foo")); }),
            "invalid class: superclass CIM_Foo");
  EXPECT_EQ(failureOf([&] { m_ns->AllocateClass("", "", {}); }),
            "invalid parameter: a class without a name");
}

TEST_F(InmemNamespaceTest, InstancesAreEnumeratedInTheOrderOfTheirFirstStoring) {
  store("ORG_Record", "3");
  store("CIM_DiagnosticCompletionRecord", "1");
  store("ORG_Record", "2");
  store("ORG_Record", "3");
  EXPECT_EQ(idsOf(*m_ns, "CIM_DiagnosticRecord", true), (Names{"3", "1", "2"}));
  EXPECT_EQ(idsOf(*m_ns, "CIM_DiagnosticRecord", false), Names());
  EXPECT_EQ(idsOf(*m_ns, "ORG_Record", false), (Names{"3", "2"}));
}

// Catches an instance that is lost, or found in another's place, once many others are gone.
TEST_F(InmemNamespaceTest, TheOrderOutlivesTheDeletionOfMostInstances) {
  const auto reference = [](int id) {
    return idReference("ORG_Record", TCIMValue(std::to_string(id)));
  };
  for (int id = 0; id < 50; ++id) store("ORG_Record", std::to_string(id));
  for (int id = 0; id < 50; ++id) {
    if (id % 7 != 3) m_ns->DeleteInstance(reference(id), {});
  }
  EXPECT_EQ(idsOf(*m_ns, "ORG_Record", false), (Names{"3", "10", "17", "24", "31", "38", "45"}));
  EXPECT_THROW(m_ns->DeleteInstance(reference(4), {}), TVORException);
  EXPECT_EQ(m_ns->GetInstance(reference(24), {})->GetProperty("InstanceID", {})->ToString(), "24");
  store("ORG_Record", "4");
  store("ORG_Record", "17");
  m_ns->DeleteInstance(reference(3), {});
  EXPECT_EQ(idsOf(*m_ns, "ORG_Record", true), (Names{"10", "17", "24", "31", "38", "45", "4"}));
}

TEST_F(InmemNamespaceTest, EnumerationsStopWhenToldSo) {
  for (const char* id : {"1", "2", "3"}) store("ORG_Record", id);
  int count = 0;
  const auto itsClass = m_ns->GetClass("ORG_Record", {});
  itsClass->EnumerateInstances([&](const boost::shared_ptr<ICIMInstance>&) { return ++count < 2; },
                               false, {});
  EXPECT_EQ(count, 2);
  count = 0;
  itsClass->EnumerateInstanceNames([&](const TCIMReference&) { return ++count < 2; }, false, {});
  EXPECT_EQ(count, 2);
  count = 0;
  itsClass->EnumerateProperties([&](const boost::shared_ptr<ICIMProperty>&) { return ++count < 2; },
                                {});
  EXPECT_EQ(count, 2);
}

TEST_F(InmemNamespaceTest, NamesAreEnumeratedLikeInstances) {
  store("ORG_Record", "1");
  Names paths;
  m_ns->GetClass("CIM_DiagnosticRecord", {})
      ->EnumerateInstanceNames(
          [&](const TCIMReference& path) {
            paths.push_back(path.GetPath());
            return true;
          },
          true, {});
  EXPECT_EQ(paths, Names{"root/a:ORG_Record.InstanceID=\"1\""});
}

TEST_F(InmemNamespaceTest, ACallbackMayStoreAndDelete) {
  store("ORG_Record", "1");
  m_ns->GetClass("ORG_Record", {})
      ->EnumerateInstances(
          [&](const boost::shared_ptr<ICIMInstance>& each) {
            store("ORG_Record", "2");
            m_ns->DeleteInstance(each->GetObjectPath({}), {});
            return true;
          },
          false, {});
  EXPECT_EQ(idsOf(*m_ns, "ORG_Record", false), Names{"2"});
}

TEST_F(InmemNamespaceTest, AnInstanceIsReadByItsPath) {
  store("ORG_Record", "7");
  EXPECT_EQ(pathOf(*m_ns->GetInstance(idReference("org_record", TCIMValue("7")), {})),
            "root/a:ORG_Record.InstanceID=\"7\"");
}

TEST_F(InmemNamespaceTest, AnInstanceThatIsNotThereIsNotFound) {
  store("ORG_Record", "7");
  const std::vector<TCIMReference> wrong = {
      idReference("ORG_Record", TCIMValue("8")),
      idReference("CIM_DiagnosticCompletionRecord", TCIMValue("7")),
      idReference("ORG_Record", TCIMValue::Uint16(7)), idReference("ORG_Record", TCIMValue()),
      idReference("CIM_Foo", TCIMValue("7"))};
  for (const TCIMReference& reference : wrong) {
    EXPECT_EQ(failureOf([&] { m_ns->GetInstance(reference, {}); }),
              "not found: " + reference.GetPath());
    EXPECT_EQ(failureOf([&] { m_ns->DeleteInstance(reference, {}); }),
              "not found: " + reference.GetPath());
  }
}

TEST_F(InmemNamespaceTest, KeysOfDifferentValuesNeverMeet) {
  ClassDeclaration twoKeys = rootClass("ORG_Two");
  twoKeys.properties.push_back(property("Other", ECIMType::eString, true));
  m_ns->addClass(twoKeys);
  const auto storePair = [&](const TCIMValue& one, const TCIMValue& other) {
    const auto made = m_ns->GetClass("ORG_Two", {})->AllocateInstance({});
    made->SetProperty("InstanceID", one, {});
    made->SetProperty("Other", other, {});
    m_ns->ModifyInstance(made, {});
  };
  storePair(TCIMValue("a,1:b"), TCIMValue("c"));
  storePair(TCIMValue("a"), TCIMValue("b,1:c"));
  storePair(TCIMValue(""), TCIMValue());
  storePair(TCIMValue(), TCIMValue(""));
  EXPECT_EQ(idsOf(*m_ns, "ORG_Two", false).size(), 4U);
}

TEST_F(InmemNamespaceTest, IntegerKeysAreComparedByValue) {
  ClassDeclaration numbered = rootClass("ORG_Numbered");
  numbered.properties.change(0).type = ECIMType::eUint32;
  m_ns->addClass(numbered);
  m_ns->ModifyInstance(makeRecord(*m_ns, "ORG_Numbered", "7"), {});
  EXPECT_TRUE(m_ns->GetInstance(idReference("ORG_Numbered", TCIMValue::Uint16(7)), {}));
}

TEST_F(InmemNamespaceTest, WhatIsHandedOutIsACopy) {
  const auto made = makeRecord(*m_ns, "ORG_Record", "7");
  m_ns->ModifyInstance(made, {});
  made->SetProperty("CompletionState", TCIMValue::Uint16(1), {});
  const TCIMReference path = made->GetObjectPath({});
  m_ns->GetInstance(path, {})->SetProperty("CompletionState", TCIMValue::Uint16(2), {});
  EXPECT_EQ(shown(*m_ns->GetInstance(path, {}), "CompletionState"), "Unknown");
}

TEST_F(InmemNamespaceTest, ModifyingReplacesTheInstanceOfThePath) {
  store("ORG_Record", "7");
  const auto changed = makeRecord(*m_ns, "ORG_Record", "7");
  changed->SetProperty("CompletionState", TCIMValue::Uint16(2), {});
  m_ns->ModifyInstance(changed, {});
  EXPECT_EQ(shown(*m_ns->GetInstance(changed->GetObjectPath({}), {}), "CompletionState"), "OK");
  EXPECT_EQ(failureOf([&] { m_ns->ModifyInstance(nullptr, {}); }),
            "invalid parameter: an empty instance handle");
}

TEST_F(InmemNamespaceTest, AnInstanceOfAnUnknownClassIsRefused) {
  const auto other = TInmemNamespace::make("root/b");
  const auto made = makeRecord(*m_ns, "ORG_Record", "7");
  EXPECT_EQ(failureOf([&] { other->ModifyInstance(made, {}); }),
            "invalid class: class ORG_Record in root/b");
}

TEST_F(InmemNamespaceTest, AnInstanceFromElsewhereKeepsWhatTheClassDeclares) {
  const auto other = TInmemNamespace::make("root/b");
  other->addClass(rootClass("ORG_Record"));
  const auto stored = other->storeInstance(*makeRecord(*m_ns, "ORG_Record", "7"));
  EXPECT_EQ(pathOf(*stored), "root/b:ORG_Record.InstanceID=\"7\"");
  EXPECT_EQ(failureOf([&] { stored->GetProperty("CompletionState", {}); }),
            "no such property: CompletionState of class ORG_Record");
}

TEST_F(InmemNamespaceTest, ClearingKeepsTheClassesAndTheHandlesOfOthers) {
  store("ORG_Record", "7");
  const auto held = m_ns->GetInstance(idReference("ORG_Record", TCIMValue("7")), {});
  m_ns->ClearInstances({});
  EXPECT_EQ(idsOf(*m_ns, "CIM_DiagnosticRecord", true), Names());
  EXPECT_EQ(shown(*held, "InstanceID"), "7");
  store("ORG_Record", "7");
  EXPECT_EQ(idsOf(*m_ns, "ORG_Record", true), Names{"7"});
}

TEST_F(InmemNamespaceTest, UnderlyingNamespacesAnswerWhatIsUnknownHere) {
  const auto top = TInmemNamespace::make("root/top");
  top->AllocateClass("ORG_Top", "", {});
  top->AddUnderlyingNamespace(TInmemNamespace::make("root/empty"));
  top->AddUnderlyingNamespace(m_ns);
  store("ORG_Record", "7");
  m_ns->AllocateQualifierDecl("Key", {});
  EXPECT_EQ(top->GetClass("ORG_Record", {})->GetNamespace({}), m_ns);
  EXPECT_TRUE(top->GetInstance(idReference("ORG_Record", TCIMValue("7")), {}));
  EXPECT_EQ(top->GetQualifierDecl("key", {})->name, "Key");
  EXPECT_EQ(rootsOf(*top), (Names{"ORG_Top", "CIM_DiagnosticRecord"}));
  EXPECT_FALSE(top->GetClass("CIM_Foo", {}));
  EXPECT_FALSE(top->hasClass("ORG_Record"));
}

TEST_F(InmemNamespaceTest, ASuperclassOfAnUnderlyingNamespaceIsMadeHereToo) {
  const auto top = TInmemNamespace::make("root/top");
  top->AddUnderlyingNamespace(m_ns);
  top->AllocateClass("ORG_New", "ORG_Record", {});
  EXPECT_EQ(subclassesOf(*top, "CIM_DiagnosticRecord", true),
            (Names{"CIM_DiagnosticCompletionRecord", "ORG_Record", "ORG_New"}));
  EXPECT_EQ(rootsOf(*top), Names{"CIM_DiagnosticRecord"});
}

TEST_F(InmemNamespaceTest, AnUnderlyingNamespaceIsAnotherOne) {
  EXPECT_EQ(failureOf([&] { m_ns->AddUnderlyingNamespace(nullptr); }),
            "invalid parameter: underlying namespace");
  EXPECT_EQ(failureOf([&] { m_ns->AddUnderlyingNamespace(m_ns); }),
            "invalid parameter: underlying namespace");
}

TEST_F(InmemNamespaceTest, ProvidersAreItsOwnStoreAndThoseBelow) {
  const auto top = TInmemNamespace::make("root/top");
  top->AddUnderlyingNamespace(m_ns);
  Names names;
  std::vector<boost::shared_ptr<ICIMNamespace>> namespaces;
  const auto collect = [&](const boost::shared_ptr<INamespaceProvider>& each) {
    names.push_back(each->GetName());
    namespaces.push_back(each->GetNamespace({}));
    return true;
  };
  top->EnumerateProviders(collect, {});
  EXPECT_EQ(names, (Names{"memory:root/top", "memory:root/a"}));
  EXPECT_EQ(namespaces, (std::vector<boost::shared_ptr<ICIMNamespace>>{top, m_ns}));
  int count = 0;
  top->EnumerateProviders([&](const boost::shared_ptr<INamespaceProvider>&) { return ++count < 1; },
                          {});
  EXPECT_EQ(count, 1);
}

TEST_F(InmemNamespaceTest, AProviderDoesNotKeepItsNamespaceAlive) {
  const auto provider = m_ns->GetNamespaceProvider({});
  m_ns.reset();
  EXPECT_EQ(failureOf([&] { provider->GetNamespace({}); }), "invalid namespace: root/a is gone");
}

TEST_F(InmemNamespaceTest, TheUpcallNamespaceIsHeldWeakly) {
  EXPECT_FALSE(m_ns->GetUpcallNamespace());
  boost::shared_ptr<ICIMNamespace> upcall = TInmemNamespace::make("root/up");
  m_ns->SetUpcallNamespace(upcall);
  EXPECT_EQ(m_ns->GetUpcallNamespace(), upcall);
  upcall.reset();
  EXPECT_FALSE(m_ns->GetUpcallNamespace());
}

TEST_F(InmemNamespaceTest, NothingKeepsANamespaceAliveThatIsLetGo) {
  store("ORG_Record", "7");
  const auto held = m_ns->GetInstance(idReference("ORG_Record", TCIMValue("7")), {});
  const boost::weak_ptr<ICIMNamespace> watched = m_ns;
  m_ns.reset();
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(failureOf([&] {
              held->GetClass({})->EnumerateInstances(
                  [](const boost::shared_ptr<ICIMInstance>&) { return true; }, true, {});
            }),
            "invalid namespace: the namespace of class ORG_Record is gone");
}

TEST_F(InmemNamespaceTest, QualifierDeclarationsAreKeptByName) {
  m_ns->AllocateQualifierDecl("Values", {})->isArray = true;
  m_ns->AllocateQualifierDecl("Key", {});
  EXPECT_TRUE(m_ns->GetQualifierDecl("VALUES", {})->isArray);
  EXPECT_EQ(failureOf([&] { m_ns->AllocateQualifierDecl("KEY", {}); }),
            "already exists: qualifier KEY");
  EXPECT_EQ(failureOf([&] { m_ns->GetQualifierDecl("Nope", {}); }), "not found: qualifier Nope");
  Names names;
  m_ns->EnumerateQualifierDecls(
      [&](const boost::shared_ptr<TCIMQualifierDecl>& each) {
        names.push_back(each->name);
        return true;
      },
      {});
  EXPECT_EQ(names, (Names{"Key", "Values"}));
}

TEST_F(InmemNamespaceTest, QueriesAndSubscriptionsAreNotSupported) {
  EXPECT_EQ(failureOf([&] { m_ns->Subscribe("WQL", "select", nullptr, {}); }),
            "not supported: subscriptions in the in-memory namespace root/a");
  EXPECT_EQ(failureOf([&] { m_ns->ExecuteQuery("WQL", "select", TInstanceCallback(), {}); }),
            "not supported: WQL queries in the in-memory namespace root/a");
}

TEST_F(InmemNamespaceTest, ThreadsStoreReadAndEnumerateAtOnce) {
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([this, number] {
      for (int round = 0; round < 100; ++round) {
        const std::string id = std::to_string(number) + "-" + std::to_string(round);
        store("ORG_Record", id);
        ASSERT_EQ(
            shown(*m_ns->GetInstance(idReference("ORG_Record", TCIMValue(id)), {}), "InstanceID"),
            id);
        ASSERT_FALSE(idsOf(*m_ns, "CIM_DiagnosticRecord", true).empty());
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(idsOf(*m_ns, "ORG_Record", false).size(), 400U);
}

}  // namespace
}  // namespace vorcore
