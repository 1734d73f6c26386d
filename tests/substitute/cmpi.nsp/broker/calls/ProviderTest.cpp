#include "substitute/cmpi.nsp/broker/Limits.h"
#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "substitute/cmpi.nsp/broker/library/Library.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/model/PathReference.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::EVORStatusCode;
using NZELVOR20::TCIMValue;
using NZELVOR20::TVORException;

const ObjectPath kFans{"root/cimv2", "ACME_Fan", {}};

ObjectPath fansIn(const char* ns) { return ObjectPath{ns, "ACME_Fan", {}}; }

ObjectPath fanNamed(const char* name) {
  return ObjectPath{"root/cimv2", "ACME_Fan", {{"Name", TCIMValue(name)}}};
}

class ProviderTest : public testing::Test {
 protected:
  std::vector<InstanceDataPtr> enumerate(const ObjectPath& path, PropertyNames names = nullptr) {
    std::vector<InstanceDataPtr> found;
    provider.enumerateInstances(path, names, [&](const InstanceDataPtr& instance) {
      found.push_back(instance);
      return true;
    });
    return found;
  }

  /// Runs `operation`, which has to fail with `code` and a text that contains each of `parts`.
  template <typename Operation>
  static void expectFailure(EVORStatusCode code, std::vector<const char*> parts,
                            Operation operation) {
    try {
      operation();
      ADD_FAILURE() << "nothing failed";
    } catch (const TVORException& failure) {
      EXPECT_EQ(failure.GetStatus().GetStatusCode(), code) << failure.what();
      for (const char* part : parts) {
        EXPECT_NE(std::string(failure.what()).find(part), std::string::npos) << failure.what();
      }
    }
  }

  FakeUpcalls upcalls;
  Provider provider{"Test", PROVIDER_FILE, upcalls};
};

// One instance object is refilled for each answer; handing it on without a copy would give three
// times the last fan.
TEST_F(ProviderTest, EnumeratesInstances) {
  const auto fans = enumerate(kFans);
  ASSERT_EQ(fans.size(), 3U);
  EXPECT_EQ(*fans[0]->find("Name"), TCIMValue("fan1"));
  EXPECT_EQ(*fans[2]->find("Speed"), TCIMValue::Uint16(300));
  EXPECT_EQ(fans[1]->path.toText(), "root/cimv2:ACME_Fan.Name=\"fan2\"");
}

TEST_F(ProviderTest, EnumeratesNamesAndGivesThemTheNamespace) {
  std::vector<ObjectPath> names;
  provider.enumerateInstanceNames(kFans, [&](const ObjectPath& path) {
    names.push_back(path);
    return true;
  });
  ASSERT_EQ(names.size(), 1U);
  EXPECT_EQ(names[0].toText(), "root/cimv2:ACME_Fan.Name=\"fan1\"");
}

TEST_F(ProviderTest, TheReceiverStopsAnEnumeration) {
  int count = 0;
  provider.enumerateInstances(kFans, nullptr, [&](const InstanceDataPtr&) { return ++count < 2; });
  EXPECT_EQ(count, 2);
}

TEST_F(ProviderTest, WhatTheReceiverThrowsReachesTheCaller) {
  const auto thrower = [](const InstanceDataPtr&) -> bool { throw std::logic_error("mine"); };
  EXPECT_THROW(provider.enumerateInstances(kFans, nullptr, thrower), std::logic_error);
}

// The sink of an upcall fails in the broker's own way; that must not look like the provider's
// fault.
TEST_F(ProviderTest, WhatTheReceiverThrowsIsNotTakenForTheProvidersMistake) {
  const auto thrower = [](const InstanceDataPtr&) -> bool {
    throw Failure(CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED, "full");
  };
  EXPECT_THROW(provider.enumerateInstances(kFans, nullptr, thrower), Failure);
}

TEST_F(ProviderTest, AppliesThePropertyListThatTheProviderIgnores) {
  const std::vector<std::string> names = {"On"};
  const auto fans = enumerate(kFans, &names);
  ASSERT_EQ(fans.size(), 3U);
  EXPECT_TRUE(fans[0]->find("Speed")->IsNull());
  EXPECT_EQ(*fans[0]->find("Name"), TCIMValue("fan1"));
}

TEST_F(ProviderTest, GetsOneInstance) {
  const InstanceDataPtr fan = provider.getInstance(fanNamed("fan7"), nullptr);
  EXPECT_EQ(*fan->find("Speed"), TCIMValue::Uint16(42));
  EXPECT_EQ(fan->path, fanNamed("fan7"));
}

TEST_F(ProviderTest, AMissingInstanceIsNotFound) {
  for (const char* name : {"missing", "silent"}) {
    expectFailure(NZELVOR20::eVORNotFound, {"provider Test", "getInstance"},
                  [&] { provider.getInstance(fanNamed(name), nullptr); });
  }
}

TEST_F(ProviderTest, CreatesModifiesAndDeletes) {
  upcalls.addFan("model");
  const InstanceDataPtr fan = upcalls.instances[0];
  EXPECT_EQ(provider.createInstance(kFans, fan), fanNamed("made"));
  EXPECT_EQ(provider.createInstance(fansIn("test/silent"), fan), fanNamed("model"));
  const std::vector<std::string> names = {"Speed"};
  provider.modifyInstance(fanNamed("model"), fan, &names);
  expectFailure(NZELVOR20::eVORInvalidParameter, {"modifyInstance", "Speed was expected"},
                [&] { provider.modifyInstance(fanNamed("model"), fan, nullptr); });
  expectFailure(NZELVOR20::eVORNotSupported, {"deleteInstance", "fans stay"},
                [&] { provider.deleteInstance(fanNamed("model")); });
}

TEST_F(ProviderTest, PassesQueriesOn) {
  std::string name;
  provider.executeQuery(kFans, "all", "WQL", [&](const InstanceDataPtr& instance) {
    name = instance->find("Name")->ToText() + instance->find("Speed")->ToString(10);
    return true;
  });
  EXPECT_EQ(name, "all3");
}

struct RestrictionRow {
  AssociationFilter filter;
  const char* wanted;
};

TEST_F(ProviderTest, EmptyRestrictionsReachTheProviderAsNull) {
  const RestrictionRow rows[] = {{{"", "", "", ""}, "----"},
                                 {{"A", "", "", ""}, "a---"},
                                 {{"", "C", "", "O"}, "-c-o"},
                                 {{"A", "C", "R", "O"}, "acro"}};
  for (const RestrictionRow& row : rows) {
    std::string got;
    const auto sink = [&](const InstanceDataPtr& instance) {
      got = instance->find("Name")->ToText();
      return true;
    };
    provider.associators(fanNamed("x"), row.filter, nullptr, sink);
    EXPECT_EQ(got, row.wanted);
  }
}

TEST_F(ProviderTest, AsksForAssociationsInAllFourWays) {
  const AssociationFilter none;
  int count = 0;
  const auto takeInstance = [&](const InstanceDataPtr&) { return ++count > 0; };
  const auto takePath = [&](const ObjectPath&) { return ++count > 0; };
  provider.associators(fanNamed("x"), none, nullptr, takeInstance);
  provider.associatorNames(fanNamed("x"), none, takePath);
  provider.references(fanNamed("x"), none, nullptr, takeInstance);
  provider.referenceNames(fanNamed("x"), none, takePath);
  EXPECT_EQ(count, 4);
}

TEST_F(ProviderTest, InvokesAMethodWithDeclaredTypes) {
  Arguments out;
  const Arguments in = {{"Rounds", TCIMValue("21")}};
  EXPECT_EQ(provider.invokeMethod(fanNamed("x"), "Spin", in, out), TCIMValue::Uint32(42));
  ASSERT_EQ(out.size(), 2U);
  EXPECT_EQ(out[0].second, TCIMValue::Uint16(42));
  EXPECT_EQ(out[1].second, TCIMValue("here"));
}

TEST_F(ProviderTest, RefusesArgumentsOfAnotherType) {
  Arguments out;
  const Arguments in = {{"Rounds", TCIMValue("many")}};
  expectFailure(NZELVOR20::eVORTypeMismatch, {"provider Test", "Rounds"},
                [&] { provider.invokeMethod(fanNamed("x"), "Spin", in, out); });
}

TEST_F(ProviderTest, AMethodMayReturnObjectsOrNothing) {
  Arguments out;
  const TCIMValue path = provider.invokeMethod(fanNamed("x"), "GivePath", {}, out);
  EXPECT_EQ(pathOf(path.ToReference()), fanNamed("x"));
  const TCIMValue instance = provider.invokeMethod(fanNamed("x"), "GiveInstance", {}, out);
  EXPECT_EQ(*dataOf(*instance.ToInstance())->find("Name"), TCIMValue("given"));
  EXPECT_TRUE(provider.invokeMethod(fanNamed("x"), "GiveNothing", {}, out).IsNull());
}

TEST_F(ProviderTest, AFailingMethodLeavesTheOutputsAlone) {
  Arguments out = {{"Old", TCIMValue("kept")}};
  expectFailure(NZELVOR20::eVORMethodNotFound, {"provider Test", "invokeMethod", "Jump"},
                [&] { provider.invokeMethod(fanNamed("x"), "Jump", {}, out); });
  ASSERT_EQ(out.size(), 1U);
  EXPECT_EQ(out[0].first, "Old");
}

TEST_F(ProviderTest, AProviderReachesTheOthersThroughTheBroker) {
  upcalls.addFan("a");
  upcalls.addFan("b");
  Arguments out;
  EXPECT_EQ(provider.invokeMethod(fanNamed("x"), "CallItself", {}, out), TCIMValue::Uint32(2));
  EXPECT_EQ(upcalls.asked.at(0), "enumerateInstances root/cimv2:ACME_Fan.Name=\"x\"");
}

TEST_F(ProviderTest, AFailedUpcallComesBackWithItsReason) {
  upcalls.failure = [] {
    throw TVORException(NZELVOR20::TVORStatusCode(NZELVOR20::eVORAccessDenied, "only on Sundays"));
  };
  Arguments out;
  expectFailure(NZELVOR20::eVORAccessDenied, {"only on Sundays"},
                [&] { provider.invokeMethod(fanNamed("x"), "CallItself", {}, out); });
}

// Catches a number that the framework has no code for, or only one that it shares with others, on
// its way from provider to provider.
TEST_F(ProviderTest, TheStatusOfOneProviderReachesAnotherUnchanged) {
  Broker& asking = Broker::make("Asking", "/providers/libasking.so", upcalls);
  const Scope scope(Scope::Reason::kCall, &asking);
  const auto* context = makeObject(Ownership::kBorrowed, &asking,
                                   std::make_unique<ContextBody>(std::string("root/cimv2")));
  const auto* path = CMNewObjectPath(asking.handle(), "root/cimv2", "ACME_Fan", nullptr);
  for (const int number : {1, 2, 8, 9, 14, 15, 27, 29, 100, 200, 4711, -5}) {
    upcalls.failure = [&] { enumerate(fansIn(("test/status/" + std::to_string(number)).c_str())); };
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CBEnumInstances(asking.handle(), context, path, nullptr, &status);
    EXPECT_EQ(codeOf(status), number);
  }
}

struct FailureRow {
  const char* ns;
  EVORStatusCode code;
  const char* text;
};

constexpr FailureRow kFailures[] = {
    {"test/error", NZELVOR20::eVORAccessDenied, "no more fans"},
    {"test/status/4711", NZELVOR20::eVORFailed, "CMPI status 4711"},
    {"test/badmessage", NZELVOR20::eVORFailed, "CMPI status 1"},
    {"test/wrongkind", NZELVOR20::eVORTypeMismatch, "delivers no object paths"},
    {"test/errorobject", NZELVOR20::eVORAccessDenied, "the first error"},
    {"test/unknown", NZELVOR20::eVORNotSupported, "CMPI status 7"},
};

TEST_F(ProviderTest, AFailureNamesProviderOperationAndReason) {
  for (const FailureRow& row : kFailures) {
    expectFailure(row.code, {"provider Test", "enumerateInstances", row.text},
                  [&] { enumerate(fansIn(row.ns)); });
  }
}

TEST_F(ProviderTest, NothingFoundIsAnEmptyEnumeration) {
  EXPECT_TRUE(enumerate(fansIn("test/nowhere")).empty());
}

TEST_F(ProviderTest, WhatComesAfterDoneIsIgnored) {
  EXPECT_EQ(enumerate(fansIn("test/afterdone")).size(), 1U);
}

TEST_F(ProviderTest, GarbageIsRefusedAsABadHandle) {
  std::vector<InstanceDataPtr> fans;
  expectFailure(NZELVOR20::eVORFailed, {"provider Test", "enumerateInstances"}, [&] {
    provider.enumerateInstances(fansIn("test/garbage"), nullptr, [&](const InstanceDataPtr& fan) {
      fans.push_back(fan);
      return true;
    });
  });
  ASSERT_EQ(fans.size(), 1U);
  EXPECT_EQ(*fans[0]->find("Speed"), TCIMValue::Uint16(4));
}

TEST_F(ProviderTest, OtherClassesAreDropped) {
  const auto fans = enumerate(fansIn("test/foreign"));
  ASSERT_EQ(fans.size(), 2U);
  EXPECT_EQ(fans[0]->path.className, "Undeclared");
  EXPECT_EQ(fans[1]->path.className, "ACME_Fan");
  int names = 0;
  provider.enumerateInstanceNames(fansIn("test/foreign"),
                                  [&](const ObjectPath&) { return ++names > 0; });
  EXPECT_EQ(names, 1);
}

TEST_F(ProviderTest, AnEndlessEnumerationEndsAtTheLimit) {
  const std::size_t before = answerLimit();
  setAnswerLimit(1000);
  expectFailure(NZELVOR20::eVORFailed, {"provider Test", "more than 1000 answers"},
                [&] { enumerate(fansIn("test/endless")); });
  setAnswerLimit(before);
}

TEST_F(ProviderTest, CleanupRunsOnceAtTheEnd) {
  const auto cleanups = Library(PROVIDER_FILE).find<int (*)()>("cleanupsOfTest");
  const int before = cleanups();
  {
    Provider other("Test", PROVIDER_FILE, upcalls);
    other.load();
    other.load();
  }
  EXPECT_EQ(cleanups(), before + 1);
  { const Provider unused("Test", PROVIDER_FILE, upcalls); }
  EXPECT_EQ(cleanups(), before + 1);
}

// Catches one provider's end that takes the interface away under the calls of another.
TEST_F(ProviderTest, AnInterfaceThatTwoProvidersGotIsCleanedUpAfterTheLastOfThem) {
  const auto cleanups = Library(PROVIDER_FILE).find<int (*)()>("methodCleanupsOfTest");
  const int before = cleanups();
  auto one = std::make_unique<Provider>("Generic", PROVIDER_FILE, upcalls);
  auto other = std::make_unique<Provider>("GenericToo", PROVIDER_FILE, upcalls);
  one->load();
  other->load();
  one.reset();
  EXPECT_EQ(cleanups(), before);
  other.reset();
  EXPECT_EQ(cleanups(), before + 1);
}

TEST_F(ProviderTest, ALibraryThatIsNotThereIsTold) {
  Provider missing("Test", "/nowhere/libfan.so", upcalls);
  expectFailure(NZELVOR20::eVORProviderFailed, {"/nowhere/libfan.so"}, [&] { missing.load(); });
}

TEST_F(ProviderTest, ALibraryWithoutFactoriesIsTold) {
  Provider unknown("Unknown", PROVIDER_FILE, upcalls);
  expectFailure(NZELVOR20::eVORProviderFailed, {"provider Unknown", "no factory"},
                [&] { unknown.load(); });
}

TEST_F(ProviderTest, AFailingFactoryIsTold) {
  Provider failing("Failing", PROVIDER_FILE, upcalls);
  expectFailure(NZELVOR20::eVORProviderFailed, {"provider Failing", "no fans here"},
                [&] { failing.load(); });
}

TEST_F(ProviderTest, AFactoryThatMadeNoTableIsTold) {
  Provider tableless("Tableless", PROVIDER_FILE, upcalls);
  expectFailure(NZELVOR20::eVORProviderFailed, {"provider Tableless", "made nothing"},
                [&] { tableless.load(); });
}

TEST_F(ProviderTest, AFactoryThatFailedIsTriedAgain) {
  Provider late("Late", PROVIDER_FILE, upcalls);
  EXPECT_THROW(late.load(), TVORException);
  EXPECT_EQ(late.getInstance(fanNamed("x"), nullptr)->path, fanNamed("x"));
}

TEST_F(ProviderTest, AFactoryMayCallTheBrokerButNotItself) {
  Provider selfish("Selfish", PROVIDER_FILE, upcalls);
  upcalls.failure = [&] { selfish.getInstance(fanNamed("x"), nullptr); };
  selfish.load();
  EXPECT_EQ(Library(PROVIDER_FILE).find<int (*)()>("answerToSelfishFactory")(), CMPI_RC_ERR_FAILED);
}

TEST_F(ProviderTest, TheGenericFactoryServesAName) {
  Provider generic("Generic", PROVIDER_FILE, upcalls);
  Arguments out;
  EXPECT_TRUE(generic.invokeMethod(fanNamed("x"), "GiveNothing", {}, out).IsNull());
  expectFailure(NZELVOR20::eVORNotSupported, {"provider Generic", "Instance interface"},
                [&] { generic.getInstance(fanNamed("x"), nullptr); });
}

TEST_F(ProviderTest, FunctionsThatAreLeftOutAreNotSupported) {
  Provider empty("Empty", PROVIDER_FILE, upcalls);
  expectFailure(NZELVOR20::eVORNotSupported, {"provider Empty", "getInstance"},
                [&] { empty.getInstance(fanNamed("x"), nullptr); });
}

TEST_F(ProviderTest, ExceptionsThroughTheCInterfaceAreCaughtAndNamed) {
  Provider thrower("Thrower", PROVIDER_FILE, upcalls);
  const auto take = [](const InstanceDataPtr&) { return true; };
  const auto takePath = [](const ObjectPath&) { return true; };
  expectFailure(NZELVOR20::eVORProviderFailed, {"provider Thrower", "enumerateInstances", "kaput"},
                [&] { thrower.enumerateInstances(kFans, nullptr, take); });
  expectFailure(NZELVOR20::eVORProviderFailed, {"enumerateInstanceNames", "unknown type"},
                [&] { thrower.enumerateInstanceNames(kFans, takePath); });
  expectFailure(NZELVOR20::eVORProviderFailed, {"provider Thrower", "getInstance"},
                [&] { thrower.getInstance(fanNamed("x"), nullptr); });
}

TEST_F(ProviderTest, AFactoryThatThrowsIsTold) {
  Provider throwing("ThrowingFactory", PROVIDER_FILE, upcalls);
  expectFailure(NZELVOR20::eVORProviderFailed, {"provider ThrowingFactory", "not today"},
                [&] { throwing.load(); });
}

// Providers read `value.uint32` of a key without a look at its type.
TEST_F(ProviderTest, KeysReachTheProviderInTheirDeclaredType) {
  const ObjectPath numbered{"root/cimv2", "ACME_Fan", {{"Name", TCIMValue::Char16('7')}}};
  EXPECT_EQ(*provider.getInstance(numbered, nullptr)->find("Name"), TCIMValue("7"));
}

// Catches a path whose keys are left as they are behind one that the class does not declare.
TEST_F(ProviderTest, KeysBesideUndeclaredOnesReachTheProviderInTheirDeclaredType) {
  const ObjectPath path{"root/cimv2",
                        "ACME_Fan",
                        {{"Aisle", TCIMValue::Uint32(3)},
                         {"Name", TCIMValue::Char16('7')},
                         {"Zone", TCIMValue::Boolean(true)}}};
  EXPECT_EQ(*provider.getInstance(path, nullptr)->find("Name"), TCIMValue("7"));
}

}  // namespace
}  // namespace cmpinsp::broker
