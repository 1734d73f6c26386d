#include "providers/disk/reading/ThreadSource.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "providers/disk/reading/SlotMemory.h"

namespace providers::disk {

namespace {

/// What the threads work on. It outlives the source where a read does not come back: each thread
/// holds it, and so the memory that is read into.
class Work {
 public:
  Work(ReadAt readAt, const SourceShape& shape)
      : m_readAt(std::move(readAt)), m_memory(shape.slots, shape.slotBytes) {}

  std::uint8_t* of(unsigned slot) const { return m_memory.of(slot); }

  void add(unsigned slot, const Extent& extent) {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_wanted.push_back({slot, extent});
    }
    m_toDo.notify_one();
  }

  void collect(std::vector<ReadAnswer>& ended, double seconds) {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_done.wait_for(lock, std::chrono::duration<double>(seconds),
                    [this] { return !m_ended.empty(); });
    ended.insert(ended.end(), m_ended.begin(), m_ended.end());
    m_ended.clear();
  }

  void finish() {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_over = true;
    }
    m_toDo.notify_all();
  }

  /// Whether all threads have ended, after waiting for that for a while.
  bool allEnded(std::size_t threads, std::chrono::seconds limit) {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_done.wait_for(lock, limit, [&] { return m_endedThreads == threads; });
  }

  void serve() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
      m_toDo.wait(lock, [this] { return m_over || !m_wanted.empty(); });
      if (m_over) break;
      const auto [slot, extent] = m_wanted.front();
      m_wanted.pop_front();
      lock.unlock();
      ReadAnswer answer = m_readAt(extent, of(slot));
      answer.slot = slot;
      lock.lock();
      m_ended.push_back(answer);
      m_done.notify_one();
    }
    ++m_endedThreads;
    m_done.notify_one();
  }

 private:
  const ReadAt m_readAt;
  const SlotMemory m_memory;
  std::mutex m_mutex;
  std::condition_variable m_toDo;
  std::condition_variable m_done;
  std::deque<std::pair<unsigned, Extent>> m_wanted;
  std::vector<ReadAnswer> m_ended;
  std::size_t m_endedThreads = 0;
  bool m_over = false;
};

class ThreadSource : public BlockSource {
 public:
  ThreadSource(ReadAt readAt, const SourceShape& shape)
      : m_shape(shape), m_work(std::make_shared<Work>(std::move(readAt), shape)) {
    try {
      for (unsigned i = 0; i < shape.slots; ++i)
        m_threads.emplace_back([work = m_work] { work->serve(); });
    } catch (const std::system_error&) {
      // As many as there are take turns.
    }
  }
  ThreadSource(const ThreadSource&) = delete;
  ThreadSource& operator=(const ThreadSource&) = delete;
  ~ThreadSource() override {
    constexpr std::chrono::seconds kLastWait(5);
    m_work->finish();
    const bool ended = m_work->allEnded(m_threads.size(), kLastWait);
    for (std::thread& thread : m_threads) ended ? thread.join() : thread.detach();
  }

  bool hasThreads() const { return !m_threads.empty(); }
  unsigned slots() const override { return m_shape.slots; }
  std::uint32_t slotBytes() const override { return m_shape.slotBytes; }
  const std::uint8_t* data(unsigned slot) const override { return m_work->of(slot); }
  const char* means() const override { return "threads"; }
  void start(unsigned slot, const Extent& extent) override { m_work->add(slot, extent); }
  void collect(std::vector<ReadAnswer>& ended, double seconds) override {
    m_work->collect(ended, seconds);
  }

 private:
  const SourceShape m_shape;
  const std::shared_ptr<Work> m_work;
  std::vector<std::thread> m_threads;
};

}  // namespace

std::unique_ptr<BlockSource> makeThreadSource(ReadAt readAt, const SourceShape& shape) {
  auto source = std::make_unique<ThreadSource>(std::move(readAt), shape);
  if (!source->hasThreads()) return nullptr;
  return source;
}

}  // namespace providers::disk
