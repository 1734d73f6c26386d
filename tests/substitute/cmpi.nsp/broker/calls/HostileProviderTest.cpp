#include "substitute/cmpi.nsp/broker/Limits.h"
#include "substitute/cmpi.nsp/broker/calls/Provider.h"
#include "tests/substitute/cmpi.nsp/broker/BrokerFixture.h"
#include "tests/substitute/cmpi.nsp/broker/KeptLog.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::TCIMValue;
using NZELVOR20::TVORException;

class HostileProvider : public testing::Test {
 protected:
  static ObjectPath fan(const std::string& ns) {
    return {ns, "ACME_Fan", {{"Name", TCIMValue("x")}}};
  }

  /// What `operation` on the path fails with; empty where it succeeds.
  template <typename Operation>
  std::string failureOf(Operation operation) {
    try {
      operation();
    } catch (const TVORException& failure) {
      return failure.what();
    }
    return std::string();
  }
  static bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }

  KeptLog log;
  FakeUpcalls upcalls;
  Provider provider{"Hostile", PROVIDER_FILE, upcalls};
  std::vector<InstanceDataPtr> taken;
  std::vector<ObjectPath> takenPaths;
  InstanceSink take = [this](const InstanceDataPtr& instance) {
    taken.push_back(instance);
    return true;
  };
  PathSink takePath = [this](const ObjectPath& path) {
    takenPaths.push_back(path);
    return true;
  };
};

struct Row {
  const char* operation;
  void (*call)(Provider&, const ObjectPath&, const InstanceSink&, const PathSink&);
};

const Row kOperations[] = {
    {"enumerateInstances",
     [](Provider& provider, const ObjectPath& path, const InstanceSink& take, const PathSink&) {
       provider.enumerateInstances(path, nullptr, take);
     }},
    {"enumerateInstanceNames",
     [](Provider& provider, const ObjectPath& path, const InstanceSink&, const PathSink& take) {
       provider.enumerateInstanceNames(path, take);
     }},
    {"getInstance", [](Provider& provider, const ObjectPath& path, const InstanceSink&,
                       const PathSink&) { provider.getInstance(path, nullptr); }},
    {"createInstance",
     [](Provider& provider, const ObjectPath& path, const InstanceSink&, const PathSink&) {
       const auto made = boost::make_shared<InstanceData>();
       made->path = path;
       provider.createInstance(path, made);
     }},
    {"execQuery", [](Provider& provider, const ObjectPath& path, const InstanceSink& take,
                     const PathSink&) { provider.executeQuery(path, "all", "WQL", take); }},
    {"invokeMethod",
     [](Provider& provider, const ObjectPath& path, const InstanceSink&, const PathSink&) {
       Arguments out;
       provider.invokeMethod(path, "Spin", {}, out);
     }},
    {"associators", [](Provider& provider, const ObjectPath& path, const InstanceSink& take,
                       const PathSink&) { provider.associators(path, {}, nullptr, take); }},
    {"associatorNames", [](Provider& provider, const ObjectPath& path, const InstanceSink&,
                           const PathSink& take) { provider.associatorNames(path, {}, take); }},
    {"references", [](Provider& provider, const ObjectPath& path, const InstanceSink& take,
                      const PathSink&) { provider.references(path, {}, nullptr, take); }},
    {"referenceNames", [](Provider& provider, const ObjectPath& path, const InstanceSink&,
                          const PathSink& take) { provider.referenceNames(path, {}, take); }},
    {"getProperty", [](Provider& provider, const ObjectPath& path, const InstanceSink&,
                       const PathSink&) { provider.getProperty(path, "Name"); }}};

/// Whether a null is the null value there, which is good.
bool takesNull(const Row& row) {
  const std::string operation = row.operation;
  return operation == "invokeMethod" || operation == "getProperty";
}

// Catches garbage that is dropped in silence where the provider says that all went well, and a
// message that leaves open whose garbage it was.
TEST_F(HostileProvider, GarbageFailsTheCallAndIsLoggedWithProviderAndOperation) {
  for (const Row& row : kOperations) {
    for (const char* garbage : {"null", "foreign", "released", "otherkind"}) {
      if (takesNull(row) && std::string(garbage) == "null") continue;
      SCOPED_TRACE(std::string(row.operation) + " " + garbage);
      const std::string wanted =
          std::string("provider Hostile, ") + row.operation + ": an answer is none: ";
      const std::string logged = log.text();
      const std::string failure =
          failureOf([&] { row.call(provider, fan(garbage), take, takePath); });
      EXPECT_TRUE(contains(failure, wanted)) << failure;
      EXPECT_TRUE(contains(log.text().substr(logged.size()), "0 " + wanted)) << log.text();
    }
  }
}

const Row kWithoutAnswer[] = {
    {"modifyInstance",
     [](Provider& provider, const ObjectPath& path, const InstanceSink&, const PathSink&) {
       const auto changed = boost::make_shared<InstanceData>();
       changed->path = path;
       provider.modifyInstance(path, changed, nullptr);
     }},
    {"deleteInstance", [](Provider& provider, const ObjectPath& path, const InstanceSink&,
                          const PathSink&) { provider.deleteInstance(path); }},
    {"setProperty", [](Provider& provider, const ObjectPath& path, const InstanceSink&,
                       const PathSink&) { provider.setProperty(path, "Speed", TCIMValue()); }}};

// Catches a change that was made and is called a failure, because the provider also named what it
// had changed.
TEST_F(HostileProvider, AnswersThatNobodyAskedForAreIgnoredAndLogged) {
  for (const Row& row : kWithoutAnswer) {
    for (const char* answer : {"root/cimv2", "null", "foreign", "released", "otherkind"}) {
      SCOPED_TRACE(std::string(row.operation) + " " + answer);
      const std::size_t logged = log.text().size();
      EXPECT_NO_THROW(row.call(provider, fan(answer), take, takePath));
      EXPECT_EQ(log.text().substr(logged), std::string("1 provider Hostile, ") + row.operation +
                                               ": returned an answer, which nobody asked for\n");
    }
  }
}

TEST_F(HostileProvider, WhatWasGoodBesideTheGarbageIsDelivered) {
  failureOf([&] { provider.enumerateInstances(fan("foreign"), nullptr, take); });
  ASSERT_EQ(taken.size(), 1U);
  EXPECT_EQ(*taken[0]->find("Name"), TCIMValue("good"));
}

TEST_F(HostileProvider, AnAnswerOfAnotherSortFailsTheCall) {
  const std::string failure =
      failureOf([&] { provider.enumerateInstances(fan("data"), nullptr, take); });
  EXPECT_TRUE(contains(failure, "provider Hostile, enumerateInstances")) << failure;
  EXPECT_TRUE(contains(log.text(),
                       "0 provider Hostile, enumerateInstances: an answer is none: "
                       "this operation delivers no data"));
}

// The method has done its work by then.
TEST_F(HostileProvider, AValueOfTheWrongTypeIsLoggedAndFailsNoMethod) {
  for (const char* wrong : {"text", "argument"}) {
    SCOPED_TRACE(wrong);
    Arguments out;
    const std::size_t logged = log.text().size();
    EXPECT_EQ(failureOf([&] { provider.invokeMethod(fan(wrong), "Spin", {}, out); }), "");
    EXPECT_EQ(log.text().find("1 ", logged), logged);
    EXPECT_TRUE(
        contains(log.text().substr(logged), "provider Hostile, invokeMethod ACME_Fan.Spin: "));
  }
}

// They can still be read, and other brokers let them pass.
TEST_F(HostileProvider, InstancesWithoutTheirKeysPassAndAreLogged) {
  provider.enumerateInstances(fan("keyless"), nullptr, take);
  EXPECT_EQ(taken.size(), 1U);
  EXPECT_EQ(
      log.text(),
      "1 provider Hostile, enumerateInstances: returned root/cimv2:ACME_Fan, which lacks keys "
      "that its class declares\n");
  provider.enumerateInstanceNames(fan("keyless"), takePath);
  EXPECT_EQ(takenPaths.size(), 1U);
  EXPECT_TRUE(contains(log.text(), "1 provider Hostile, enumerateInstanceNames: returned "));
}

TEST_F(HostileProvider, InstancesOfAClassThatNobodyDeclaredPassAndAreLogged) {
  provider.enumerateInstances(fan("undeclared"), nullptr, take);
  ASSERT_EQ(taken.size(), 1U);
  EXPECT_EQ(taken[0]->path.className, "ACME_Mystery");
  EXPECT_EQ(log.text(),
            "1 provider Hostile, enumerateInstances: returned class ACME_Mystery, which nobody "
            "declared\n");
}

// Names end up in reports as well as values.
TEST_F(HostileProvider, NamesAndTextsThatAreNoUtf8AreRepaired) {
  Arguments out;
  provider.invokeMethod(fan("latin1"), "Turn", {}, out);
  ASSERT_EQ(out.size(), 1U);
  EXPECT_EQ(out[0].first, "caf\xC3\xA9");
  EXPECT_EQ(out[0].second, TCIMValue("caf\xC3\xA9"));
}

// Catches text that is repaired in silence, a line for each of many texts, and one that names a
// call whose text was good.
TEST_F(HostileProvider, TextThatIsNoUtf8IsLoggedOnceACall) {
  Arguments out;
  provider.invokeMethod(fan("latin1"), "Turn", {}, out);
  const std::string line =
      "1 provider Hostile, invokeMethod: gave text that is no UTF-8; it is read as Latin-1\n";
  EXPECT_EQ(log.text(), line);
  provider.invokeMethod(fan("root/cimv2"), "Turn", {}, out);
  EXPECT_EQ(log.text(), line);
  provider.invokeMethod(fan("latin1"), "Turn", {}, out);
  EXPECT_EQ(log.text(), line + line);
}

TEST_F(HostileProvider, ADeafProviderDeliversNothingOnceTheCallerHasEnough) {
  int count = 0;
  provider.enumerateInstances(fan("deaf"), nullptr,
                              [&](const InstanceDataPtr&) { return ++count < 3; });
  EXPECT_EQ(count, 3);
  EXPECT_EQ(log.text(), "");
}

TEST_F(HostileProvider, ADeafProviderIsHeldToTheLimit) {
  const std::size_t before = answerLimit();
  setAnswerLimit(10);
  const std::string failure =
      failureOf([&] { provider.enumerateInstances(fan("deaf"), nullptr, take); });
  setAnswerLimit(before);
  EXPECT_EQ(taken.size(), 10U);
  EXPECT_TRUE(contains(failure, "provider Hostile, enumerateInstances: more than 10 answers"));
  EXPECT_TRUE(contains(log.text(), "0 provider Hostile, enumerateInstances: more than 10 answers"));
}

TEST_F(HostileProvider, AnExceptionThroughTheCInterfaceIsLogged) {
  Provider thrower("Thrower", PROVIDER_FILE, upcalls);
  const std::string failure =
      failureOf([&] { thrower.enumerateInstances(fan("any"), nullptr, take); });
  EXPECT_TRUE(contains(failure, "provider Thrower, enumerateInstances: an exception"));
  EXPECT_TRUE(contains(log.text(), "0 provider Thrower, enumerateInstances: an exception"));
}

}  // namespace
}  // namespace cmpinsp::broker
