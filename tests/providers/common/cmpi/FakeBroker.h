#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "cmpi/cmpi.h"

namespace providers {

/// A broker that keeps its objects as they were given to it, without any class definition, until
/// it goes itself. Each of its functions can be told to refuse, which is done before threads use
/// it. One at a time: the functions for threads do not say whose they are.
class FakeBroker {
 public:
  using NamedValues = std::vector<std::pair<std::string, CMPIData>>;

  /// What a provider returned.
  struct Answer {
    std::vector<const CMPIInstance*> instances;
    std::vector<const CMPIObjectPath*> paths;
    std::vector<CMPIData> data;
    unsigned done = 0;
  };

  FakeBroker();
  FakeBroker(const FakeBroker&) = delete;
  FakeBroker& operator=(const FakeBroker&) = delete;
  ~FakeBroker();

  const CMPIBroker* get() const { return &m_broker; }

  /// From now on the function, known by its name in the table, fails with CMPI_RC_ERR_FAILED and
  /// the message "no NAME".
  void refuse(const std::string& function) { m_refused = function; }
  /// `className` becomes a subclass of `ancestor`.
  void derive(const std::string& className, const std::string& ancestor) {
    m_ancestors[className] = ancestor;
  }
  /// From now on a thread has run to its end when the function that starts it returns.
  void runThreadsAtOnce() { m_atOnce = true; }
  bool runsThreadsAtOnce() const { return m_atOnce; }
  /// What getInstance of the broker answers; nothing at first.
  void serve(CMPIInstance* instance) { m_served = instance; }

  CMPIString* text(const std::string& text);
  CMPIArray* array(CMPIType type, const std::vector<CMPIData>& items);
  CMPIContext* context() { return &m_context; }
  /// A new result, whose answers go to `answer`.
  CMPIResult* result(Answer& answer);

  /// The keys, properties or parameters, to be read or changed.
  static NamedValues& valuesOf(const CMPIObjectPath* path);
  static NamedValues& valuesOf(const CMPIInstance* instance);
  static NamedValues& valuesOf(const CMPIArgs* args);
  static std::string nameSpaceOf(const CMPIObjectPath* path);

  /// What was done with threads, one after another, e.g. "attach"; only while none runs.
  const std::vector<std::string>& steps() const { return m_steps; }

  /// True when the function is to fail; sets the status accordingly.
  bool refuses(const char* function, CMPIStatus* status);
  void addStep(const std::string& step) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_steps.push_back(step);
  }
  template <class Object>
  Object* keep(std::shared_ptr<Object> object) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_objects.push_back(object);
    return object.get();
  }
  bool isA(std::string className, const std::string& ancestor) const;
  CMPIInstance* served() const { return m_served; }

 private:
  void fillFactories();
  void fillUpcalls();
  void fillThreads();

  CMPIBroker m_broker{};
  CMPIBrokerFT m_upcalls{};
  CMPIBrokerEncFT m_factories{};
  CMPIBrokerExtFT m_system{};
  CMPIContextFT m_contextTable{};
  CMPIContext m_context{};
  CMPIContext m_preparedContext{};
  CMPIInstance* m_served = nullptr;
  bool m_atOnce = false;
  std::string m_refused;
  std::vector<std::string> m_steps;
  std::mutex m_mutex;
  std::map<std::string, std::string> m_ancestors;
  std::vector<std::shared_ptr<void>> m_objects;
};

/// A value as its type and state, for tests to put in.
CMPIData dataOf(CMPIType type, CMPIValue value, CMPIValueState state = CMPI_goodValue);

}  // namespace providers
