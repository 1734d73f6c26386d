#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <optional>
#include <string>

#include "framework/ICIMInstance.h"
#include "framework/Options.h"
#include "framework/TCIMReference.h"
#include "runner/InstanceLookup.h"

namespace diagsrunner {

/// Follows one job to its end, with its progress on standard output.
class JobMonitor {
 public:
  /// Fetches the job. `options` goes with every instance lookup. Throws what the framework throws,
  /// and `std::runtime_error` when there is no job.
  JobMonitor(const NZELVOR20::TCIMReference& job, const std::string& testID,
             const NZELVOR20::TOptionsMap& options);

  /// Returns when the job is over. Throws what the framework throws, and `std::runtime_error` when
  /// a job that runs has no property "InstanceID"; of some vendors' tests it need not have one,
  /// since their records do not carry it.
  void follow();

  /// The job's "InstanceID" as text: empty where the job has no such property, or a null one. A
  /// record is looked for by this text, and every record carries the empty one.
  std::string identifier();

 private:
  void fetch();
  void readFirst();
  void readState();
  void readPercentage();
  void readIdentifier();
  void showFirst() const;
  void poll();
  bool pollOnce();
  void waitForSlowStart();
  bool isOver() const;
  void showRise();
  void logProgress() const;

  const NZELVOR20::TCIMReference m_reference;
  const std::string m_testID;
  const NZELVOR20::TOptionsMap m_options;
  const ClassHandle m_class;
  boost::shared_ptr<NZELVOR20::ICIMInstance> m_job;
  std::string m_className;
  const bool m_isIdentifierNeeded;
  std::optional<std::string> m_identifier;
  std::uint16_t m_state = 0;
  std::uint16_t m_percentage = 0;
  std::uint16_t m_shown = 0;
  int m_retries = 10;
  bool m_hasWaited = false;
};

}  // namespace diagsrunner
