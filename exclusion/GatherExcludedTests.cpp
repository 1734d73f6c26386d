#include <memory>

#include "diagsrunner/DiagsRunner.h"
#include "exclusion/ExcludeParser.h"
#include "runner/DataFile.h"

void DiagsRunner::GatherExcludedTests() {
  const diagsrunner::platform::Buffer text =
      diagsrunner::readDataFile(diagsrunner::dataFilePath("excludetests.xml"));
  if (!text) {
    return;
  }
  diagsrunner::ExcludeParser parser;
  parser.Parse(text.get());
  m_excludedTests = parser.GetExcludedTests();
}
