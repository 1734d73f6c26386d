#include "providers/disk/reading/UringSource.h"

#include <liburing.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <optional>
#include <string>
#include <thread>

#include "providers/disk/reading/SlotMemory.h"

namespace providers::disk {

namespace {

using SteadyClock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

class UringSource : public BlockSource {
 public:
  UringSource(int file, const SourceShape& shape, double patience)
      : m_file(file),
        m_shape(shape),
        m_patience(patience),
        m_memory(shape.slots, shape.slotBytes) {}
  UringSource(const UringSource&) = delete;
  UringSource& operator=(const UringSource&) = delete;

  /// False where io_uring is not allowed, or does too little; the file is not closed then.
  bool setUp() {
    if (io_uring_queue_init(m_shape.slots, &m_ring, 0) != 0) return false;
    m_ready = answers();
    if (!m_ready) {
      io_uring_queue_exit(&m_ring);
      return false;
    }
    // Pages that are pinned once need not be for each read. Where the limit on locked memory is
    // too low for that, reads go the longer way.
    std::vector<iovec> buffers;
    for (unsigned slot = 0; slot < m_shape.slots; ++slot)
      buffers.push_back({m_memory.of(slot), m_shape.slotBytes});
    m_pinned = io_uring_register_buffers(&m_ring, buffers.data(), m_shape.slots) == 0;
    return true;
  }

  ~UringSource() override {
    if (!m_ready) return;
    std::vector<ReadAnswer> ended;
    // What the system has not taken will never be read.
    for (int i = 0; i < kLastWaits && m_inFlight > io_uring_sq_ready(&m_ring); ++i)
      takeEnded(ended, kLastWait);
    if (m_inFlight > io_uring_sq_ready(&m_ring)) m_memory.abandon();
    io_uring_queue_exit(&m_ring);
    close(m_file);
  }

  unsigned slots() const override { return m_shape.slots; }
  std::uint32_t slotBytes() const override { return m_shape.slotBytes; }
  const std::uint8_t* data(unsigned slot) const override { return m_memory.of(slot); }
  const char* means() const override { return "io_uring"; }

  void start(unsigned slot, const Extent& extent) override {
    // There are as many entries as slots, and each slot has one read: there is always one.
    io_uring_sqe* entry = io_uring_get_sqe(&m_ring);
    if (m_pinned)
      io_uring_prep_read_fixed(entry, m_file, m_memory.of(slot), extent.bytes, extent.offset,
                               static_cast<int>(slot));
    else
      io_uring_prep_read(entry, m_file, m_memory.of(slot), extent.bytes, extent.offset);
    io_uring_sqe_set_data64(entry, slot);
    ++m_inFlight;
    // What cannot be handed over now is so when answers are collected.
    if (io_uring_sq_ready(&m_ring) >= kTogether) io_uring_submit(&m_ring);
  }

  void collect(std::vector<ReadAnswer>& ended, double seconds) override {
    const auto end = SteadyClock::now() + Seconds(seconds);
    do {
      const int problem =
          takeEnded(ended, std::max(0.0, Seconds(end - SteadyClock::now()).count()));
      if (problem == 0 || !ended.empty()) {
        m_refusedSince.reset();
        return;
      }
      const auto now = SteadyClock::now();
      if (!m_refusedSince) m_refusedSince = now;
      if (Seconds(now - *m_refusedSince).count() >= m_patience)
        throw NoFurtherReads(std::string("the system takes no reads by io_uring: ") +
                             std::strerror(problem));
      // It answers at once: without a pause a processor would do nothing but ask.
      std::this_thread::sleep_for(Seconds(std::min(kPause, m_patience)));
    } while (SteadyClock::now() < end);
  }

 private:
  /// So many reads are handed over at once: the drive works on them while the next are prepared,
  /// and fewer would cost more calls than they win.
  static constexpr unsigned kTogether = 4;
  static constexpr int kLastWaits = 10;
  static constexpr double kLastWait = 0.5;
  static constexpr double kPause = 0.01;

  /// Hands over what is to be read and takes what has ended. Returns 0, or an `errno` where the
  /// system takes nothing.
  int takeEnded(std::vector<ReadAnswer>& ended, double seconds) {
    io_uring_cqe* first = nullptr;
    __kernel_timespec time{};
    time.tv_sec = static_cast<long long>(seconds);
    time.tv_nsec = static_cast<long long>((seconds - static_cast<double>(time.tv_sec)) * 1e9);
    const int result = io_uring_submit_and_wait_timeout(&m_ring, &first, 1, &time, nullptr);
    unsigned count = 0;
    unsigned head = 0;
    io_uring_cqe* entry = nullptr;
    io_uring_for_each_cqe(&m_ring, head, entry) {
      ended.push_back(answerOf(*entry));
      ++count;
    }
    io_uring_cq_advance(&m_ring, count);
    m_inFlight -= count;
    return result >= 0 || result == -ETIME || result == -EINTR ? 0 : -result;
  }

  /// Sandboxes may allow a ring to be made, but nothing to be begun in it. In kernels that cannot
  /// wait for a limited time, liburing begins a timeout instead, which would end like a read.
  bool answers() {
    if (!(m_ring.features & IORING_FEAT_EXT_ARG)) return false;
    io_uring_prep_nop(io_uring_get_sqe(&m_ring));
    io_uring_cqe* entry = nullptr;
    __kernel_timespec limit{};
    limit.tv_sec = 1;
    if (io_uring_submit_and_wait_timeout(&m_ring, &entry, 1, &limit, nullptr) < 0 || !entry)
      return false;
    io_uring_cqe_seen(&m_ring, entry);
    return true;
  }

  static ReadAnswer answerOf(const io_uring_cqe& entry) {
    const auto slot = static_cast<unsigned>(entry.user_data);
    if (entry.res < 0) return {slot, 0, readErrorOf(-entry.res)};
    return {slot, static_cast<std::uint32_t>(entry.res), ReadError::None};
  }

  const int m_file;
  const SourceShape m_shape;
  const double m_patience;
  SlotMemory m_memory;
  io_uring m_ring{};
  bool m_ready = false;
  bool m_pinned = false;
  unsigned m_inFlight = 0;  ///< those that the system has not taken yet among them
  std::optional<SteadyClock::time_point> m_refusedSince;
};

}  // namespace

std::unique_ptr<BlockSource> makeUringSource(int file, const SourceShape& shape, double patience) {
  auto source = std::make_unique<UringSource>(file, shape, patience);
  if (!source->setUp()) return nullptr;
  return source;
}

}  // namespace providers::disk
