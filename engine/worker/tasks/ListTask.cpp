#include <string>
#include <vector>

#include "engine/worker/model/TestFacts.h"
#include "engine/worker/tasks/Tasks.h"
#include "engine/worker/wire/Wire.h"
#include "text/Words.h"

namespace engine::tasks {
namespace {

/// The texts of a listing that puts "|" behind each one.
std::vector<std::string> split(const std::string& listing) {
  std::vector<std::string> texts;
  std::size_t start = 0;
  for (std::size_t end = listing.find('|'); end != std::string::npos;
       end = listing.find('|', start)) {
    texts.push_back(listing.substr(start, end - start));
    start = end + 1;
  }
  return texts;
}

OfferedTest testOf(DiagsRunner& runner, const std::string& identifier) {
  OfferedTest test;
  test.identifier = identifier;
  if (!runner.GetTestName(identifier, test.service, test.device, test.element)) {
    test.service.clear();
  }
  return test;
}

/// A provider that does not tell them costs its tests nothing else.
void tellFacts(Session& session, std::vector<OfferedTest>& tests) {
  for (const std::string& problem : worker::addFacts(session.framework().objectManager(), tests)) {
    wire::send(Finding{Weight::kWarning, problem});
  }
}

}  // namespace

Done list(Session& session, const Request& request) {
  const std::string listing = session.listing();
  wire::send(Listing{listing});
  std::vector<OfferedTest> tests;
  for (const std::string& identifier : split(listing)) {
    tests.push_back(testOf(session.runner(), identifier));
  }
  if (request.wantsFacts) tellFacts(session, tests);
  wire::send(std::vector<Reply>(tests.begin(), tests.end()));
  if (tests.empty()) return {DoneStatus::kNothing, std::string(text::trimmed(listing))};
  return {};
}

}  // namespace engine::tasks
