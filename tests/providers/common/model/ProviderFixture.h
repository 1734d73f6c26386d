#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "providers/common/model/DiagnosticProvider.h"
#include "tests/providers/common/FakeDiagnostic.h"

namespace providers {

/// A broker whose threads run when the test says so, and whose class tree is the names themselves:
/// "CIM_ConcreteJob" stands above all that end in "Job".
class FakeServices : public CallServices {
 public:
  bool isA(const std::string& className, const std::string& ancestor) override {
    return ancestor == "CIM_Everything" ||
           (ancestor == "CIM_ConcreteJob" && className == "DIAGS_FanTestJob");
  }
  bool launch(std::function<void()> work) override {
    if (m_throws) throw std::bad_alloc();
    if (m_noThreads) return false;
    m_work.push_back(std::move(work));
    return true;
  }

  void remark(const std::string& text) override { remarks.push_back(text); }

  std::vector<std::string> remarks;
  void haveNoThreads() { m_noThreads = true; }
  void throwOnLaunch() { m_throws = true; }
  void runWork() {
    while (!m_work.empty()) {
      const auto work = std::move(m_work.front());
      m_work.pop_front();
      work();
    }
  }

 private:
  std::deque<std::function<void()>> m_work;
  bool m_noThreads = false;
  bool m_throws = false;
};

/// The fan diagnostic behind its provider, on a computer called "host1", with a clock of its own.
class ProviderFixture : public ::testing::Test {
 protected:
  ProviderFixture()
      : registry([this] { return now; },
                 [this] { return "DIAGS:job" + std::to_string(nextJob++); }),
        provider(family, registry, "host1"),
        model(family, registry, "host1") {}

  ObjectPath testPath() const { return model.test(family.services().front()).path(); }
  Value fan(std::size_t index = 0) const {
    return reference(model.device(diagnostic.devices()[index]));
  }
  Properties onFan() const { return {{"ManagedElement", fan(), false}}; }

  MethodResult start(const Properties& in) {
    return provider.invoke(testPath(), "RunDiagnostic", in, services);
  }
  /// Starts a run and lets it end.
  MethodResult runToEnd(const Properties& in) {
    MethodResult result = start(in);
    services.runWork();
    return result;
  }
  MethodResult onJob(const std::string& method, const Properties& in = {}) {
    return provider.invoke(model.jobPath("DIAGS:job1"), method, in, services);
  }
  Properties job() { return provider.get(model.jobPath("DIAGS:job1")).properties; }
  Properties onlyRecord(const std::string& className) {
    const auto records = model.instances(className);
    EXPECT_EQ(records.size(), 1U) << className;
    return records.empty() ? Properties() : records.front().properties;
  }

  std::int64_t now = 1'000'000;
  int nextJob = 1;
  FakeDiagnostic diagnostic;
  DiagnosticFamily family{{&diagnostic}};
  JobRegistry registry;
  DiagnosticProvider provider;
  DiagnosticModel model;
  FakeServices services;
};

inline Properties withSettings(Properties in, const std::string& parameter,
                               const Properties& settings) {
  in.set(parameter, std::make_shared<const Instance>(Instance{"CIM_Settings", settings}));
  return in;
}

inline std::uint64_t number(const Properties& properties, const std::string& name) {
  return asNumber(properties.get(name)).value_or(~std::uint64_t{0});
}
inline std::string text(const Properties& properties, const std::string& name) {
  return asText(properties.get(name)).value_or("(none)");
}

}  // namespace providers
