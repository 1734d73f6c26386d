#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "fleet/Fleet.h"
#include "fleet/page/Page.h"
#include "fleet/show/Json.h"
#include "fleet/show/Sentences.h"
#include "fleet/show/Table.h"
#include "host/Messages.h"
#include "host/verbs/KeptVerbs.h"
#include "host/verbs/PageFile.h"
#include "text/Words.h"

namespace host {
namespace {

/// The machines that are to answer; a line that begins with # is a remark.
std::vector<std::string> namesIn(const std::string& file) {
  constexpr std::size_t kLongestName = 1000;
  const std::filesystem::path path = std::filesystem::u8path(file);
  std::error_code failure;
  std::ifstream in(path, std::ios::binary);
  if (!in || std::filesystem::is_directory(path, failure)) {
    throw UsageError(file + " cannot be read");
  }
  std::vector<std::string> names;
  std::size_t number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    // Editors of Windows put a byte order mark in front.
    const bool isMarked = number == 1 && line.rfind("\xEF\xBB\xBF", 0) == 0;
    const std::string name(text::trimmed(std::string_view(line).substr(isMarked ? 3 : 0)));
    if (name.empty() || name.front() == '#') continue;
    if (name.size() > kLongestName) {
      throw UsageError(file + ", line " + std::to_string(number) + ": is too long for a name");
    }
    names.push_back(name);
  }
  if (in.bad()) throw UsageError(file + " cannot be read");
  if (names.empty()) throw UsageError(file + ": names no machine");
  return names;
}

fleet::Question questionFrom(const Options& options) {
  fleet::Question question;
  question.names = options.streams;
  if (!options.expected.empty()) question.expected = namesIn(options.expected);
  question.now =
      std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
  return question;
}

void complain(const fleet::Answer& answer) {
  for (const fleet::Complaint& complaint : answer.complaints) {
    reportError(fleet::sentenceOf(complaint));
  }
  if (answer.moreComplaints > 0) {
    reportError(std::to_string(answer.moreComplaints) + " such lines more");
  }
}

/// Where something is missing: a machine, a verdict, a stream or a part of one.
bool isShort(const fleet::Answer& answer) {
  const auto isMissing = [](const fleet::Complaint& complaint) {
    return complaint.isLeftOut || complaint.line != 0;
  };
  const auto isOpen = [](const fleet::Machine& machine) {
    return machine.verdict != fleet::Verdict::kPassed && machine.verdict != fleet::Verdict::kWarned;
  };
  return !answer.silent.empty() || answer.moreComplaints > 0 ||
         std::any_of(answer.complaints.begin(), answer.complaints.end(), isMissing) ||
         std::any_of(answer.machines.begin(), answer.machines.end(), isOpen);
}

ExitStatus statusOf(const fleet::Answer& answer) {
  if (answer.machines.empty()) return ExitStatus::kNothingToRun;
  constexpr auto kFailed = static_cast<std::size_t>(fleet::Verdict::kFailed);
  if (answer.totals.machines[kFailed] > 0) return ExitStatus::kFailed;
  return isShort(answer) ? ExitStatus::kCouldNotRun : ExitStatus::kPassed;
}

void show(const fleet::Answer& answer, const Options& options) {
  if (options.json) {
    std::cout << fleet::jsonOf(answer) << '\n';
  } else if (options.fleetPage.empty() && !answer.machines.empty()) {
    fleet::writeTable(std::cout, answer, {options.most, options.isVerbose});
  }
}

}  // namespace

ExitStatus showFleet(const Options& options) {
  PageFile page(options.fleetPage);
  refuseTwoAnswers(options.json, page);
  const fleet::Question question = questionFrom(options);
  const fleet::Answer answer = fleet::askFleet(question);
  complain(answer);
  if (answer.machines.empty()) {
    reportError("no stream that can be read");
  } else {
    page.write([&answer](std::ostream& out) { fleet::writePage(answer, out); });
  }
  show(answer, options);
  return statusOf(answer);
}

}  // namespace host
