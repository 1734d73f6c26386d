#include "providers/common/QuickCheck.h"

#include <utility>

namespace providers {

QuickCheck::QuickCheck(std::unique_ptr<Diagnostic> diagnostic, const Name& name)
    : m_diagnostic(std::move(diagnostic)), m_description(m_diagnostic->description()) {
  m_description.text = "A quick check: " + m_description.elementName + " in its quick way.";
  m_description.name = name.name;
  m_description.elementName = name.elementName;
  m_description.defaultSettings.set("QuickMode", true);
}

Outcome QuickCheck::run(const Device& device, const RunSettings& settings, RunControl& control) {
  return m_diagnostic->run(device, settings, control);
}

}  // namespace providers
