#include "tests/engine/supervisor/SickTable.h"

#include <algorithm>

namespace sick {
namespace {

using engine::Cause;
using engine::Outcome;

const char* const kPhases[] = {"starting", "thread", "polling", "reporting"};

/// Ends a call, and with it the test; whether its place is known depends on the thread.
const Kind kKinds[] = {
    {"fault", Outcome::kBroken, Cause::kCrashed, true},
    {"overflow", Outcome::kBroken, Cause::kCrashed, true},
    {"abort", Outcome::kBroken, Cause::kCrashed, true},
    {"_exit0", Outcome::kBroken, Cause::kExited, true},
    {"_exit7", Outcome::kBroken, Cause::kExited, true},
    {"exit", Outcome::kBroken, Cause::kExited, true},
    {"loop", Outcome::kBroken, Cause::kTimedOut, true},
    {"flood", Outcome::kPassed, std::nullopt, false},
};

bool isSurvived(const char* name) {
  const std::vector<const char*>& all = survivedKindsOfThisSystem();
  return std::any_of(all.begin(), all.end(),
                     [&](const char* one) { return std::string(one) == name; });
}

void add(std::vector<Row>& all, const char* phase, const Kind& kind) {
  Row row{std::string(phase) + ":" + kind.name, kind.outcome, kind.cause, kind.names};
  row.hangs = row.cause == Cause::kTimedOut;
  all.push_back(row);
}

}  // namespace

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.sickness; }

std::vector<Row> rows() {
  std::vector<Row> all;
  for (const char* const phase : kPhases) {
    for (const Kind& kind : kKinds) add(all, phase, kind);
    for (const Kind& kind : kindsOfThisSystem()) add(all, phase, kind);
  }
  // The runner waits for what an exception keeps from it.
  all.push_back({"starting:throw", Outcome::kBroken, std::nullopt, false, true});
  all.push_back({"thread:throw", Outcome::kBroken, Cause::kException, false, false});
  all.push_back({"polling:throw", Outcome::kBroken, std::nullopt, false, true});
  all.push_back({"reporting:throw", Outcome::kBroken, std::nullopt, false, true});
  // The listing that comes before each test is every provider's, and a test without one that dies
  // of it is none the worse.
  for (const char* const phase : {"opening", "loading", "listing"}) {
    for (const Kind& kind : kKinds) {
      if (kind.outcome == Outcome::kBroken) add(all, phase, kind);
    }
  }
  for (const Kind& kind : kKinds) {
    if (kind.outcome == Outcome::kPassed) add(all, "listing", kind);
  }
  for (const Kind& kind : kindsOfThisSystem()) {
    if (isSurvived(kind.name) || std::string(kind.name) == "eat") add(all, "listing", kind);
  }
  // Behind the answer, nothing takes it back.
  all.push_back({"cleaning:throw", Outcome::kPassed, std::nullopt, false});
  for (const Kind& kind : kKinds) {
    all.push_back({std::string("cleaning:") + kind.name, Outcome::kPassed, std::nullopt, false});
  }
  for (const Kind& kind : kindsOfThisSystem()) {
    all.push_back({std::string("cleaning:") + kind.name, Outcome::kPassed, std::nullopt, false});
  }
  return all;
}

std::vector<Row> listingRows() {
  static const char* const kWords[] = {"fault",  "overflow", "abort", "_exit0",
                                       "_exit7", "exit",     "loop"};
  std::vector<Row> all;
  for (const char* const phase : {"opening", "loading", "listing"}) {
    for (const char* const word : kWords) {
      all.push_back({std::string(phase) + ":" + word, Outcome::kBroken, std::nullopt, false});
    }
    for (const char* const word : listingKindsOfThisSystem()) {
      all.push_back({std::string(phase) + ":" + word, Outcome::kBroken, std::nullopt, false});
    }
  }
  for (const char* const word : endlessKindsOfThisSystem()) {
    all.push_back({std::string("listing:") + word, Outcome::kBroken, std::nullopt, false});
  }
  // The library is not even left out: it was asked and threw.
  all.push_back({"listing:throw", Outcome::kBroken, std::nullopt, false});
  return all;
}

std::vector<Row> survivedListingRows() {
  std::vector<Row> all;
  all.push_back({"listing:flood", Outcome::kPassed, std::nullopt, false});
  // Who asks how much memory there is has taken none.
  for (const char* const phase : {"opening", "loading", "listing"}) {
    all.push_back({std::string(phase) + ":probe", Outcome::kPassed, std::nullopt, false});
  }
  for (const char* const word : survivedKindsOfThisSystem()) {
    all.push_back({std::string("listing:") + word, Outcome::kPassed, std::nullopt, false});
  }
  return all;
}

std::string nameOf(const testing::TestParamInfo<Row>& info) {
  std::string name = info.param.sickness;
  for (char& one : name) {
    if (one == ':') one = '_';
  }
  return name;
}

}  // namespace sick
