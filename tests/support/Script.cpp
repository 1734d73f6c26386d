#include "tests/support/Script.h"

#include <utility>

#include "framework/TVORException.h"

namespace support {

Script& Script::current() {
  static Script script;
  return script;
}

void Script::clear() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_callFaults.clear();
  m_textFaults.clear();
  m_hooks.clear();
  m_reachedText.clear();
  m_fired = 0;
  m_notApplicable = false;
}

void Script::failCall(int number, Fault fault, Counting counting) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_callFaults.push_back({number, fault, counting});
}

void Script::failOn(const std::string& part, Fault fault, int times, int skip) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_textFaults.push_back({part, fault, times, skip});
}

void Script::onCall(const std::string& part, std::function<void()> hook) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_hooks.push_back({part, std::move(hook)});
}

bool Script::enter(const std::string& text, Returns returns, Kind kind) {
  Journal::current().add(kind, text);
  runHooks(text);
  Fault fault = Fault::emptyHandle;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool byNumber = dueByNumber(text, kind, fault);
    if (!byNumber && !dueByText(text, fault)) {
      return false;
    }
    if (fault == Fault::emptyHandle && returns != Returns::handle) {
      m_notApplicable = true;
      return false;
    }
    ++m_fired;
  }
  raise(fault);
  return true;
}

void Script::refuse(const std::string& text) {
  enter(text);
  throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(NZELVOR20::eVORNotSupported, text));
}

void Script::runHooks(const std::string& text) {
  std::vector<std::function<void()>> due;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const Hook& hook : m_hooks) {
      if (text.find(hook.part) != std::string::npos) {
        due.push_back(hook.run);
      }
    }
  }
  for (const auto& run : due) {
    run();
  }
}

bool Script::dueByNumber(const std::string& text, Kind kind, Fault& fault) {
  bool due = false;
  for (CallFault& candidate : m_callFaults) {
    if (kind == Kind::os && candidate.counting == Counting::framework) {
      continue;
    }
    if (--candidate.callsToGo == 0) {
      m_reachedText = text;
      fault = candidate.fault;
      due = true;
    }
  }
  return due;
}

bool Script::dueByText(const std::string& text, Fault& fault) {
  for (TextFault& candidate : m_textFaults) {
    if (candidate.timesToGo == 0 || text.find(candidate.part) == std::string::npos) {
      continue;
    }
    if (candidate.toSkip > 0) {
      --candidate.toSkip;
      continue;
    }
    if (candidate.timesToGo > 0) {
      --candidate.timesToGo;
    }
    fault = candidate.fault;
    return true;
  }
  return false;
}

}  // namespace support
