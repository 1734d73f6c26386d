#include "fleet/gather/Roster.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <tuple>
#include <utility>

#include "engine/events/Timestamp.h"
#include "fleet/gather/Merge.h"
#include "reports/common/Excerpt.h"

namespace fleet {
namespace {

using std::chrono::hours;

constexpr std::size_t kMostRuns = 16;  ///< of a machine, that are remembered

/// The beginning of 2001: a clock that says less was never set.
constexpr std::int64_t kFirstYear = 978'307'200'000'000;

std::int64_t microsecondsOf(const std::optional<engine::Time>& time) {
  return time ? time->time_since_epoch().count() : 0;
}

Precedence precedenceOf(bool isClockTrusted) {
  return isClockTrusted ? Precedence::kNewer : Precedence::kWorse;
}

/// Without an extension in the name of its file: what a machine is called that has no name.
std::string nameFrom(const std::string& file) {
  const std::size_t folder = file.find_last_of("/\\");
  const std::string name = folder == std::string::npos ? file : file.substr(folder + 1);
  const std::size_t dot = name.rfind('.');
  return shortened(dot == std::string::npos || dot == 0 ? name : name.substr(0, dot));
}

/// Whether the same run has been read already; the file whose name comes first is the one to keep.
bool isRepeated(Member& member, const StreamResult& result, std::vector<Complaint>& complaints) {
  const std::int64_t began = microsecondsOf(result.began);
  for (auto& [when, file] : member.runs) {
    if (when != began) continue;
    std::string again = result.file;
    if (again < file) std::swap(again, file);
    const std::string other = again == file ? "was given twice" : "is the same run as " + file;
    complaints.push_back({again, 0, other + ", and counts once", false});
    return true;
  }
  if (member.runs.size() == kMostRuns) member.runs.erase(member.runs.begin());
  member.runs.emplace_back(began, result.file);
  return false;
}

/// Of two copies of one run, the one whose name comes first.
bool isNewer(const Member& member, const std::string& file, const Age& age) {
  if (member.source.empty()) return true;
  const bool isSame = member.age.began == age.began && member.age.isWhole == age.isWhole;
  return isSame ? file < member.source : member.age < age;
}

Results resultsOf(StreamResult& result, const Age& age) {
  Results results;
  results.standings.reserve(result.outcomes.size());
  for (const Outcome& outcome : result.outcomes) {
    results.standings.push_back({outcome.test, outcome.device, outcome.verdict, age});
  }
  results.values = std::move(result.values);
  results.findings = std::move(result.findings);
  return results;
}

}  // namespace

bool Age::operator<(const Age& other) const {
  return std::tie(began, isWhole, file) < std::tie(other.began, other.isWhole, other.file);
}

bool Roster::Key::operator<(const Key& other) const {
  return std::tie(name, serial, isClockTrusted) <
         std::tie(other.name, other.serial, other.isClockTrusted);
}

bool Roster::isTrusted(const std::optional<engine::Time>& began) const {
  return began && microsecondsOf(began) >= kFirstYear && *began <= m_now + hours(24);
}

void Roster::describe(Member& member, StreamResult& result, const Age& age) {
  Identity& machine = result.machine;
  member.name = machine.name;
  member.serial = machine.serial;
  member.model = machine.model;
  member.firmware = machine.firmware;
  member.source = result.file;
  member.lastOpen = result.lastOpen;
  member.hasEnded = result.hasEnded;
  member.run = result.run;
  member.age = age;
  member.parts.clear();
  member.parts.reserve(machine.parts.size());
  Names& names = m_tables.names;
  for (const Part& part : machine.parts) {
    member.parts.push_back(
        {names.numberOf(part.name), names.numberOf(part.place), names.numberOf(part.kind),
         names.numberOf(part.model.empty() ? part.name : part.model), names.numberOf(part.serial)});
  }
}

void Roster::add(StreamResult&& result, std::vector<Complaint>& complaints) {
  if (result.machine.name.empty()) result.machine.name = nameFrom(result.file);
  const bool isClockTrusted = isTrusted(result.began);
  const Age age{microsecondsOf(result.began), result.hasEnded,
                static_cast<std::uint64_t>(std::hash<std::string>()(result.file))};
  Member& member = m_members[{result.machine.name, result.machine.serial, isClockTrusted}];
  member.isClockTrusted = isClockTrusted;
  if (!isRepeated(member, result, complaints)) ++member.streams;
  if (isNewer(member, result.file, age)) describe(member, result, age);
  merge(member, resultsOf(result, age), precedenceOf(isClockTrusted), m_tables);
}

void Roster::join(Member& member, Member&& other, bool isClockTrusted) {
  Results results{std::move(other.standings), std::move(other.values), std::move(other.findings)};
  const std::uint32_t streams = member.streams + other.streams;
  merge(member, std::move(results), precedenceOf(isClockTrusted), m_tables);
  if (isClockTrusted && member.age < other.age) {
    const std::string serial = member.serial.empty() ? other.serial : member.serial;
    other.standings = std::move(member.standings);
    other.values = std::move(member.values);
    other.findings = std::move(member.findings);
    member = std::move(other);
    member.serial = serial;
  }
  member.streams = streams;
  member.isClockTrusted = isClockTrusted;
}

/// A stream without the machine's serial number is that one machine's which has the name.
void Roster::joinNameless() {
  for (auto nameless = m_members.begin(); nameless != m_members.end();) {
    const Key& key = nameless->first;
    auto owner = m_members.end();
    std::size_t owners = 0;
    for (auto other = std::next(nameless);
         key.serial.empty() && other != m_members.end() && other->first.name == key.name; ++other) {
      if (other->first.serial.empty() || other->first.isClockTrusted != key.isClockTrusted)
        continue;
      owner = other;
      ++owners;
    }
    if (owners == 1) {
      join(owner->second, std::move(nameless->second), key.isClockTrusted);
      nameless = m_members.erase(nameless);
    } else {
      ++nameless;
    }
  }
}

/// Of streams whose time tells nothing, nobody knows whether they are newer.
void Roster::joinDistrusted(std::vector<Complaint>& complaints) {
  for (auto distrusted = m_members.begin(); distrusted != m_members.end();) {
    Member& member = distrusted->second;
    if (distrusted->first.isClockTrusted) {
      ++distrusted;
      continue;
    }
    const std::string when =
        member.age.began == 0
            ? "no time"
            : engine::timestampOf(engine::Time(std::chrono::microseconds(member.age.began)));
    complaints.push_back({member.source, 0,
                          "began at " + when + " by the clock of " + reports::excerpt(member.name) +
                              ", which is not to be trusted: the worst result of each test counts",
                          false});
    const auto trusted = m_members.find({distrusted->first.name, distrusted->first.serial, true});
    if (trusted == m_members.end()) {
      ++distrusted;
    } else {
      join(trusted->second, std::move(member), false);
      distrusted = m_members.erase(distrusted);
    }
  }
}

void Roster::tellClashes(std::vector<Complaint>& complaints) const {
  for (auto first = m_members.begin(); first != m_members.end();) {
    auto next = first;
    std::size_t count = 0;
    std::string serials;
    for (; next != m_members.end() && next->first.name == first->first.name; ++next, ++count) {
      constexpr std::size_t kMostTold = 5;
      if (count == kMostTold) serials += ", ...";
      if (count >= kMostTold) continue;
      serials += (count == 0 ? "" : ", ") +
                 (next->first.serial.empty() ? "none" : reports::excerpt(next->first.serial));
    }
    if (count > 1) {
      complaints.push_back({"", 0,
                            reports::excerpt(first->first.name) + ": " + std::to_string(count) +
                                " machines have this name, and are kept apart by their serial "
                                "numbers: " +
                                serials,
                            false});
    }
    first = next;
  }
}

std::vector<Member> Roster::finish(std::vector<Complaint>& complaints) {
  joinNameless();
  joinDistrusted(complaints);
  tellClashes(complaints);
  std::vector<Member> members;
  members.reserve(m_members.size());
  while (!m_members.empty()) {
    members.push_back(std::move(m_members.begin()->second));
    m_members.erase(m_members.begin());
  }
  return members;
}

}  // namespace fleet
