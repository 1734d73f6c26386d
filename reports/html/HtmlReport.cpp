#include "reports/html/HtmlReport.h"

#include <ostream>
#include <stdexcept>
#include <utility>

#include "reports/html/Page.h"
#include "reports/html/RunPicture.h"

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
  html::writePage(m_out, *m_run);
  m_out.flush();
  if (!m_out) throw std::runtime_error(m_name + ": the report cannot be written");
}

}  // namespace reports
