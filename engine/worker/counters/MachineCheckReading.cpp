#include <string>

#include "engine/worker/counters/Reading.h"

namespace engine::counters {
namespace {

/// Machine check exceptions, and the interrupts by which the processor tells of errors that were
/// corrected or put off. "MCP", how often the banks were looked at, says nothing.
const char* const kRows[] = {"MCE", "THR", "DFR"};

/// A machine of many processors has many columns, and its table is long.
constexpr std::size_t kLongestTable = 16 * 1024 * 1024;

std::string lineAt(const std::string& text, std::size_t begin) {
  return text.substr(begin, text.find('\n', begin) - begin);
}

/// The row behind its name, which stands at the end of blanks.
std::string rowOf(const std::string& table, const std::string& name) {
  const std::string wanted = name + ":";
  for (std::size_t at = table.find(wanted); at != std::string::npos;
       at = table.find(wanted, at + 1)) {
    const std::size_t before = table.find_last_not_of(' ', at == 0 ? 0 : at - 1);
    const bool isFirst = at == 0 || before == std::string::npos || table[before] == '\n';
    if (isFirst) return lineAt(table, at + wanted.size());
  }
  return {};
}

}  // namespace

/// The names of the columns go with each row: a processor that was switched off has none.
void readMachineChecks(const SystemFolder& root, Reading& reading) {
  const std::string table = (root / "proc").bytes("interrupts", kLongestTable);
  if (table.empty()) return;
  const std::string columns = lineAt(table, 0);
  for (const char* const name : kRows) {
    const std::string row = rowOf(table, name);
    if (row.empty()) continue;
    reading.insert_or_assign({Place::kMachineCheck, "", name}, columns + "\n" + row);
  }
}

}  // namespace engine::counters
