#pragma once

#include <cstddef>
#include <string>

/// The lines of tests on a terminal: never wider than they may be.
namespace host {

/// With fewer columns of its name, nobody knows which test is meant.
constexpr std::size_t kShortestName = 8;

struct RunningTest {
  std::string name;
  double percent = 0;
  double estimate = 0;    ///< in seconds; 0 for none
  double elapsed = 0;     ///< in seconds
  double percentAt = -1;  ///< when it said so, in seconds; negative: now
  /// When the verdict is there of a test whose work is done by then; null: at once.
  double (*toVerdict)(double seconds) = nullptr;
};

/// "0:12", "12:03", "1:02:03".
std::string clockText(double seconds);

/// What is left to the verdict, in seconds, from what was done and from the estimate; negative
/// where neither says anything.
double remaining(const RunningTest& test);

/// "NAME   42%  0:12  0:17 left"; where there is not room for all of it, the least important first
/// is left out.
std::string runningLine(const RunningTest& test, std::size_t columns);

/// `name`, cut or filled up so that what follows stands in its column, where `follow` columns
/// follow.
std::string nameColumn(const std::string& name, std::size_t columns, std::size_t follow);

}  // namespace host
