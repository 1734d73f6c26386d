#include "host/TestCatalogue.h"

#include <set>
#include <utility>

#include "host/Messages.h"
#include "text/CloseMatches.h"
#include "text/SafeText.h"

namespace host {
namespace {

/// A name may be typed as it was printed, where it holds what cannot be typed.
bool isTyped(const std::string& text, const std::string& typed) {
  return text == typed || text::visible(text) == typed;
}

}  // namespace

TestCatalogue::TestCatalogue(std::vector<OfferedTest> tests) {
  std::set<std::string> seen;
  for (OfferedTest& test : tests) {
    if (seen.insert(test.identifier).second) m_tests.push_back(std::move(test));
  }
}

std::vector<std::string> TestCatalogue::identifiers() const {
  std::vector<std::string> all;
  for (const OfferedTest& test : m_tests) all.push_back(test.identifier);
  return all;
}

std::string TestCatalogue::resolve(const std::string& name) const {
  for (const OfferedTest& test : m_tests) {
    if (test.identifier == name) return name;
  }
  std::vector<std::string> served;
  for (const OfferedTest& test : m_tests) {
    if (text::visible(test.identifier) == name) return test.identifier;
    if (!name.empty() && isTyped(test.serviceName, name)) served.push_back(test.identifier);
  }
  if (served.size() == 1) return served.front();
  if (!served.empty()) {
    throw UsageError("ambiguous test \"" + name + "\"; it may be " + text::quotedList(served));
  }
  std::vector<std::string> known = identifiers();
  for (const OfferedTest& test : m_tests) {
    if (!test.serviceName.empty()) known.push_back(test.serviceName);
  }
  const std::string close = text::suggestions(name, known);
  throw UsageError("unknown test \"" + name + "\"" +
                   (close.empty() ? "; diags list names the tests" : close));
}

std::vector<std::string> TestCatalogue::resolveAll(const std::vector<std::string>& names) const {
  std::vector<std::string> resolved;
  resolved.reserve(names.size());
  for (const std::string& name : names) resolved.push_back(resolve(name));
  return resolved;
}

std::vector<std::string> splitListing(const std::string& listing) {
  std::vector<std::string> texts;
  std::size_t start = 0;
  for (std::size_t end = listing.find('|'); end != std::string::npos;
       end = listing.find('|', start)) {
    texts.push_back(listing.substr(start, end - start));
    start = end + 1;
  }
  return texts;
}

}  // namespace host
