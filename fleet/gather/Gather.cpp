#include "fleet/gather/Gather.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <mutex>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

#include "fleet/gather/Roster.h"
#include "fleet/gather/Walk.h"
#include "fleet/reading/StreamReader.h"

namespace fleet {
namespace {

constexpr std::size_t kMostComplaints = 10'000;

/// What the threads share: each takes the next file, and brings back what it says.
class Gathering {
 public:
  Gathering(const std::vector<std::string>& names, Tables& tables, engine::Time now)
      : m_tables(tables), m_walk(names), m_roster(tables, now) {}

  void work() {
    try {
      Scratch scratch;
      StreamReader reader(m_tables, scratch);
      std::filesystem::path file;
      while (next(file)) take(read(reader, file));
    } catch (...) {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_failure = std::current_exception();
    }
  }

  Gathered finish() {
    if (m_failure) std::rethrow_exception(m_failure);
    addComplaints(std::move(m_walk.complaints()));
    std::vector<Complaint> complaints;
    m_gathered.members = m_roster.finish(complaints);
    addComplaints(std::move(complaints));
    std::sort(m_gathered.complaints.begin(), m_gathered.complaints.end(),
              [](const Complaint& one, const Complaint& other) {
                return std::tie(one.file, one.line, one.text) <
                       std::tie(other.file, other.line, other.text);
              });
    return std::move(m_gathered);
  }

 private:
  bool next(std::filesystem::path& file) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return !m_failure && m_walk.next(file);
  }

  static StreamResult read(StreamReader& reader, const std::filesystem::path& file) {
    const std::string name = file.u8string();
    std::ifstream in(file, std::ios::binary);
    StreamResult bad;
    bad.file = name;
    bad.isLeftOut = true;
    bad.complaints.push_back({name, 0, "cannot be read", true});
    if (!in) return bad;
    try {
      return reader.read(in, name);
    } catch (const std::runtime_error&) {
      return bad;
    }
  }

  void take(StreamResult&& result) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_gathered.streams;
    m_gathered.measurements += result.measurements;
    addComplaints(std::move(result.complaints));
    if (result.isLeftOut) {
      ++m_gathered.leftOut;
      return;
    }
    std::vector<Complaint> complaints;
    m_roster.add(std::move(result), complaints);
    addComplaints(std::move(complaints));
  }

  void addComplaints(std::vector<Complaint>&& complaints) {
    for (Complaint& complaint : complaints) {
      if (m_gathered.complaints.size() == kMostComplaints) {
        ++m_gathered.moreComplaints;
      } else {
        m_gathered.complaints.push_back(std::move(complaint));
      }
    }
  }

  Tables& m_tables;
  std::mutex m_mutex;
  Walk m_walk;
  Roster m_roster;
  Gathered m_gathered;
  std::exception_ptr m_failure;
};

/// Where the system gives no more of them, there are fewer.
std::vector<std::thread> helpers(Gathering& gathering, unsigned count) {
  std::vector<std::thread> threads;
  threads.reserve(count);
  try {
    for (unsigned i = 0; i < count; ++i) threads.emplace_back([&gathering] { gathering.work(); });
  } catch (const std::system_error&) {
  }
  return threads;
}

}  // namespace

Gathered gather(const std::vector<std::string>& names, Tables& tables, engine::Time now,
                unsigned threads) {
  Gathering gathering(names, tables, now);
  std::vector<std::thread> others = helpers(gathering, threads - 1);
  gathering.work();
  for (std::thread& other : others) other.join();
  return gathering.finish();
}

}  // namespace fleet
