#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "engine/events/EventSink.h"
#include "reports/html/HtmlLimits.h"

namespace reports {

namespace html {
class RunPicture;
}

/// Writes a run as one page of HTML that needs nothing but itself, for whoever has to be shown it.
/// Whatever the events hold is text there, never markup. As the verdict stands at the top, nothing
/// is written before the run's end: until then an excerpt of the run, which does not grow beyond
/// the limits, is kept in memory. One run each.
class HtmlReport : public engine::EventSink {
 public:
  /// `out` has to live as long; `name` is what an error calls it.
  HtmlReport(std::ostream& out, std::string name, const HtmlLimits& limits = {});
  ~HtmlReport() override;

  /// Writes the page with the end of the run. Throws `std::runtime_error` where that fails.
  void take(const engine::Event& event) override;

  /// Writes the page of a stream that was cut off, which it says; does nothing where the page is
  /// written already. Throws as `take` does.
  void finish();

 private:
  std::ostream& m_out;
  std::string m_name;
  std::unique_ptr<html::RunPicture> m_run;
  bool m_isWritten = false;
};

}  // namespace reports
