#include "host/Session.h"

#include <new>
#include <utility>
#include <vector>

#include "host/MemoryWatch.h"

namespace host {

Session::Session(const substitute::Installation& installation)
    : m_root(installation.root), m_framework(installation), m_providers(m_framework) {}

Session::~Session() { DiagsRunner::FreeDiagsRunner(); }

DiagsRunner& Session::runner() { return *DiagsRunner::GetDiagsRunner(m_framework.objectManager()); }

std::string Session::listing() {
  std::string text = runner().EnumerateDiagTests(std::string());
  if (hasMemoryRunOut()) throw std::bad_alloc();
  m_providers.report();
  return text;
}

TestCatalogue Session::catalogue() {
  std::vector<OfferedTest> tests;
  for (std::string& identifier : splitListing(listing())) {
    OfferedTest test;
    std::string deviceId;
    std::string elementName;
    if (!runner().GetTestName(identifier, test.serviceName, deviceId, elementName)) {
      test.serviceName.clear();
    }
    test.identifier = std::move(identifier);
    tests.push_back(std::move(test));
  }
  return TestCatalogue(std::move(tests));
}

}  // namespace host
