#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/events/Event.h"

/// What the streams of many machines say, put together. Plain values: the table, the JSON and the
/// page are written from them and know nothing else. Texts are as the streams have them, cut to
/// `kLongestText`, and not safe for any place: whoever writes them makes them so.
namespace fleet {

/// In bytes. A longer text ends in an ellipsis.
constexpr std::size_t kLongestText = 1000;

/// In the place of an index.
constexpr std::uint32_t kNowhere = 0xFFFFFFFF;

/// How a test ended on a machine, or all of them; a later one is worse.
enum class Verdict : std::uint8_t {
  kNone,     ///< nothing is known of it
  kSkipped,  ///< it was not for this machine
  kPassed,
  kWarned,      ///< it passed with a warning
  kUnfinished,  ///< it was ended, ended without a verdict, or the stream was cut off before its end
  kFailed
};

constexpr std::size_t kVerdicts = 6;

/// "none", "skipped", "passed" ...
const char* nameOf(Verdict verdict) noexcept;

struct Machine {
  std::string name;
  std::string serial;  ///< may be empty, as the next two
  std::string model;
  std::string firmware;              ///< its version
  std::string source;                ///< the file of its latest stream
  engine::Time began{};              ///< that stream
  bool hasEnded = false;             ///< that stream has its end
  bool isClockTrusted = true;        ///< else the worst of its streams counts for each test
  std::uint32_t streams = 0;         ///< how many of it were read
  Verdict verdict = Verdict::kNone;  ///< the worst of all
  std::vector<Verdict> verdicts;     ///< by test, as many as there are tests
};

/// What a test has found to be wrong on a machine. Of one machine and test, a few are kept.
struct Finding {
  std::uint32_t machine = 0;
  std::uint32_t test = kNowhere;  ///< nowhere: of the run as a whole
  Verdict verdict = Verdict::kFailed;
  std::string part;      ///< its name; empty where none was told, as the next three
  std::string partKind;  ///< "memory"
  std::string partModel;
  std::string partSerial;
  std::string partPlace;  ///< the slot or socket
  std::string text;
  std::string action;  ///< what is recommended
};

enum class GroupKind : std::uint8_t {
  kPart,      ///< a model of part; `key` is its name
  kModel,     ///< a model of machine
  kFirmware,  ///< a version of the machines' firmware
  kBatch,     ///< serial numbers with the same beginning; `key` is it
  kTest       ///< a test that machines failed; always there, not because it stands out
};

/// "part", "model", "firmware", "batch", "test".
const char* nameOf(GroupKind kind) noexcept;

/// What fails clearly more often than the rest. Parts and batches of parts are counted in parts,
/// everything else in machines.
struct Group {
  GroupKind kind = GroupKind::kTest;
  std::string key;
  std::string of;  ///< part: its kind; batch: the model of part or machine whose numbers they are
  std::uint32_t failing = 0;
  std::uint32_t all = 0;          ///< that there are of it
  std::uint32_t restFailing = 0;  ///< of what it was held against
  std::uint32_t rest = 0;
  double chance = 1;  ///< that so many would fail if it were like the rest; not told of a test
  std::vector<std::uint32_t> findings;  ///< in the answer's list
  std::vector<std::uint32_t> machines;  ///< that fail, each once
};

enum class Unlike : std::uint8_t {
  kSlow,      ///< worse than its peers, of a measurement of which this is known
  kDifferent  ///< far from its peers, of one of which nobody knows which side is good
};

/// What passes, or does not, but is far from its peers.
struct Slow {
  std::uint32_t machine = 0;
  std::uint32_t test = 0;
  Unlike unlike = Unlike::kSlow;
  std::string device;       ///< what was measured: a part's place or name; may be empty
  std::string model;        ///< the peers are of it: a part's model, or else the machine's
  std::string serial;       ///< the part's, where it is told
  std::string measurement;  ///< the one that is farthest off
  std::string unit;
  double value = 0;
  double median = 0;  ///< of the peers, itself among them
  /// Value to median; of several, the mean of their speeds to those of the peers.
  double ratio = 1;
  double deviation = 0;            ///< the peers' robust standard deviation, in units of the value
  double score = 0;                ///< how many such deviations it is off, above 0
  std::uint32_t peers = 0;         ///< without itself
  std::uint32_t measurements = 1;  ///< that were put together for the score; of one, it alone
};

/// Who did not answer, or not to the end.
struct Silent {
  std::string name;
  std::uint32_t machine = kNowhere;  ///< nowhere: no stream of it was found
  std::uint32_t answered = 0;        ///< how many of its tests ended
  std::string why;                   ///< "no stream", "its stream ends in the middle of ..."
};

/// Of a file that was left out, of a part of it, or of something odd.
struct Complaint {
  std::string file;        ///< empty: it is about a machine, whose name the text has
  std::uint64_t line = 0;  ///< 0: about the whole file
  std::string text;
  bool isLeftOut = false;  ///< nothing of the file counts
};

/// Machines with a test in common, directly or by others. More than one: several fleets.
struct Component {
  std::uint32_t machines = 0;
  std::uint32_t tests = 0;
  std::uint32_t example = 0;  ///< one of its machines
};

struct Totals {
  std::uint64_t streams = 0;               ///< that were looked at
  std::uint64_t leftOut = 0;               ///< of these
  std::uint64_t measurements = 0;          ///< that were read
  std::uint64_t series = 0;                ///< that were held against peers: one of a machine each
  std::uint64_t machines[kVerdicts] = {};  ///< by verdict
};

struct Test {
  std::string name;
  std::uint32_t verdicts[kVerdicts] = {};  ///< how many machines have each
};

struct Answer {
  std::vector<Machine> machines;  ///< by name, then serial number
  std::vector<Test> tests;        ///< by name
  std::vector<Finding> findings;  ///< by machine, then test
  std::vector<Group> groups;      ///< the least likely to be chance first; tests last
  std::vector<Slow> slow;         ///< the farthest off first
  std::vector<Silent> silent;
  std::vector<Complaint> complaints;
  std::uint64_t moreComplaints = 0;  ///< that were not kept
  std::vector<Component> components;
  Totals totals;
};

}  // namespace fleet
