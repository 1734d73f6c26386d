#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "tests/support/Fault.h"
#include "tests/support/Journal.h"

namespace support {

/// What a call gives back, as far as a fault must know it.
enum class Returns { handle, other };

/// Which calls `failCall` counts.
enum class Counting { framework, frameworkAndOs };

/// Decides which calls fail. Every scripted operation passes through `enter`; log lines, sleeps,
/// files and standard output do not.
class Script {
 public:
  static constexpr int kAlways = -1;

  /// The script of this process; a `World` empties it.
  static Script& current();
  void clear();

  /// Fails the `number`-th call from now, counted from 1.
  void failCall(int number, Fault fault, Counting counting = Counting::framework);
  /// Fails the calls whose journal text contains `part`: `times` of them (or `kAlways`), after
  /// `skip` that pass.
  void failOn(const std::string& part, Fault fault, int times = 1, int skip = 0);
  /// Runs `hook` each time a call whose text contains `part` comes in, before it fails or answers.
  void onCall(const std::string& part, std::function<void()> hook);

  /// How many faults happened.
  int fired() const { return m_fired; }
  /// Whether the call that `failCall` named came in, and with which text.
  bool reached() const { return !m_reachedText.empty(); }
  const std::string& reachedText() const { return m_reachedText; }
  /// Whether an empty handle was asked of a call that returns none; such a call is left alone.
  bool notApplicable() const { return m_notApplicable; }

  /// Records the call, runs the hooks and throws if it is to fail. True when the call is to return
  /// an empty handle.
  bool enter(const std::string& text, Returns returns = Returns::other,
             Kind kind = Kind::framework);
  /// Records a call that the scripted framework does not offer, and throws `TVORException` (not
  /// supported).
  [[noreturn]] void refuse(const std::string& text);

 private:
  struct CallFault {
    int callsToGo;
    Fault fault;
    Counting counting;
  };
  struct TextFault {
    std::string part;
    Fault fault;
    int timesToGo;
    int toSkip;
  };
  struct Hook {
    std::string part;
    std::function<void()> run;
  };

  void runHooks(const std::string& text);
  bool dueByNumber(const std::string& text, Kind kind, Fault& fault);
  bool dueByText(const std::string& text, Fault& fault);

  std::mutex m_mutex;
  std::vector<CallFault> m_callFaults;
  std::vector<TextFault> m_textFaults;
  std::vector<Hook> m_hooks;
  std::string m_reachedText;
  int m_fired = 0;
  bool m_notApplicable = false;
};

}  // namespace support
