#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// What happens in a run, as everybody outside learns of it: the display, the writers of reports
/// and the history see these events and nothing else. Plain values; every text is UTF-8 and
/// unchanged from where it came, so that whoever writes it somewhere makes it safe for that place.
namespace engine {

/// Microseconds since 1970, UTC.
using Time = std::chrono::time_point<std::chrono::system_clock, std::chrono::microseconds>;

/// A thing of the machine that can be replaced or named: a processor, a memory module, a disk.
struct Part {
  std::string kind;  ///< "system", "board", "processor", "memory", "disk", "port"
  std::string name;
  std::string location;  ///< the slot or socket
  std::string manufacturer;
  std::string model;
  std::string version;
  std::string serial;
};

/// The run began. The first event of a stream.
struct RunStarted {
  std::string version;                   ///< of this program
  std::vector<std::string> commandLine;  ///< as it was given
  std::vector<std::pair<std::string, std::string>> parameters;
  std::string host;
  std::string firmware;  ///< the firmware identifier
  std::vector<Part> parts;
  std::uint64_t tests = 0;  ///< how many runs of tests are planned; 0 where nobody knows
};

/// One run of one test began. Its number is the event's `test`.
struct TestStarted {
  std::string name;     ///< the test identifier
  std::string service;  ///< the diagnostic service's Name
  std::string device;   ///< the element's DeviceID
  std::string element;  ///< the element's ElementName
  std::uint64_t repetition = 1;
  double estimate = 0;  ///< in seconds; 0 where the service gives none
};

/// A part of a test began; it lasts until the next step, or the test's end.
struct StepStarted {
  std::string name;
};

struct Progress {
  double percent = 0;
};

enum class Stream : std::uint8_t { kOutput, kError };

/// One line that the library or a provider wrote, without its line end.
struct OutputLine {
  Stream stream = Stream::kOutput;
  std::string text;
  bool isPart = false;  ///< the line was longer, and goes on in the next event of this stream
};

/// A line of the core log. The levels are the core log's: 0 error, 1 warning, 2 info, 3 trace.
struct LogLine {
  int level = 0;
  std::string text;
};

enum class Severity : std::uint8_t { kInfo, kWarning, kError };

/// Something for the reader of the report.
struct Message {
  Severity severity = Severity::kInfo;
  std::string text;
  std::vector<std::string> actions;  ///< what is recommended, the most urgent first
};

using MeasuredValue = std::variant<double, bool, std::string>;

struct Measurement {
  std::string name;
  MeasuredValue value;
  std::string unit;
  std::optional<double> minimum;  ///< the least that is all right
  std::optional<double> maximum;  ///< the most that is all right
  std::string part;               ///< what was measured
};

enum class Verdict : std::uint8_t { kPass, kWarning, kFail, kUnknown };

/// What the test found about a part.
struct Diagnosis {
  Verdict verdict = Verdict::kUnknown;
  std::string text;
  std::string part;
  std::vector<std::string> actions;
};

enum class Cause : std::uint8_t {
  kRefused,    ///< the test did not start
  kException,  ///< one came through the library
  kExited,     ///< the worker ended itself, with `code` as its status
  kCrashed,    ///< a signal or an exception of the system, `code`
  kKilled,     ///< somebody ended the worker
  kOutOfMemory,
  kTimedOut,  ///< and the job did not end when it was told to
  kProtocol,  ///< the worker's words made no sense
  kOther
};

/// Why something could not be done; never a verdict about hardware.
struct Error {
  Cause cause = Cause::kOther;
  std::string text;
  std::int64_t code = 0;
  std::string provider;  ///< the last one entered
  std::string operation;
  std::vector<std::string> libraries;  ///< of the frames of the stack, the innermost first
  /// The logical processor that the thread was on which crashed, by the system's number.
  std::optional<std::uint64_t> processor = std::nullopt;
};

enum class Outcome : std::uint8_t {
  kPassed,
  kWarned,
  kFailed,
  kAborted,     ///< the user ended it, or its time was up and it ended in good order
  kIncomplete,  ///< it says itself that it could not finish
  kBroken,      ///< it ended without a verdict; an `Error` says why
  kSkipped
};

/// A test, or where the event has no `test`, the run is over. Nothing of it follows.
struct Ended {
  Outcome outcome = Outcome::kBroken;
  std::string text;    ///< the runner's answer; of a skipped test, the reason
  double seconds = 0;  ///< how long it took
  std::string brief;   ///< the verdict of the record alone, in brackets
  std::string remark;  ///< what the record says of itself in one line
  std::string record;  ///< the record's data, of several lines
};

using Body = std::variant<RunStarted, TestStarted, StepStarted, Progress, OutputLine, LogLine,
                          Message, Measurement, Diagnosis, Error, Ended>;

enum class Source : std::uint8_t { kEngine, kWorker, kProvider };

/// One of them, at its place in the stream.
struct Event {
  std::uint64_t sequence = 0;  ///< from 0, one more each time
  Time time;
  Source source = Source::kEngine;
  std::uint64_t test = 0;  ///< which run of a test it is about, from 1; 0: the run as a whole
  Body body;
};

}  // namespace engine
