#include "providers/common/ProviderLibrary.h"

// A family with one test, which does nothing: what a run of it takes is what any run takes besides.

namespace providers {

namespace {

class NothingDiagnostic : public Diagnostic {
 public:
  NothingDiagnostic() {
    m_description.family = "DIAGS_Nothing";
    m_description.name = "DIAGS: Nothing";
    m_description.elementName = "Nothing";
    m_description.text = "Does nothing.";
  }

  const DiagnosticDescription& description() const override { return m_description; }
  std::vector<Device> devices() const override { return {{"nothing0", "Nothing", {}}}; }
  std::string refuse(const RunSettings&) const override { return {}; }
  Outcome run(const Device&, const RunSettings&, RunControl& control) override {
    control.status("Doing nothing");
    control.progress(1);
    Outcome outcome;
    outcome.text = outcome.summary = "Done nothing";
    outcome.text += "\n";
    outcome.measured = {{"Duration", 0, "s", false}};
    return outcome;
  }

 private:
  DiagnosticDescription m_description;
};

}  // namespace

std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics() {
  std::vector<std::unique_ptr<Diagnostic>> all;
  all.push_back(std::make_unique<NothingDiagnostic>());
  return all;
}

}  // namespace providers
