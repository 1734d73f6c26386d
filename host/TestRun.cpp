#include "host/TestRun.h"

#include <utility>
#include <vector>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMProperty.h"
#include "framework/TAddToVectorCallback.h"
#include "framework/TVORException.h"
#include "host/Messages.h"

namespace host {
namespace {

std::string withoutLineEnd(std::string text) {
  if (!text.empty() && text.back() == '\n') text.pop_back();
  if (!text.empty() && text.back() == '\r') text.pop_back();
  return text;
}

using Record = boost::shared_ptr<NZELVOR20::ICIMInstance>;

std::vector<Record> recordsIn(NZELVOR20::ICIMNamespace& report) {
  std::vector<Record> records;
  const auto recordClass = report.GetClass("CIM_DiagnosticCompletionRecord", {});
  if (recordClass) {
    recordClass->EnumerateInstances(
        NZELVOR20::TAddToVectorCallback<NZELVOR20::ICIMInstance>(records), true, {});
  }
  return records;
}

std::string captionOf(NZELVOR20::ICIMInstance& record) {
  const auto caption = record.GetProperty("Caption", {});
  return caption && !caption->GetValue({}).IsNull() ? caption->ToString() : std::string();
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

std::string TestRun::remark() const {
  try {
    const std::vector<Record> records = recordsIn(*m_report);
    const std::string caption = records.size() == 1 ? captionOf(*records.front()) : std::string();
    return caption.empty() ? caption : " - " + caption;
  } catch (const NZELVOR20::TVORException&) {
    return {};  // no record, or one of a class without a caption
  }
}

}  // namespace host
