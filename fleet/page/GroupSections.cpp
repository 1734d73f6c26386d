#include <algorithm>
#include <map>
#include <ostream>

#include "fleet/page/Sections.h"
#include "fleet/page/Words.h"
#include "reports/html/Badge.h"

namespace fleet::page {
namespace {

constexpr std::size_t kMostActions = 3;

const char* kindWord(GroupKind kind) {
  switch (kind) {
    case GroupKind::kPart:
      return "Model of part";
    case GroupKind::kModel:
      return "Model of machine";
    case GroupKind::kFirmware:
      return "Firmware";
    case GroupKind::kBatch:
      return "Batch of serial numbers";
    case GroupKind::kTest:
      break;
  }
  return "Test";
}

/// "by chance, so many would fail in 1 of 2,000 cases".
std::string chanceText(double chance) {
  constexpr double kLeast = 1e-9;
  if (!(chance > kLeast))
    return "by chance, so many would fail in less than 1 of 1,000,000,000 cases";
  const auto cases = static_cast<std::uint64_t>(1 / std::min(chance, 1.0));
  return "by chance, so many would fail in 1 of " + thousands(cases) + " cases";
}

std::string sharesText(const Group& group) {
  std::string text = thousands(group.failing) + " of " + thousands(group.all) + " failed";
  if (group.rest > 0) {
    text += ", of the rest " + thousands(group.restFailing) + " of " + thousands(group.rest);
  }
  return text;
}

/// What its findings say or recommend most often.
std::vector<std::string> mostFrequent(const Answer& answer, const Group& group,
                                      std::string Finding::*text, std::size_t most) {
  std::map<std::string_view, std::size_t> counts;
  for (const std::uint32_t finding : group.findings) {
    if (finding < answer.findings.size()) ++counts[answer.findings[finding].*text];
  }
  counts.erase(std::string_view());
  std::vector<std::pair<std::string_view, std::size_t>> sorted(counts.begin(), counts.end());
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& one, const auto& other) { return one.second > other.second; });
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < std::min(most, sorted.size()); ++i)
    texts.emplace_back(sorted[i].first);
  return texts;
}

void writeLink(std::ostream& out, const Answer& answer, const Group& group) {
  const auto number = static_cast<std::size_t>(&group - answer.groups.data());
  out << "<a class=\"scripted\" href=\"#group=" << number << "\">"
      << (group.machines.size() == 1
              ? "Show this machine"
              : "Show these " + thousands(group.machines.size()) + " machines")
      << "</a>";
}

void writeGroup(std::ostream& out, const Answer& answer, const Group& group,
                const PageLimits& limits) {
  out << "<li class=\"card group\"><div class=\"top\"><h3>" << htmlOf(group.key, limits.nameBytes)
      << "</h3>";
  reports::html::writeBadge(out, "fail", kindWord(group.kind));
  out << "</div>";
  if (!group.of.empty())
    out << "<p class=\"soft\">" << htmlOf(group.of, limits.nameBytes) << "</p>";
  out << "<p><b>" << sharesText(group) << "</b><span class=\"soft\">; " << chanceText(group.chance)
      << "</span></p>";
  for (const std::string& text : mostFrequent(answer, group, &Finding::text, 1)) {
    out << "<p>" << htmlOf(text, limits.textBytes) << "</p>";
  }
  for (const std::string& text : mostFrequent(answer, group, &Finding::action, kMostActions)) {
    out << "<p class=\"do\">" << htmlOf(text, limits.textBytes) << "</p>";
  }
  out << "<p>";
  writeLink(out, answer, group);
  out << "</p></li>\n";
}

std::vector<const Group*> groupsOf(const Answer& answer, bool areTests) {
  std::vector<const Group*> groups;
  for (const Group& group : answer.groups) {
    if ((group.kind == GroupKind::kTest) == areTests) groups.push_back(&group);
  }
  return groups;
}

void writeFailedTest(std::ostream& out, const Answer& answer, const Group& group,
                     const PageLimits& limits) {
  out << "<tr><th scope=\"row\">" << htmlOf(group.key, limits.nameBytes) << "</th><td>"
      << thousands(group.failing) << " of " << counted(group.all, "machine") << "</td><td>";
  writeLink(out, answer, group);
  out << "</td></tr>\n";
}

}  // namespace

void writeGroups(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  const std::vector<const Group*> groups = groupsOf(answer, false);
  if (groups.empty()) return;
  out << "<section id=\"groups\"><h2>What the failures have in common</h2><ul class=\"groups\">\n";
  const std::size_t shown = std::min(groups.size(), limits.groups);
  for (std::size_t i = 0; i < shown; ++i) writeGroup(out, answer, *groups[i], limits);
  out << "</ul>";
  writeMore(out, groups.size(), shown);
  out << "</section>\n";
}

void writeFailedTests(std::ostream& out, const Answer& answer, const PageLimits& limits) {
  std::vector<const Group*> groups = groupsOf(answer, true);
  if (groups.empty()) return;
  std::stable_sort(groups.begin(), groups.end(), [](const Group* one, const Group* other) {
    return one->failing > other->failing;
  });
  out << "<section id=\"tests\"><h2>Tests that failed</h2><div class=\"card\"><table "
         "class=\"plain\">"
         "<thead><tr><th scope=\"col\">Test</th><th scope=\"col\">Failed on</th>"
         "<th scope=\"col\"><span class=\"unseen\">Machines</span></th></tr></thead><tbody>\n";
  const std::size_t shown = std::min(groups.size(), limits.rows);
  for (std::size_t i = 0; i < shown; ++i) writeFailedTest(out, answer, *groups[i], limits);
  out << "</tbody></table></div>";
  writeMore(out, groups.size(), shown);
  out << "</section>\n";
}

}  // namespace fleet::page
