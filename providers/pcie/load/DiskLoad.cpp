#include "providers/pcie/load/DiskLoad.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>

#include "providers/common/DeviceNumberPosix.h"

namespace providers::pcie {

namespace {

constexpr std::size_t kRead = std::size_t{1} << 20;
constexpr std::align_val_t kPage{4096};

class PageMemory {
 public:
  PageMemory() : m_bytes(::operator new(kRead, kPage)) {}
  PageMemory(const PageMemory&) = delete;
  PageMemory& operator=(const PageMemory&) = delete;
  ~PageMemory() { ::operator delete(m_bytes, kPage); }
  void* bytes() const { return m_bytes; }

 private:
  void* const m_bytes;
};

/// A disk with several reads in flight. It outlives the load where one of them does not come back.
class ReadDisk {
 public:
  explicit ReadDisk(const LinkedDisk& disk) : m_places(disk.bytes / kRead) {
    m_file = open(disk.node.c_str(), O_RDONLY | O_DIRECT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (m_file < 0) {
      const int error = errno;
      m_read.problem =
          disk.node + " cannot be opened for reading: " + std::generic_category().message(error);
      return;
    }
    m_read.problem = whyAnotherDevice(m_file, disk.node, disk.number);
    if (m_read.problem.empty() && m_places == 0) m_read.problem = disk.node + " is too small";
  }
  ReadDisk(const ReadDisk&) = delete;
  ReadDisk& operator=(const ReadDisk&) = delete;
  ~ReadDisk() {
    if (m_file >= 0) close(m_file);
  }

  bool isReadable() const { return sofar().problem.empty(); }

  DiskRead sofar() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_read;
  }

  /// One read after another, until it is told to end or the disk gives nothing any more.
  void serve(const std::atomic<bool>& over) {
    constexpr std::uint64_t kMostFailed = 16;
    const PageMemory memory;
    while (!over && readNext(memory.bytes()) < kMostFailed) continue;
  }

  void lack(const std::string& problem) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_read.problem = problem;
  }

 private:
  /// How many have failed by now.
  std::uint64_t readNext(void* into) {
    const auto offset = static_cast<off_t>(m_next++ % m_places * kRead);
    ssize_t got = 0;
    do {
      got = pread(m_file, into, kRead, offset);
    } while (got < 0 && errno == EINTR);
    const int error = got < 0 ? errno : 0;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (got > 0) {
      m_read.bytes += static_cast<std::uint64_t>(got);
    } else {
      ++m_read.failed;
      m_read.problem =
          error != 0 ? std::generic_category().message(error) : "the disk has ended too early";
    }
    return m_read.failed;
  }

  const std::uint64_t m_places;
  int m_file = -1;
  std::atomic<std::uint64_t> m_next{0};
  mutable std::mutex m_mutex;
  DiskRead m_read;
};

/// What all threads have in common.
struct Crew {
  std::vector<std::unique_ptr<ReadDisk>> disks;
  std::atomic<bool> over{false};
  std::mutex mutex;
  std::condition_variable ended;
  std::size_t atWork = 0;

  void finished() {
    const std::lock_guard<std::mutex> lock(mutex);
    --atWork;
    ended.notify_all();
  }
};

class ThreadedLoad : public DiskLoad {
 public:
  explicit ThreadedLoad(const std::vector<LinkedDisk>& disks) {
    for (const LinkedDisk& disk : disks) {
      m_crew->disks.push_back(std::make_unique<ReadDisk>(disk));
      if (m_crew->disks.back()->isReadable()) begin(*m_crew->disks.back());
    }
  }
  ThreadedLoad(const ThreadedLoad&) = delete;
  ThreadedLoad& operator=(const ThreadedLoad&) = delete;
  ~ThreadedLoad() override {
    constexpr std::chrono::seconds kLastWait(5);
    m_crew->over = true;
    bool ended = false;
    {
      std::unique_lock<std::mutex> lock(m_crew->mutex);
      ended = m_crew->ended.wait_for(lock, kLastWait, [this] { return m_crew->atWork == 0; });
    }
    for (std::thread& thread : m_threads) ended ? thread.join() : thread.detach();
  }

  std::vector<DiskRead> sofar() const override {
    std::vector<DiskRead> all;
    for (const auto& disk : m_crew->disks) all.push_back(disk->sofar());
    return all;
  }

 private:
  /// A few in flight: a drive that answers one at a time leaves its link idle meanwhile.
  void begin(ReadDisk& disk) {
    constexpr unsigned kInFlight = 4;
    unsigned begun = 0;
    for (; begun < kInFlight; ++begun) {
      {
        const std::lock_guard<std::mutex> lock(m_crew->mutex);
        ++m_crew->atWork;
      }
      try {
        m_threads.emplace_back([crew = m_crew, &disk] {
          try {
            disk.serve(crew->over);
          } catch (const std::bad_alloc&) {
            disk.lack("there is no memory to read into");
          }
          crew->finished();
        });
      } catch (const std::system_error&) {
        m_crew->finished();
        break;
      }
    }
    if (begun == 0) disk.lack("the system allows no further threads");
  }

  const std::shared_ptr<Crew> m_crew = std::make_shared<Crew>();
  std::vector<std::thread> m_threads;
};

}  // namespace

std::unique_ptr<DiskLoad> startDiskLoad(const std::vector<LinkedDisk>& disks) {
  return std::make_unique<ThreadedLoad>(disks);
}

}  // namespace providers::pcie
