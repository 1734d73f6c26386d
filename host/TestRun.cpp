#include "host/TestRun.h"

#include <utility>

#include "host/Messages.h"

namespace host {
namespace {

std::string withoutLineEnd(std::string text) {
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

}  // namespace

// The runner picks a record by parts of its texts; in a report of its own, no other run's record
// can be taken for this one's.
TestRun::TestRun(Session& session, std::string identifier)
    : m_session(session),
      m_identifier(std::move(identifier)),
      m_report(session.framework().makeReportNamespace()) {}

void TestRun::execute() {
  try {
    m_answer = trimmed(m_session.runner().Execute(m_identifier, std::string(), m_report));
    m_verdict = verdictOf(m_answer);
    if (m_verdict != Verdict::kNoRecord) return;
    m_error = m_answer.empty() ? "the test did not start" : m_answer;
  } catch (...) {
    m_error = currentExceptionText();
  }
}

std::string TestRun::text(Level level) {
  if (m_verdict == Verdict::kNoRecord) return "none";
  switch (level) {
    case Level::kSimple:
      return m_session.runner().SimpleResults(m_identifier, m_report);
    case Level::kExtended:
      return withoutLineEnd(m_session.runner().ExtendedResults(m_identifier, m_report));
    case Level::kImmediate:
      break;
  }
  return m_answer;
}

}  // namespace host
