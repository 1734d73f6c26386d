#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/ICIMNamespace.h"
#include "host/Options.h"
#include "host/Session.h"
#include "host/Verdict.h"

namespace host {

/// One test's run, with the report that holds its record.
class TestRun {
 public:
  TestRun(Session& session, std::string identifier);

  /// Runs the test to its end, with progress on standard output. An exception becomes the run's
  /// error and leaves it without a record.
  void execute();

  const std::string& identifier() const { return m_identifier; }
  Verdict verdict() const { return m_verdict; }

  /// Why there is no record; empty where there is one.
  const std::string& error() const { return m_error; }

  /// The outcome at `level`, without a line end; "none" where the run left no record. Throws what
  /// the object model throws.
  std::string text(Level level);

  /// What the record says of itself in one line (its Caption), made to follow the verdict; empty
  /// where it says nothing.
  std::string remark() const;

 private:
  Session& m_session;
  std::string m_identifier;
  boost::shared_ptr<NZELVOR20::ICIMNamespace> m_report;
  std::string m_answer;
  Verdict m_verdict = Verdict::kNoRecord;
  std::string m_error;
};

}  // namespace host
