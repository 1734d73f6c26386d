#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/manager/operations/Attempts.h"

namespace cmpinsp {

/// Which classes of one enumeration look empty because nobody who serves them supports it: to
/// whoever asked, that is no different from a class without instances.
class Refusals {
 public:
  /// How asking for instances of the class went; `reason` is why it was refused.
  void add(const std::string& className, Outcome outcome, const std::string& reason);
  /// The class has instances from elsewhere.
  void addAnswer(const std::string& className) { add(className, Outcome::eAnswered, ""); }

  /// One text for each class, with what each provider said.
  std::vector<std::string> texts() const;

 private:
  struct Asked {
    std::string className;
    std::vector<std::string> reasons;
    bool isRefused = true;  ///< by all that were asked
  };

  std::vector<Asked> m_asked;
};

/// The refusals that somebody may want to be told of later. Keeps the first hundred different ones:
/// a provider may put anything into its texts. Safe to use from several threads.
class KeptRefusals {
 public:
  void keep(const std::string& text);
  /// Those that came since the last call.
  std::vector<std::string> take();

 private:
  std::mutex m_mutex;
  std::vector<std::string> m_texts;
};

}  // namespace cmpinsp
