#pragma once

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "engine/worker/model/ObjectReading.h"
#include "framework/ILogger.h"
#include "framework/TCMPIInstance.h"
#include "substitute/cmpi.nsp/Bootstrap.h"

namespace engine::worker {

/// The built-in providers in the installation as it is staged, behind the framework.
class ModelFixture : public ::testing::Test {
 protected:
  /// Keeps the warnings and errors of the core log.
  class KeptLog final : public NZELVOR20::ILogger {
   public:
    void Log(int level, const std::string& text) override {
      const std::lock_guard<std::mutex> lock(m_mutex);
      if (level <= 1) m_lines.push_back(text);
    }
    std::vector<std::string> lines() const {
      const std::lock_guard<std::mutex> lock(m_mutex);
      return m_lines;
    }

   private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
  };

  substitute::Installation installation() const {
    substitute::Installation made;
    made.root = DIAGS_INSTALLATION_DIR;
    made.schemaCache = false;
    made.logger = log;
    return made;
  }

  InstancePtr first(const char* className) const {
    InstancePtr found;
    forEach(objects, className, [&found](const InstancePtr& one) {
      if (!found) found = one;
    });
    return found;
  }

  /// Invokes a method and gives its return value; the output parameters replace `parameters`.
  static std::uint64_t call(const InstancePtr& instance, const char* method,
                            NZELVOR20::TParameterMap& parameters) {
    const auto target = boost::dynamic_pointer_cast<NZELVOR20::TCMPIInstance>(instance);
    return target->InvokeMethod(method, parameters, {}).ToUint64();
  }

  /// Runs the memory test as the runner does, without settings, and ends it at once in good order.
  void runAndTerminate() const {
    NZELVOR20::TParameterMap parameters{
        {"ManagedElement", NZELVOR20::TCIMValue(first("DIAGS_Memory")->GetObjectPath({}))}};
    ASSERT_EQ(call(first("DIAGS_MemoryTest"), "RunDiagnostic", parameters), 0U);
    const NZELVOR20::TCIMReference job = parameters.at("Job").ToReference();
    NZELVOR20::TParameterMap end{{"RequestedState", NZELVOR20::TCIMValue::Uint16(4)}};
    call(objects->GetInstance(job, {}), "RequestStateChange", end);
    while (numberOf(objects->GetInstance(job, {}), "PercentComplete", 0) != 100)
      std::this_thread::yield();
  }

  const boost::shared_ptr<KeptLog> log = boost::make_shared<KeptLog>();
  substitute::Framework framework{installation()};
  const Objects objects = framework.objectManager();
};

}  // namespace engine::worker
