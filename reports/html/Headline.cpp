#include "reports/html/Headline.h"

#include "reports/html/Figures.h"

namespace reports::html {
namespace {

using engine::Outcome;

std::uint64_t withoutVerdict(const RunPicture& run) {
  return run.ended(Outcome::kAborted) + run.ended(Outcome::kIncomplete) +
         run.ended(Outcome::kBroken);
}

/// "1 of 12 tests", "All 12 tests", "Both tests" or "The test".
std::string share(std::uint64_t count, std::uint64_t all) {
  if (all == 1) return "The test";
  if (count == all && all == 2) return "Both tests";
  if (count == all) return "All " + counted(all, "test");
  return std::to_string(count) + " of " + counted(all, "test");
}

/// What is the matter with a run that is not whole.
std::string want(const RunPicture& run) {
  if (!run.end()) return "The run did not end: this is all that is known of it. ";
  if (run.endedInAll() < run.started()) return "Not every test that began has an end. ";
  const std::uint64_t planned = run.start() ? run.start()->tests : 0;
  if (planned > run.started()) {
    return counted(planned - run.started(), "planned test") + " did not run. ";
  }
  // Those that it did not come to are told to be skipped.
  const bool isCutShort =
      run.end()->outcome == engine::Outcome::kAborted && run.ended(engine::Outcome::kAborted) == 0;
  return isCutShort ? "The run was stopped before all its tests had begun. " : "";
}

Headline verdict(const RunPicture& run) {
  const std::uint64_t ran = run.endedInAll() - run.ended(Outcome::kSkipped);
  const std::uint64_t failed = run.ended(Outcome::kFailed);
  const std::uint64_t open = withoutVerdict(run);
  if (failed > 0) {
    return {"fail", share(failed, ran) + " found a fault",
            open > 0 ? share(open, ran) + " ended without a verdict. " : ""};
  }
  if (open > 0) {
    return {"open", share(open, ran) + " ended without a verdict",
            "That is no sign of faulty hardware, but neither was it tested. "};
  }
  if (ran == 0) return {"open", "Nothing was tested", ""};
  const std::uint64_t warned = run.ended(Outcome::kWarned);
  if (warned > 0) return {"warn", share(warned, ran) + " passed with a warning", ""};
  return {"pass", share(ran, ran) + " passed", ""};
}

}  // namespace

Headline headlineOf(const RunPicture& run) {
  Headline headline = verdict(run);
  const std::string wanting = want(run);
  // A run that is not whole is no proof that all is well.
  if (!run.end() && headline.style != "fail") {
    headline = {"open", "The run did not end", "This is all that is known of it. "};
  } else if (!wanting.empty()) {
    if (headline.style == "pass") headline.style = "warn";
    headline.lead += wanting;
  }
  return headline;
}

}  // namespace reports::html
