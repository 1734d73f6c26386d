#include <algorithm>
#include <array>

#include "history/show/Tables.h"
#include "history/show/Words.h"
#include "text/SafeText.h"

namespace history {
namespace {

constexpr std::size_t kCells = 6;
using Row = std::array<std::string, kCells>;

Row rowOf(const RunRecord& run) {
  const std::string took = run.ended ? durationOf(*run.ended - run.started) : "-";
  return {text::visible(run.id), dateOf(run.started), took,
          verdictOf(run),        countsOf(run.tests), text::visible(run.host)};
}

/// There may be ten thousand of them.
void append(std::string& line, const Row& row, const std::array<std::size_t, kCells>& widths) {
  for (std::size_t i = 0; i < kCells; ++i) {
    line += row[i];
    const std::size_t own = columnsOf(row[i]);
    line.append(std::max(widths[i], own) - own + 2, ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  line += '\n';
}

}  // namespace

void writeRuns(std::ostream& stream, const std::vector<RunRecord>& runs) {
  if (runs.empty()) {
    stream << "There are no runs.\n";
    return;
  }
  std::vector<Row> rows;
  rows.reserve(runs.size() + 1);
  rows.push_back({"RUN", "STARTED (UTC)", "TOOK", "VERDICT", "TESTS", "HOST"});
  for (const RunRecord& run : runs) rows.push_back(rowOf(run));
  std::array<std::size_t, kCells> widths{};
  for (const Row& row : rows) {
    // What follows the last column needs no place to stand.
    for (std::size_t i = 0; i + 1 < kCells; ++i) {
      widths[i] = std::max(widths[i], columnsOf(row[i]));
    }
  }
  std::string line;
  for (const Row& row : rows) {
    line.clear();
    append(line, row, widths);
    stream << line;
  }
}

}  // namespace history
