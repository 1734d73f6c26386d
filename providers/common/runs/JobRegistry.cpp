#include "providers/common/runs/JobRegistry.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>

namespace providers {

namespace {

constexpr double kFullPercent = 100.0;

/// What ends a job that was cut off: nobody knows what the device was doing.
Outcome cutOff() {
  Outcome outcome;
  outcome.state = CompletionState::Aborted;
  outcome.text = "The test was killed.\n";
  outcome.notes.push_back({RecordType::ServiceErrors, "The test was killed by a client.\n", {}});
  return outcome;
}

JobState finalState(CompletionState verdict) {
  switch (verdict) {
    case CompletionState::Stopped:
      return JobState::Terminated;
    case CompletionState::Aborted:
      return JobState::Killed;
    default:
      return JobState::Completed;
  }
}

template <class Item>
bool removeById(std::vector<Item>& items, const std::string& id) {
  const auto found =
      std::find_if(items.begin(), items.end(), [&id](const Item& item) { return item.id == id; });
  if (found == items.end()) return false;
  items.erase(found);
  return true;
}

/// Whether one of the two runs cannot be made beside the other.
bool excludes(const JobRequest& one, const JobRequest& other) {
  const auto either = [&](Exclusive wish) {
    return one.exclusive == wish || other.exclusive == wish;
  };
  if (either(Exclusive::Family)) return true;
  if (one.deviceId != other.deviceId) return false;
  return one.serviceName == other.serviceName || either(Exclusive::Device);
}

}  // namespace

bool isFinal(JobState state) {
  return state == JobState::Completed || state == JobState::Terminated ||
         state == JobState::Killed || state == JobState::Exception;
}

std::int64_t Job::elapsed(std::int64_t now) const {
  if (started == 0) return 0;
  return std::max<std::int64_t>(0, (isFinal(state) ? ended : now) - started);
}

JobRegistry::JobRegistry(Clock clock, IdMaker makeId)
    : m_clock(std::move(clock)), m_makeId(std::move(makeId)) {}

Job* JobRegistry::find(const std::string& id) {
  const auto found =
      std::find_if(m_jobs.begin(), m_jobs.end(), [&id](const Job& job) { return job.id == id; });
  return found == m_jobs.end() ? nullptr : &*found;
}

std::optional<std::string> JobRegistry::open(const JobRequest& request, std::string* rival) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  prune();
  const auto other =
      std::find_if(m_underWay.begin(), m_underWay.end(),
                   [&request](const UnderWay& run) { return excludes(run.request, request); });
  if (other != m_underWay.end()) {
    if (rival) *rival = other->request.name;
    return std::nullopt;
  }
  Job job;
  job.id = m_makeId();
  job.request = request;
  job.submitted = job.changed = m_clock();
  m_jobs.push_back(job);
  m_underWay.push_back({job.id, request});
  return job.id;
}

void JobRegistry::discard(const std::string& id) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  removeById(m_jobs, id);
  removeById(m_underWay, id);
}

void JobRegistry::launch(const std::string& id) { move(id, JobState::New, JobState::Starting); }

void JobRegistry::start(const std::string& id) { move(id, JobState::Starting, JobState::Running); }

void JobRegistry::move(const std::string& id, JobState from, JobState to) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  Job* job = find(id);
  if (!job) return;
  if (job->started == 0) job->started = m_clock();
  if (job->state != from) return;
  job->state = to;
  job->changed = m_clock();
}

void JobRegistry::progress(const std::string& id, double fraction) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  Job* job = find(id);
  if (!job || isFinal(job->state)) return;
  // 100 is kept for the end: a client takes it as the sign that the record is there.
  const double percent = std::clamp(fraction * kFullPercent, 0.0, kFullPercent - 1);
  job->percent = std::max(job->percent, static_cast<std::uint16_t>(percent));
}

void JobRegistry::status(const std::string& id, const std::string& text) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (Job* job = find(id)) job->statusText = text;
}

bool JobRegistry::stopRequested(const std::string& id) const {
  const std::lock_guard<std::mutex> lock(m_mutex);
  const auto found =
      std::find_if(m_jobs.begin(), m_jobs.end(), [&id](const Job& job) { return job.id == id; });
  return found == m_jobs.end() || found->stopRequested || isFinal(found->state);
}

void JobRegistry::write(Job& job, const Record& record) {
  Record complete = record;
  complete.id = job.id + ":" + std::to_string(job.records++);
  complete.serviceName = job.request.serviceName;
  complete.deviceId = job.request.deviceId;
  complete.elementName = job.request.elementName;
  complete.created = m_clock();
  if (job.request.keepRecords) complete.expires = complete.created + *job.request.keepRecords;
  m_records.push_back(std::move(complete));
}

void JobRegistry::writeMeasured(Job& job, const std::vector<Measured>& measured) {
  if (measured.empty()) return;
  const ResultText text = resultText(measured);
  Record record;
  record.format = text.format;
  record.outcome.text = text.data;
  write(job, record);
}

void JobRegistry::end(Job& job, JobState state, const Outcome& outcome) {
  for (const Note& note : outcome.notes) {
    Record record;
    record.type = note.type;
    record.outcome.text = note.text;
    record.outcome.errors = note.errors;
    record.outcome.correctiveAction = note.correctiveAction;
    record.outcome.part = note.part;
    write(job, record);
  }
  writeMeasured(job, outcome.measured);
  Record completion;
  completion.completion = true;
  completion.outcome = outcome;
  write(job, completion);
  job.state = state;
  job.percent = static_cast<std::uint16_t>(kFullPercent);
  job.ended = job.changed = m_clock();
}

void JobRegistry::finish(const std::string& id, const Outcome& outcome) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  removeById(m_underWay, id);
  Job* job = find(id);
  if (!job || isFinal(job->state)) return;
  if (outcome.state == CompletionState::Incomplete) job->errorText = outcome.text;
  const JobState state = finalState(outcome.state);
  Outcome told = outcome;
  // Many a reader takes what is neither OK, Incomplete nor Aborted for faulty hardware.
  if (told.state == CompletionState::Stopped) told.state = CompletionState::Aborted;
  end(*job, state, told);
}

void JobRegistry::fail(const std::string& id, const std::string& reason) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  removeById(m_underWay, id);
  Job* job = find(id);
  if (!job || isFinal(job->state)) return;
  Outcome outcome;
  outcome.state = CompletionState::Incomplete;
  outcome.text = "The test could not finish: " + reason + "\n";
  outcome.notes.push_back({RecordType::ServiceErrors, outcome.text, {}});
  job->errorText = reason;
  end(*job, JobState::Exception, outcome);
}

StateChange JobRegistry::requestState(const std::string& id, std::uint64_t state) {
  constexpr std::uint64_t kStart = 2, kTerminate = 4, kKill = 5, kService = 6;
  if (state < kStart || state > kService) return StateChange::InvalidParameter;
  if (state == kKill) return kill(id, std::nullopt) ? StateChange::Done : StateChange::Invalid;
  if (state != kTerminate) return StateChange::NotSupported;
  const std::lock_guard<std::mutex> lock(m_mutex);
  Job* job = find(id);
  if (!job || isFinal(job->state)) return StateChange::Invalid;
  job->stopRequested = true;
  job->state = JobState::ShuttingDown;
  job->changed = m_clock();
  return StateChange::Started;
}

bool JobRegistry::kill(const std::string& id, std::optional<bool> deleteAfterwards) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  Job* job = find(id);
  if (!job || isFinal(job->state)) return false;
  if (deleteAfterwards) job->request.deleteOnCompletion = *deleteAfterwards;
  end(*job, JobState::Killed, cutOff());
  return true;
}

void JobRegistry::stopAll() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  for (Job& job : m_jobs) job.stopRequested = true;
}

void JobRegistry::clear() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_jobs.clear();
  m_underWay.clear();
  m_records.clear();
}

bool JobRegistry::anyRunning() const {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return std::any_of(m_jobs.begin(), m_jobs.end(),
                     [](const Job& job) { return !isFinal(job.state); });
}

std::vector<Job> JobRegistry::jobs() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  prune();
  return m_jobs;
}

std::optional<Job> JobRegistry::job(const std::string& id) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  prune();
  const Job* job = find(id);
  if (!job) return std::nullopt;
  return *job;
}

std::vector<Record> JobRegistry::records() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  prune();
  return m_records;
}

bool JobRegistry::removeJob(const std::string& id) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  const Job* job = find(id);
  return job && isFinal(job->state) && removeById(m_jobs, id);
}

bool JobRegistry::removeRecord(const std::string& id) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return removeById(m_records, id);
}

void JobRegistry::prune() {
  const std::int64_t now = m_clock();
  const auto jobIsOver = [now](const Job& job) {
    return isFinal(job.state) && job.request.deleteOnCompletion &&
           now - job.ended >= job.request.keepJob;
  };
  m_jobs.erase(std::remove_if(m_jobs.begin(), m_jobs.end(), jobIsOver), m_jobs.end());
  const auto recordIsOver = [now](const Record& record) {
    return record.expires && now >= *record.expires;
  };
  m_records.erase(std::remove_if(m_records.begin(), m_records.end(), recordIsOver),
                  m_records.end());
}

std::string makeJobId() {
  std::random_device random;
  const auto word = [&random] { return static_cast<unsigned>(random()); };
  const unsigned a = word(), b = word(), c = word(), d = word();
  char text[48];
  // The version nibble 4 and the variant bits 10 mark a random UUID (RFC 4122, 4.4).
  std::snprintf(text, sizeof text, "DIAGS:%08x-%04x-%04x-%04x-%04x%08x", a, b >> 16,
                (b & 0x0FFFU) | 0x4000U, ((c >> 16) & 0x3FFFU) | 0x8000U, c & 0xFFFFU, d);
  return text;
}

std::int64_t systemClock() {
  using std::chrono::duration_cast;
  using std::chrono::microseconds;
  return duration_cast<microseconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

}  // namespace providers
