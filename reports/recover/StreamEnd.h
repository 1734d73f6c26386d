#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "reports/recover/Recovery.h"

namespace reports {

/// Follows a stream of one format to where it ends.
class StreamEnd {
 public:
  StreamEnd() = default;
  StreamEnd(const StreamEnd&) = delete;
  StreamEnd& operator=(const StreamEnd&) = delete;
  virtual ~StreamEnd() = default;

  /// The next whole line. Throws `std::runtime_error` where it makes no sense; then it is as if it
  /// had not come.
  virtual void take(std::string_view line) = 0;

  /// Fills in what was open and what closes it.
  virtual void close(Recovery& recovery) const = 0;
};

std::unique_ptr<StreamEnd> makeEventsEnd();
std::unique_ptr<StreamEnd> makeOcpEnd();

constexpr const char* kTestCutOff = "The stream ends before the test does.";
constexpr const char* kRunCutOff = "The stream ends before the run does.";

}  // namespace reports
