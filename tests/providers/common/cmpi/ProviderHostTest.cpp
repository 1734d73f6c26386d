#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "providers/common/cmpi/CmpiValues.h"
#include "providers/common/cmpi/ProviderHost.h"
#include "tests/providers/common/FakeDiagnostic.h"
#include "tests/providers/common/ShowValue.h"
#include "tests/providers/common/cmpi/FakeBroker.h"

namespace providers {
namespace {

/// Lets a run go on only when the test says so.
class Gate {
 public:
  void wait() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_open; });
  }
  void open() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_open = true;
    m_changed.notify_all();
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_changed;
  bool m_open = false;
};

/// The fan diagnostic as a broker sees it: behind the tables of functions.
class ProviderHostTest : public ::testing::Test {
 protected:
  using Work = std::function<CMPIStatus(const CMPIResult*)>;

  ProviderHostTest() : host("DIAGS_FanProvider", makeDiagnostic()) {
    instances = host.instanceMI(broker.get());
    associations = host.associationMI(broker.get());
    methods = host.methodMI(broker.get());
    broker.derive("DIAGS_FanTestJob", "CIM_ConcreteJob");
  }
  ~ProviderHostTest() override { host.cleanUp(true); }

  Diagnostics makeDiagnostic() {
    auto made = std::make_unique<FakeDiagnostic>();
    diagnostic = made.get();
    Diagnostics all;
    all.push_back(std::move(made));
    return all;
  }

  /// The status as "CODE MESSAGE"; "0 " when it is good. The answer goes to `answer`.
  std::string call(const Work& work) {
    answer = {};
    const CMPIStatus status = work(broker.result(answer));
    return std::to_string(status.rc) + " " + textOf(status.msg);
  }
  CMPIObjectPath* path(const ObjectPath& path) { return values.makePath(path); }
  CMPIObjectPath* ofClass(const std::string& name) { return path({name, {}}); }
  std::string enumerate(const std::string& className, const char** names = nullptr) {
    return call([&](const CMPIResult* result) {
      return instances->ft->enumerateInstances(instances, broker.context(), result,
                                               ofClass(className), names);
    });
  }
  std::string get(const ObjectPath& which, const char** names = nullptr) {
    return call([&](const CMPIResult* result) {
      return instances->ft->getInstance(instances, broker.context(), result, path(which), names);
    });
  }
  /// The path of the only instance; leaves the last answer as it is.
  ObjectPath only(const std::string& className) {
    const FakeBroker::Answer kept = answer;
    EXPECT_EQ(enumerate(className), "0 ");
    EXPECT_EQ(answer.instances.size(), 1U) << className;
    const CMPIInstance* one = answer.instances.at(0);
    answer = kept;
    return values.readPath(one->ft->getObjectPath(one, nullptr));
  }
  std::string invoke(const ObjectPath& which, const std::string& method,
                     const Properties& in = {}) {
    CMPIArgs* given = args();
    values.addArguments(given, in);
    out = args();
    return call([&](const CMPIResult* result) {
      return methods->ft->invokeMethod(methods, broker.context(), result, path(which),
                                       method.c_str(), given, out);
    });
  }
  CMPIArgs* args() { return broker.get()->eft->newArgs(broker.get(), nullptr); }
  ObjectPath test() { return only("DIAGS_FanTest"); }
  std::string start(const Properties& in = {}) { return invoke(test(), "RunDiagnostic", in); }
  std::uint32_t returned() const { return answer.data.at(0).value.uint32; }
  std::string shown() const {
    std::string text;
    for (const CMPIInstance* one : answer.instances)
      text += show(values.readInstance(one).properties, " ") + "\n";
    return text;
  }

  FakeBroker broker;
  FakeBroker::Answer answer;
  const CmpiValues values{broker.get(), "root/acme"};
  FakeDiagnostic* diagnostic = nullptr;
  ProviderHost host;
  CMPIInstanceMI* instances = nullptr;
  CMPIAssociationMI* associations = nullptr;
  CMPIMethodMI* methods = nullptr;
  CMPIArgs* out = nullptr;
};

TEST_F(ProviderHostTest, EachTableSaysWhoseItIs) {
  EXPECT_STREQ(instances->ft->miName, "DIAGS_FanProvider");
  EXPECT_STREQ(associations->ft->miName, "DIAGS_FanProvider");
  EXPECT_STREQ(methods->ft->miName, "DIAGS_FanProvider");
  EXPECT_EQ(instances->ft->ftVersion, CMPICurrentVersion);
  EXPECT_EQ(associations->ft->ftVersion, CMPICurrentVersion);
  EXPECT_EQ(methods->ft->ftVersion, CMPICurrentVersion);
}

// Catches an interface that works only once another one has been made.
TEST_F(ProviderHostTest, EachInterfaceWorksWithoutTheOthers) {
  const ObjectPath fan = only("DIAGS_Fan");
  const ObjectPath unknown{"DIAGS_FanTest", {}};
  ProviderHost first("A", makeDiagnostic());
  CMPIInstanceMI* const instance = first.instanceMI(broker.get());
  EXPECT_EQ(call([&](const CMPIResult* result) {
              return instance->ft->enumerateInstanceNames(instance, broker.context(), result,
                                                          ofClass("DIAGS_Fan"));
            }),
            "0 ");
  ProviderHost second("B", makeDiagnostic());
  CMPIAssociationMI* const association = second.associationMI(broker.get());
  EXPECT_EQ(call([&](const CMPIResult* result) {
              return association->ft->referenceNames(association, broker.context(), result,
                                                     path(fan), nullptr, nullptr);
            }),
            "0 ");
  ProviderHost third("C", makeDiagnostic());
  CMPIMethodMI* const method = third.methodMI(broker.get());
  EXPECT_EQ(call([&](const CMPIResult* result) {
              return method->ft->invokeMethod(method, broker.context(), result, path(unknown),
                                              "RunDiagnostic", nullptr, nullptr);
            }),
            "6 no such instance of DIAGS_FanTest");
}

TEST_F(ProviderHostTest, AnEnumerationReturnsInstancesAndCloses) {
  EXPECT_EQ(enumerate("DIAGS_Fan"), "0 ");
  EXPECT_EQ(answer.instances.size(), 1U);
  EXPECT_EQ(answer.done, 1U);
}

TEST_F(ProviderHostTest, AListOfNamesIsHonoured) {
  const char* names[] = {"ElementName", nullptr};
  const std::string keys = "SystemCreationClassName=\"DIAGS_ComputerSystem\" SystemName=\"";
  for (const bool one : {false, true}) {
    EXPECT_EQ(one ? get(only("DIAGS_Fan"), names) : enumerate("DIAGS_Fan", names), "0 ");
    EXPECT_EQ(shown().substr(0, keys.size()), keys);
    EXPECT_NE(shown().find("DeviceID=\"fan0\" ElementName=\"Front Fan\" \n"), std::string::npos)
        << shown();
  }
}

TEST_F(ProviderHostTest, NamesArePathsInTheNamespaceOfTheCall) {
  EXPECT_EQ(call([&](const CMPIResult* result) {
              return instances->ft->enumerateInstanceNames(instances, broker.context(), result,
                                                           ofClass("DIAGS_Fan"));
            }),
            "0 ");
  ASSERT_EQ(answer.paths.size(), 1U);
  EXPECT_EQ(FakeBroker::nameSpaceOf(answer.paths[0]), "root/acme");
  EXPECT_TRUE(values.readPath(answer.paths[0]) == only("DIAGS_Fan"));
}

TEST_F(ProviderHostTest, TheBrokerSaysWhichClassesBelongToASuperclass) {
  start();
  EXPECT_EQ(enumerate("CIM_ConcreteJob"), "0 ");
  EXPECT_EQ(answer.instances.size(), 1U);
  EXPECT_EQ(enumerate("CIM_Pump"), "0 ");
  EXPECT_TRUE(answer.instances.empty());
}

TEST_F(ProviderHostTest, WhatIsNotThereIsNotFound) {
  EXPECT_EQ(get({"DIAGS_Fan", {}}), "6 no such instance of DIAGS_Fan");
  EXPECT_EQ(answer.done, 0U);
}

TEST_F(ProviderHostTest, WhatCannotBeDoneIsRefusedInWords) {
  const auto mi = instances;
  const CMPIObjectPath* fan = ofClass("DIAGS_Fan");
  EXPECT_EQ(call([&](const CMPIResult* result) {
              return mi->ft->createInstance(mi, broker.context(), result, fan, nullptr);
            }),
            "7 instances cannot be created");
  EXPECT_EQ(call([&](const CMPIResult* result) {
              return mi->ft->modifyInstance(mi, broker.context(), result, fan, nullptr, nullptr);
            }),
            "7 instances of DIAGS_Fan stay as they are");
  EXPECT_EQ(call([&](const CMPIResult* result) {
              return mi->ft->execQuery(mi, broker.context(), result, fan, "SELECT *", "WQL");
            }),
            "7 queries are not supported");
}

TEST_F(ProviderHostTest, AssociationsAreWalkedWithEveryFilter) {
  struct Row {
    const char* name;
    const char* association;
    const char* resultClass;
    const char* role;
    const char* resultRole;
    std::size_t found;
  };
  const ObjectPath fan = only("DIAGS_Fan");
  for (const Row& row :
       {Row{"no filter", nullptr, nullptr, nullptr, nullptr, 2},
        Row{"association", "DIAGS_FanTestForElement", nullptr, nullptr, nullptr, 1},
        Row{"other association", "CIM_Other", nullptr, nullptr, nullptr, 0},
        Row{"class of the result", nullptr, "DIAGS_ComputerSystem", nullptr, nullptr, 1},
        Row{"role", nullptr, nullptr, "UserOfService", nullptr, 1},
        Row{"role of the result", nullptr, nullptr, nullptr, "GroupComponent", 1},
        Row{"roles that do not fit", nullptr, nullptr, "UserOfService", "GroupComponent", 0}}) {
    const auto walk = [&](const CMPIResult* result) {
      return associations->ft->associators(associations, broker.context(), result, path(fan),
                                           row.association, row.resultClass, row.role,
                                           row.resultRole, nullptr);
    };
    EXPECT_EQ(call(walk), "0 ") << row.name;
    EXPECT_EQ(answer.instances.size(), row.found) << row.name;
    const auto names = [&](const CMPIResult* result) {
      return associations->ft->associatorNames(associations, broker.context(), result, path(fan),
                                               row.association, row.resultClass, row.role,
                                               row.resultRole);
    };
    EXPECT_EQ(call(names), "0 ") << row.name;
    EXPECT_EQ(answer.paths.size(), row.found) << row.name;
  }
}

TEST_F(ProviderHostTest, ReferencesAreWalkedWithEveryFilter) {
  struct Row {
    const char* name;
    const char* association;
    const char* role;
    std::size_t found;
  };
  const ObjectPath fan = only("DIAGS_Fan");
  for (const Row& row :
       {Row{"no filter", nullptr, nullptr, 2},
        Row{"association", "DIAGS_FanSystemDevice", nullptr, 1},
        Row{"role", nullptr, "UserOfService", 1}, Row{"other role", nullptr, "Antecedent", 0}}) {
    const auto walk = [&](const CMPIResult* result) {
      return associations->ft->references(associations, broker.context(), result, path(fan),
                                          row.association, row.role, nullptr);
    };
    EXPECT_EQ(call(walk), "0 ") << row.name;
    EXPECT_EQ(answer.instances.size(), row.found) << row.name;
    const auto names = [&](const CMPIResult* result) {
      return associations->ft->referenceNames(associations, broker.context(), result, path(fan),
                                              row.association, row.role);
    };
    EXPECT_EQ(call(names), "0 ") << row.name;
    EXPECT_EQ(answer.paths.size(), row.found) << row.name;
  }
}

TEST_F(ProviderHostTest, AssociatorsAndReferencesHonourAListOfNames) {
  const ObjectPath fan = only("DIAGS_Fan");
  const char* names[] = {"NameFormat", nullptr};
  call([&](const CMPIResult* result) {
    return associations->ft->associators(associations, broker.context(), result, path(fan),
                                         "DIAGS_FanSystemDevice", nullptr, nullptr, nullptr, names);
  });
  EXPECT_NE(shown().find("\" NameFormat=\"Other\" \n"), std::string::npos) << shown();
  EXPECT_EQ(shown().find("EnabledState"), std::string::npos) << shown();
  call([&](const CMPIResult* result) {
    return associations->ft->references(associations, broker.context(), result, path(fan),
                                        "DIAGS_FanTestForElement", nullptr, names);
  });
  ASSERT_EQ(answer.instances.size(), 1U);
  EXPECT_EQ(FakeBroker::valuesOf(answer.instances[0]).size(), 2U) << "its two keys";
}

TEST_F(ProviderHostTest, ARunReturnsItsNumberAndItsJob) {
  EXPECT_EQ(
      start({{"ManagedElement", std::make_shared<const ObjectPath>(only("DIAGS_Fan")), false}}),
      "0 ");
  ASSERT_EQ(answer.data.size(), 1U);
  EXPECT_EQ(answer.data[0].type, CMPI_uint32);
  EXPECT_EQ(returned(), 0U);
  EXPECT_EQ(answer.done, 1U);
  const Properties given = values.readArguments(out);
  ASSERT_EQ(given.all().size(), 1U);
  EXPECT_TRUE(*std::get<PathPtr>(given.get("Job")) == only("DIAGS_FanTestJob"));
}

TEST_F(ProviderHostTest, AMethodNeedsNoPlaceForItsOutput) {
  const ObjectPath which = test();
  EXPECT_EQ(call([&](const CMPIResult* result) {
              return methods->ft->invokeMethod(methods, broker.context(), result, path(which),
                                               "RunDiagnostic", nullptr, nullptr);
            }),
            "0 ");
  EXPECT_EQ(returned(), 0U);
}

TEST_F(ProviderHostTest, AMethodWithoutANameIsUnknown) {
  const ObjectPath which = test();
  EXPECT_EQ(call([&](const CMPIResult* result) {
              return methods->ft->invokeMethod(methods, broker.context(), result, path(which),
                                               nullptr, nullptr, nullptr);
            }),
            "17 the test has no method ");
}

TEST_F(ProviderHostTest, ARunIsMadeOnAThreadThatIsAttachedToTheBroker) {
  start();
  host.cleanUp(true);
  EXPECT_EQ(diagnostic->runs(), 1U);
  EXPECT_EQ(broker.steps(), (std::vector<std::string>{"prepare", "attach", "detach", "join"}));
}

TEST_F(ProviderHostTest, ABrokerWithoutAContextForTheThreadCostsTheAttachmentAlone) {
  broker.refuse("prepareAttachThread");
  EXPECT_EQ(start(), "0 ");
  host.cleanUp(true);
  EXPECT_EQ(diagnostic->runs(), 1U);
  EXPECT_EQ(broker.steps(), (std::vector<std::string>{"prepare", "join"}));
}

TEST_F(ProviderHostTest, AThreadThatCouldNotBeAttachedIsNotDetachedAndRunsAllTheSame) {
  broker.refuse("attachThread");
  EXPECT_EQ(start(), "0 ");
  host.cleanUp(true);
  EXPECT_EQ(diagnostic->runs(), 1U);
  EXPECT_EQ(broker.steps(), (std::vector<std::string>{"prepare", "attach", "release", "join"}));
}

TEST_F(ProviderHostTest, WithNeitherContextNorThreadTheRunIsRefusedAllTheSame) {
  broker.get()->bft->prepareAttachThread =
      [](const CMPIBroker*, const CMPIContext*) -> CMPIContext* { return nullptr; };
  broker.refuse("newThread");
  EXPECT_EQ(start(), "0 ");
  EXPECT_EQ(returned(), 4U);
}

TEST_F(ProviderHostTest, AThreadThatCannotBeStartedRefusesTheRunAndLeavesNoJob) {
  broker.refuse("newThread");
  EXPECT_EQ(start(), "0 ");
  EXPECT_EQ(returned(), 4U);
  EXPECT_TRUE(FakeBroker::valuesOf(out).empty());
  EXPECT_EQ(enumerate("DIAGS_FanTestJob"), "0 ");
  EXPECT_TRUE(answer.instances.empty());
  EXPECT_EQ(diagnostic->runs(), 0U);
  host.cleanUp(true);
  EXPECT_EQ(broker.steps(), (std::vector<std::string>{"prepare", "release"}))
      << "nothing to be joined";
}

TEST_F(ProviderHostTest, AfterAThreadThatCouldNotBeStartedTheDeviceIsFree) {
  broker.refuse("newThread");
  start();
  broker.refuse("");
  EXPECT_EQ(start(), "0 ");
  EXPECT_EQ(returned(), 0U);
}

TEST_F(ProviderHostTest, AThreadThatHasEndedIsJoinedByTheNextRunAndTheLastByTheEnd) {
  broker.runThreadsAtOnce();
  start();
  start();
  EXPECT_EQ(diagnostic->runs(), 2U);
  EXPECT_EQ(broker.steps(), (std::vector<std::string>{"prepare", "attach", "detach", "join",
                                                      "prepare", "attach", "detach"}));
  host.cleanUp(true);
  host.cleanUp(true);
  EXPECT_EQ(broker.steps().size(), 8U);
  EXPECT_EQ(broker.steps().back(), "join");
}

TEST_F(ProviderHostTest, SettingsByPathAreFetchedFromTheBroker) {
  Instance settings{"DIAGS_FanTestSettings", {}};
  settings.properties.set("HaltOnError", true);
  broker.serve(values.makeInstance(settings, nullptr));
  const Value reference = std::make_shared<const ObjectPath>(only("DIAGS_FanTestSettings"));
  start({{"DiagSetting", reference, false}});
  EXPECT_EQ(returned(), 0U);
  host.cleanUp(true);
  EXPECT_TRUE(diagnostic->lastSettings().haltOnError);
}

TEST_F(ProviderHostTest, SettingsOfTheJobByPathAreFetchedToo) {
  Instance settings{"DIAGS_FanTestSettings", {}};
  settings.properties.set("DeleteOnCompletion", false);
  broker.serve(values.makeInstance(settings, nullptr));
  start({{"JobSetting", std::make_shared<const ObjectPath>(only("DIAGS_FanTestSettings")), false}});
  enumerate("DIAGS_FanTestJob");
  EXPECT_NE(shown().find("DeleteOnCompletion=false"), std::string::npos) << shown();
}

TEST_F(ProviderHostTest, SettingsThatTheBrokerDoesNotFindRefuseTheRun) {
  const Value reference = std::make_shared<const ObjectPath>(ObjectPath{"DIAGS_Gone", {}});
  EXPECT_EQ(start({{"DiagSetting", reference, false}}), "6 the settings are not there");
  broker.refuse("getInstance");
  EXPECT_EQ(start({{"DiagSetting", reference, false}}),
            "1 the broker failed in fetching the settings: no getInstance");
  EXPECT_EQ(diagnostic->runs(), 0U);
}

TEST_F(ProviderHostTest, ARunUnderWayKeepsTheLibraryUnlessTheBrokerEnds) {
  Gate gate;
  diagnostic->onRun([&gate](RunControl&) { gate.wait(); });
  start();
  EXPECT_EQ(instances->ft->cleanup(instances, broker.context(), CMPI_false).rc,
            CMPI_RC_DO_NOT_UNLOAD);
  EXPECT_EQ(associations->ft->cleanup(associations, broker.context(), CMPI_false).rc,
            CMPI_RC_DO_NOT_UNLOAD);
  EXPECT_EQ(methods->ft->cleanup(methods, broker.context(), CMPI_false).rc, CMPI_RC_DO_NOT_UNLOAD);
  only("DIAGS_FanTestJob");
  gate.open();
  EXPECT_EQ(methods->ft->cleanup(methods, broker.context(), CMPI_true).rc, CMPI_RC_OK);
  enumerate("DIAGS_FanTestJob");
  EXPECT_TRUE(answer.instances.empty());
  enumerate("DIAGS_FanDiagnosticCompletionRecord");
  EXPECT_TRUE(answer.instances.empty());
}

// Two runs, each of which waits for the other: one thread for both would never end.
TEST_F(ProviderHostTest, SeveralJobsAreUnderWayAtTheSameTime) {
  diagnostic->addDevice("fan1", "Rear Fan");
  Gate both;
  std::atomic<int> begun{0};
  diagnostic->onRun([&](RunControl&) {
    if (++begun == 2) both.open();
    both.wait();
  });
  EXPECT_EQ(enumerate("DIAGS_Fan"), "0 ");
  std::vector<ObjectPath> fans;
  for (const CMPIInstance* one : answer.instances)
    fans.push_back(values.readPath(one->ft->getObjectPath(one, nullptr)));
  for (const ObjectPath& fan : fans)
    start({{"ManagedElement", std::make_shared<const ObjectPath>(fan), false}});
  both.wait();
  host.cleanUp(true);
  EXPECT_EQ(begun, 2);
}

TEST_F(ProviderHostTest, AnEndingBrokerStopsTheRunThatIsUnderWay) {
  diagnostic->onRun([](RunControl& control) {
    while (!control.stopRequested()) std::this_thread::yield();
  });
  start();
  EXPECT_EQ(host.cleanUp(true).rc, CMPI_RC_OK);
}

struct AnswerRow {
  const char* function;
  const char* text;
};

class EachAnswer : public ProviderHostTest, public ::testing::WithParamInterface<AnswerRow> {};

TEST_P(EachAnswer, ThatTheBrokerDoesNotTakeIsAnError) {
  const ObjectPath which = test();
  broker.refuse(GetParam().function);
  const std::string one = enumerate("DIAGS_Fan");
  const std::string two = call([&](const CMPIResult* result) {
    return instances->ft->enumerateInstanceNames(instances, broker.context(), result,
                                                 ofClass("DIAGS_Fan"));
  });
  const std::string three = invoke(which, "RunDiagnostic");
  EXPECT_TRUE(one == GetParam().text || two == GetParam().text || three == GetParam().text)
      << one << '\n'
      << two << '\n'
      << three;
}

INSTANTIATE_TEST_SUITE_P(
    Functions, EachAnswer,
    ::testing::Values(
        AnswerRow{"returnInstance", "1 the broker failed in taking an instance: no returnInstance"},
        AnswerRow{"returnObjectPath", "1 the broker failed in taking a path: no returnObjectPath"},
        AnswerRow{"returnData", "1 the broker failed in taking the return value: no returnData"},
        AnswerRow{"returnDone", "1 no returnDone"}),
    [](const auto& row) { return std::string(row.param.function); });

// Catches a walk that is cut short and looks whole.
TEST_F(ProviderHostTest, AnAnswerOfAWalkThatTheBrokerDoesNotTakeIsAnError) {
  const ObjectPath fan = only("DIAGS_Fan");
  const auto mi = associations;
  const auto associators = [&](const CMPIResult* result) {
    return mi->ft->associators(mi, broker.context(), result, path(fan), nullptr, nullptr, nullptr,
                               nullptr, nullptr);
  };
  const auto associatorNames = [&](const CMPIResult* result) {
    return mi->ft->associatorNames(mi, broker.context(), result, path(fan), nullptr, nullptr,
                                   nullptr, nullptr);
  };
  const auto references = [&](const CMPIResult* result) {
    return mi->ft->references(mi, broker.context(), result, path(fan), nullptr, nullptr, nullptr);
  };
  const auto referenceNames = [&](const CMPIResult* result) {
    return mi->ft->referenceNames(mi, broker.context(), result, path(fan), nullptr, nullptr);
  };
  broker.refuse("returnInstance");
  for (const Work& walk : {Work(associators), Work(references)}) {
    EXPECT_EQ(call(walk), "1 the broker failed in taking an instance: no returnInstance");
  }
  broker.refuse("returnObjectPath");
  for (const Work& walk : {Work(associatorNames), Work(referenceNames)}) {
    EXPECT_EQ(call(walk), "1 the broker failed in taking a path: no returnObjectPath");
  }
}

TEST_F(ProviderHostTest, DefaultsAreModifiedByTheirNamesAndForgottenInTheEnd) {
  const ObjectPath defaults = only("DIAGS_FanTestSettings");
  Instance changed{"DIAGS_FanTestSettings", defaults.keys};
  changed.properties.set("Loops", std::uint32_t{7});
  changed.properties.set("Seconds", std::uint32_t{3});
  const auto modify = [&](const char** names) {
    return call([&](const CMPIResult* result) {
      return instances->ft->modifyInstance(instances, broker.context(), result, path(defaults),
                                           values.makeInstance(changed, nullptr), names);
    });
  };
  const auto shownDefaults = [&] {
    EXPECT_EQ(get(defaults), "0 ");
    return shown();
  };
  const std::string before = shownDefaults();
  const char* none[] = {nullptr};
  EXPECT_EQ(modify(none), "0 ");
  EXPECT_EQ(shownDefaults(), before);
  const char* loops[] = {"Loops", nullptr};
  EXPECT_EQ(modify(loops), "0 ");
  EXPECT_NE(shownDefaults().find("Loops=uint32 7 Seconds=uint32 0"), std::string::npos) << shown();
  EXPECT_EQ(host.cleanUp(false).rc, CMPI_RC_OK);
  EXPECT_EQ(shownDefaults(), before);
}

TEST_F(ProviderHostTest, ARecordIsDeletedAndATestIsNot) {
  broker.runThreadsAtOnce();
  start();
  const auto remove = [&](const ObjectPath& which) {
    const CMPIObjectPath* made = path(which);
    return call([&](const CMPIResult* result) {
      return instances->ft->deleteInstance(instances, broker.context(), result, made);
    });
  };
  EXPECT_EQ(remove(only("DIAGS_FanDiagnosticCompletionRecord")), "0 ");
  EXPECT_EQ(answer.done, 1U);
  enumerate("DIAGS_FanDiagnosticCompletionRecord");
  EXPECT_TRUE(answer.instances.empty());
  EXPECT_EQ(remove(test()), "7 instances of DIAGS_FanTest are permanent");
}

ProviderHost& noHost() { throw std::runtime_error("out of everything"); }
ProviderHost& oddHost() { throw 7; }

TEST_F(ProviderHostTest, AFactoryThatFailsSaysWhyWhereItIsAsked) {
  CMPIStatus status{};
  EXPECT_EQ(createMI(noHost, &ProviderHost::instanceMI, broker.get(), &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(textOf(status.msg), "out of everything");
  EXPECT_EQ(createMI(oddHost, &ProviderHost::methodMI, broker.get(), &status), nullptr);
  EXPECT_EQ(textOf(status.msg), "an exception of no standard type");
  EXPECT_EQ(createMI(noHost, &ProviderHost::associationMI, broker.get(), nullptr), nullptr);
}

}  // namespace
}  // namespace providers
