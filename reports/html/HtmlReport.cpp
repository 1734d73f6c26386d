#include "reports/html/HtmlReport.h"

#include <cerrno>
#include <ostream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "reports/html/Page.h"
#include "reports/html/RunPicture.h"
#include "text/SafeText.h"

namespace reports {

HtmlReport::HtmlReport(std::ostream& out, std::string name, const HtmlLimits& limits)
    : m_out(out), m_name(std::move(name)), m_run(std::make_unique<html::RunPicture>(limits)) {}

HtmlReport::~HtmlReport() = default;

void HtmlReport::take(const engine::Event& event) {
  if (m_isWritten) return;
  m_run->take(event);
  if (m_run->end()) finish();
}

void HtmlReport::finish() {
  if (m_isWritten) return;
  m_isWritten = true;
  m_run->close();
  errno = 0;
  html::writePage(m_out, *m_run);
  m_out.flush();
  if (m_out) return;
  const std::string reason = errno == 0 ? "" : ": " + std::generic_category().message(errno);
  throw std::runtime_error(text::visible(m_name) + " cannot be written" + reason);
}

}  // namespace reports
