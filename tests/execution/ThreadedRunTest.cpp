#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "tests/support/Outcome.h"
#include "tests/support/WithRunner.h"

/// A worker thread that runs and the display in front of it.
namespace support {
namespace {

using Access = DiagsRunnerAccess;
using NZELVOR20::TCIMValue;

const char kWiped[] = "\b\b\b\b    ";

class ThreadedRun : public testing::Test {
 protected:
  /// Starts the worker at the clock's second reading; its method returns when it may go on.
  void startAtSecondReading() {
    machine.memory.service->setMethod("RunDiagnostic",
                                      [this](NZELVOR20::TParameterMap& parameters) {
                                        inMethod.set_value();
                                        goOn.get_future().wait();
                                        parameters = {{"Out", TCIMValue("put")}};
                                        return TCIMValue::Uint32(0);
                                      });
    machine.platform.atReading(2, [this] {
      worker = std::thread([] { DiagsRunner::ExecuteInThread(nullptr); });
      inMethod.get_future().wait();
    });
  }

  void TearDown() override {
    if (worker.joinable()) {
      worker.join();
    }
  }

  ThreadedRun() {
    runner.Execute(machine.memory.id, "", machine.hostHandle);
    machine.journal.clear();
  }

  WithRunner<Machine> machine;
  DiagsRunner& runner = machine.listed();
  std::promise<void> inMethod;
  std::promise<void> goOn;
  std::thread worker;
};

TEST_F(ThreadedRun, TheDisplayEndsSomeTimeAfterTheMethodDoes) {
  startAtSecondReading();
  machine.platform.atReading(1000, [this] { goOn.set_value(); });
  // Lest the clock lose its patience.
  machine.platform.atReading(FakePlatform::kPatience - 1000, [this] { worker.join(); });
  runner.printStatus(0);
  EXPECT_GE(machine.platform.readings(), 1000);
  EXPECT_EQ(machine.journal.output(), kWiped);
  if (worker.joinable()) {
    worker.join();
  }
  EXPECT_EQ(describe(Access::runParams(runner)), "{Out=\"put\"}");
}

TEST_F(ThreadedRun, TheDisplayCountsUpFromWhereTheMethodEnds) {
  machine.platform.setReadings({0, 0, 30, 126});
  startAtSecondReading();
  machine.platform.atReading(4, [this] {
    goOn.set_value();
    worker.join();
  });
  runner.printStatus(5);
  EXPECT_EQ(machine.journal.output(),
            "10%\b\b\b42%\b\b\b52%\b\b\b62%\b\b\b72%\b\b\b82%\b\b\b92%\b\b\b\b\b\b\b    ");
  EXPECT_EQ(machine.journal.sleeps(), lines({sleptFor(1000), sleptFor(1000), sleptFor(1000),
                                             sleptFor(1000), sleptFor(1000)}));
}

TEST_F(ThreadedRun, WhatTheMethodWroteIsVisibleOnceTheFlagIsSeen) {
  std::string written;
  machine.memory.service->setMethod("RunDiagnostic", [&](NZELVOR20::TParameterMap&) {
    written = "by the worker";
    return TCIMValue::Uint32(0);
  });
  worker = std::thread([] { DiagsRunner::ExecuteInThread(nullptr); });
  while (!Access::runFinished(runner).isSet()) {
    std::this_thread::yield();
  }
  EXPECT_EQ(written, "by the worker");
}

TEST_F(ThreadedRun, AMethodThatThrowsNeverRaisesTheFlag) {
  machine.script.failOn("InvokeMethod", Fault::vorException);
  Outcome outcome;
  worker = std::thread([&] {
    outcome = outcomeOf([] {
      DiagsRunner::ExecuteInThread(nullptr);
      return std::string();
    });
  });
  worker.join();
  EXPECT_EQ(outcome.kind, Outcome::Kind::vorException);
  EXPECT_FALSE(Access::runFinished(runner).isSet());
}

}  // namespace
}  // namespace support
