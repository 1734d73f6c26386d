#include "reports/verify/Finding.h"

namespace reports {
namespace {

struct RuleText {
  const char* name;
  const char* meaning;
};

const RuleText& textOf(Rule rule) {
  static constexpr RuleText kTexts[] = {
      {"json", "Each line is one JSON value in UTF-8."},
      {"schema", "Each line follows the schema of version 2.0."},
      {"object", "What has members is an object."},
      {"repeated", "No member stands twice in one object."},
      {"sequence", "Sequence numbers start at 0 and rise by one."},
      {"time", "Timestamps are ISO 8601, UTC, with a Z."},
      {"order", "The version, the run's start, its steps, its end."},
      {"pair", "The run's status and result go together."},
      {"unique", "An identifier is given once."},
      {"unknown", "What is referred to has been begun, and is still open."},
      {"series", "Elements are counted from 0, and the end has their count."},
      {"open", "What was begun is ended."},
      {"cut", "The last line has an end."},
      {"long", "No line is longer than 64 MiB."},
  };
  return kTexts[static_cast<std::size_t>(rule)];
}

}  // namespace

const char* nameOf(Rule rule) noexcept { return textOf(rule).name; }

const char* meaningOf(Rule rule) noexcept { return textOf(rule).meaning; }

}  // namespace reports
