// What the worker learns of the built-in tests, and changes in them.

#include <algorithm>

#include "engine/worker/model/RunRecords.h"
#include "engine/worker/model/SettingsWriter.h"
#include "engine/worker/model/TestFacts.h"
#include "engine/worker/model/TestSettings.h"
#include "tests/engine/worker/model/ModelFixture.h"

namespace engine::worker {
namespace {

class BuiltInFacts : public ModelFixture {
 protected:
  OfferedTest memory() const {
    std::vector<OfferedTest> tests(1);
    tests[0].identifier = "DIAGS: Memory Data Bus Walking 1s,mem0,System Memory";
    EXPECT_EQ(addFacts(objects, tests), std::vector<std::string>());
    return tests[0];
  }
  std::string value(const char* name) const {
    for (const SettingDeclaration& one : memory().settings)
      if (one.name == name) return one.value;
    return "(none)";
  }
  std::string refusal(const SettingValues& values,
                      const char* service = "DIAGS: Memory Data Bus Walking 1s") {
    try {
      writeSettings(objects, service, values);
    } catch (const SettingRefused& error) {
      return error.what();
    }
    return {};
  }
  /// Until somebody ends the run.
  void runForLong() {
    useLittleMemory();
    writeSettings(objects, "DIAGS: Memory Data Bus Walking 1s", {{"Loops", "1000000"}});
  }
  void useLittleMemory() {
    writeSettings(objects, "DIAGS: Memory Data Bus Walking 1s", {{"NumberOfBytes", "1048576"}});
  }
};

TEST_F(BuiltInFacts, TellWhatThereIsToKnowOfATest) {
  const OfferedTest test = memory();
  EXPECT_EQ(test.service, "DIAGS: Memory Data Bus Walking 1s");
  EXPECT_EQ(test.device, "mem0");
  EXPECT_EQ(test.element, "System Memory");
  EXPECT_EQ(test.serviceClass, "DIAGS_MemoryTest");
  EXPECT_TRUE(test.isMemoryTest);
  EXPECT_GE(test.estimate, 1);
  EXPECT_FALSE(test.characteristics.isExclusive || test.characteristics.isInteractive ||
               test.characteristics.isDestructive || test.characteristics.isRisky);
}

TEST_F(BuiltInFacts, TellTheSettingsThatCanBeWritten) {
  std::string shown;
  for (const SettingDeclaration& one : memory().settings) {
    shown += one.type + " " + one.name + "=" + one.value + "\n";
    EXPECT_NE(one.description, "") << one.name;
  }
  EXPECT_EQ(shown,
            "boolean HaltOnError=false\nboolean QuickMode=false\nuint8 PercentOfTestCoverage=5\n"
            "string[] LoopControlParameter=\nuint16[] LoopControl=\nuint32 ResultPersistence=\n"
            "uint64 NumberOfBytes=\nuint32 Loops=1\nuint32 Seconds=0\n");
}

// Catches a setting that is offered, taken for good before the run, and refused by the test.
TEST_F(BuiltInFacts, TellNoSettingThatTheTestHasNoUseFor) {
  std::size_t tried = 0;
  forEach(objects, "CIM_DiagnosticTest", [&](const InstancePtr& service) {
    const InstancePtr settings = defaultSettingsOf(objects, service);
    ASSERT_TRUE(settings) << textOf(service, "Name");
    for (const SettingDeclaration& one : declarationsOf(settings)) {
      const std::string sensible = one.type == "boolean"         ? "true"
                                   : one.name == "LoopControl"   ? "2"
                                   : one.name == "ScratchFolder" ? "/tmp"
                                                                 : "7";
      EXPECT_EQ(refusal({{one.name, sensible}}, textOf(service, "Name").c_str()), "")
          << textOf(service, "Name");
      ++tried;
    }
  });
  EXPECT_GT(tried, 100U);
}

TEST_F(BuiltInFacts, TellEachSettingThatTheTestHonours) {
  std::size_t seen = 0;
  forEach(objects, "CIM_DiagnosticTest", [&](const InstancePtr& service) {
    const InstancePtr settings = defaultSettingsOf(objects, service);
    const std::vector<SettingDeclaration> told = declarationsOf(settings);
    for (const char* name : {"HaltOnError", "QuickMode", "PercentOfTestCoverage", "NumberOfBytes",
                             "WaitSeconds", "WatchSeconds", "LoadSeconds", "Packets"}) {
      if (valueOf(settings, name).IsNull()) continue;
      ++seen;
      EXPECT_TRUE(
          std::any_of(told.begin(), told.end(), [&](const auto& one) { return one.name == name; }))
          << name << " of " << textOf(service, "Name");
    }
  });
  EXPECT_GT(seen, 50U);
}

// Catches a seed that is taken for good by a test whose run is the same with every one.
TEST_F(BuiltInFacts, TellASeedOfMemoryTestsWithRandomNumbersAlone) {
  std::string tests;
  forEach(objects, "DIAGS_MemoryTest", [&](const InstancePtr& service) {
    for (const SettingDeclaration& one : declarationsOf(defaultSettingsOf(objects, service)))
      if (one.name == "Seed") tests += textOf(service, "Name") + "\n";
  });
  EXPECT_EQ(tests, "DIAGS: Memory Moving Inversions Random\nZEL:Memory Check:diag service\n");
}

TEST_F(BuiltInFacts, TellBetweenWhichNumbersASettingLies) {
  std::string ranges;
  for (const SettingDeclaration& one : memory().settings) {
    if (!one.minimum && !one.maximum) continue;
    ranges += one.name + ": " + (one.minimum ? std::to_string(*one.minimum) : "") + "-" +
              (one.maximum ? std::to_string(*one.maximum) : "") + "\n";
  }
  EXPECT_EQ(ranges, "PercentOfTestCoverage: 1-100\nLoopControl: 2-5\nLoops: 1-\n");
}

TEST_F(BuiltInFacts, OfATestThatIsNoMemoryTestSayNo) {
  const InstancePtr processor = first("DIAGS_Processor");
  std::vector<OfferedTest> tests(2);
  tests[0].identifier = "DIAGS: Processor Stress," + textOf(processor, "DeviceID") + "," +
                        textOf(processor, "ElementName");
  tests[1].identifier = "DIAGS: Fan Test,fan0,Front Fan";
  addFacts(objects, tests);
  EXPECT_EQ(tests[0].serviceClass, "DIAGS_ProcessorTest");
  EXPECT_FALSE(tests[0].isMemoryTest);
  EXPECT_EQ(tests[1].serviceClass, "") << "nobody offers it";
}

TEST_F(BuiltInFacts, AWrittenSettingIsSeenAndChangesTheEstimate) {
  useLittleMemory();
  const auto once = memory().estimate;
  writeSettings(objects, "DIAGS: Memory Data Bus Walking 1s",
                {{"loops", "3"}, {"HaltOnError", "TRUE"}, {"ResultPersistence", "9"}});
  EXPECT_EQ(value("Loops"), "3");
  EXPECT_EQ(value("HaltOnError"), "true");
  EXPECT_EQ(value("ResultPersistence"), "9");
  EXPECT_NEAR(memory().estimate, 3 * once, 2);
  EXPECT_GT(memory().estimate, once);
  writeSettings(objects, "DIAGS: Memory Data Bus Walking 1s",
                {{"ResultPersistence", ""}, {"Loops", "1"}});
  EXPECT_EQ(value("ResultPersistence"), "");
}

TEST_F(BuiltInFacts, ArraysAreWrittenByTheirElements) {
  useLittleMemory();
  const auto once = memory().estimate;
  writeSettings(objects, "DIAGS: Memory Data Bus Walking 1s",
                {{"LoopControl", "3,4"}, {"LoopControlParameter", "2,60"}});
  EXPECT_EQ(value("LoopControl"), "3,4");
  EXPECT_EQ(value("LoopControlParameter"), "2,60");
  EXPECT_NEAR(memory().estimate, 2 * once, 1);
}

TEST_F(BuiltInFacts, WhatCannotBeSetIsRefusedByNameAndNothingIsWritten) {
  struct Row {
    std::pair<std::string, std::string> setting;
    const char* reason;
  };
  for (const Row& row : {Row{{"Speed", "3"}, "Speed: the test has no such setting"},
                         Row{{"InstanceID", "x"}, "InstanceID: the test has no such setting"},
                         Row{{"DataPattern", "3"}, "DataPattern: the test has no such setting"},
                         Row{{"Loops", "many"}, "Loops: is no uint32: many"},
                         Row{{"Loops", "-1"}, "Loops: is no uint32: -1"},
                         Row{{"Loops", "4294967296"}, "Loops: is no uint32: 4294967296"},
                         Row{{"haltonerror", "yes"}, "HaltOnError: is no boolean: yes"},
                         Row{{"LoopControl", "3,,4"}, "LoopControl: is no uint16: "},
                         Row{{"LoopControl", "3,"}, "LoopControl: is no uint16: "}})
    EXPECT_EQ(refusal({{"ResultPersistence", "9"}, row.setting}), row.reason);
  EXPECT_EQ(value("ResultPersistence"), "");
}

TEST_F(BuiltInFacts, WhatTheProviderRefusesIsRefusedInItsWords) {
  const std::string reason = refusal({{"Loops", "9"}, {"PercentOfTestCoverage", "0"}});
  EXPECT_EQ(reason.find("Loops, PercentOfTestCoverage: "), 0U) << reason;
  EXPECT_NE(reason.find("PercentOfTestCoverage is not between 1 and 100"), std::string::npos);
  EXPECT_EQ(value("Loops"), "1");
}

TEST_F(BuiltInFacts, ATestThatIsNotThereHasNoSettings) {
  EXPECT_EQ(refusal({{"Loops", "2"}}, "DIAGS: Fan Test"),
            "Loops: DIAGS: Fan Test has no default settings to change");
  EXPECT_EQ(refusal({}, "DIAGS: Fan Test"), "");
}

TEST_F(BuiltInFacts, ARunLeavesItsMeasurements) {
  runForLong();
  const RunRecords records(objects);
  EXPECT_TRUE(records.collect("").measurements.empty());
  runAndTerminate();
  const RunRecords::Findings found = records.collect("DIAGS: Memory Data Bus Walking 1s");
  EXPECT_EQ(found.problems, std::vector<std::string>());
  const auto named = [&found](const char* name) {
    const auto one = std::find_if(found.measurements.begin(), found.measurements.end(),
                                  [name](const Measurement& each) { return each.name == name; });
    return one == found.measurements.end() ? Measurement() : *one;
  };
  EXPECT_EQ(named("Duration").unit, "s");
  EXPECT_EQ(named("Errors").maximum, 0);
  EXPECT_EQ(std::get<double>(named("Errors").value), 0);
}

// Catches records of a former run that are taken for this one's.
TEST_F(BuiltInFacts, TheRecordsOfFormerRunsAndOtherTestsAreLeftOut) {
  runForLong();
  runAndTerminate();
  const RunRecords records(objects);
  EXPECT_TRUE(records.collect("DIAGS: Memory Data Bus Walking 1s").measurements.empty());
  runAndTerminate();
  EXPECT_TRUE(records.collect("DIAGS: Processor Stress").measurements.empty());
  EXPECT_FALSE(records.collect("DIAGS: Memory Data Bus Walking 1s").measurements.empty());
}

// The runner takes the first word that it knows in the state for the verdict.
TEST_F(BuiltInFacts, ARunThatSomebodyTerminatesIsRecordedAsAborted) {
  runForLong();
  runAndTerminate();
  const InstancePtr record = first("CIM_DiagnosticCompletionRecord");
  EXPECT_EQ(record->GetProperty("CompletionState", {})->ToString(), "Aborted");
}

// The runner drops the number, so that the log is where the reason can be had.
TEST_F(BuiltInFacts, ASecondRunOnABusyDeviceIsRefusedWithTheReasonInTheLog) {
  runForLong();
  NZELVOR20::TParameterMap parameters;
  ASSERT_EQ(call(first("DIAGS_MemoryTest"), "RunDiagnostic", parameters), 0U);
  parameters.clear();
  EXPECT_EQ(log->lines(), std::vector<std::string>());
  EXPECT_EQ(call(first("DIAGS_MemoryTest"), "RunDiagnostic", parameters), 6U);
  EXPECT_TRUE(parameters.empty());
  EXPECT_EQ(log->lines(),
            std::vector<std::string>{
                "provider DIAGS_MemoryProvider: DIAGS2: DIAGS: Memory Data Bus Walking 1s "
                "is refused: Memory Data Bus Walking 1s Test on System Memory is under way"});
}

}  // namespace
}  // namespace engine::worker
