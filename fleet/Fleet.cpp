#include "fleet/Fleet.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "fleet/conclude/Conclude.h"
#include "fleet/gather/Gather.h"
#include "fleet/groups/Groups.h"

namespace fleet {
namespace {

unsigned threadsFor(const Question& question) {
  constexpr unsigned kMost = 16;
  if (question.threads != 0) return question.threads;
  return std::clamp(std::thread::hardware_concurrency(), 1U, kMost);
}

}  // namespace

Answer askFleet(const Question& question) {
  Tables tables;
  Gathered gathered = gather(question.names, tables, question.now, threadsFor(question));
  Answer answer;
  answer.totals.streams = gathered.streams;
  answer.totals.leftOut = gathered.leftOut;
  answer.totals.measurements = gathered.measurements;
  answer.complaints = std::move(gathered.complaints);
  answer.moreComplaints = gathered.moreComplaints;
  concludeMachines(answer, gathered.members, tables);
  concludeFindings(answer, gathered.members, tables);
  concludeSlow(answer, gathered.members, tables);
  findGroups(answer, gathered.members, tables.names);
  concludeSilent(answer, gathered.members, question.expected);
  concludeClocks(answer, question.now);
  concludeComponents(answer);
  concludeTotals(answer);
  return answer;
}

}  // namespace fleet
