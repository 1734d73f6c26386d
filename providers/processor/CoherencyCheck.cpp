#include "providers/processor/CoherencyCheck.h"

#include <array>
#include <atomic>
#include <thread>

#include "providers/common/SplitMix.h"

namespace providers {

namespace {

constexpr std::size_t kWords = 32;  // a message spans several cache lines
constexpr unsigned kSpins = 1000;

/// A message that has been handed over `turn` times; odd turns are the second thread's.
class Mailbox {
 public:
  void write(std::uint64_t turn) {
    for (std::size_t i = 0; i < kWords; ++i) m_words[i] = splitMix(turn, i);
    m_turn.store(turn, std::memory_order_release);
  }

  std::optional<Mismatch> check(std::uint64_t turn, ResultTap& tap) const {
    for (std::size_t i = 0; i < kWords; ++i) {
      if (const auto wrong = compare(splitMix(turn, i), tap.pass(m_words[i]))) return wrong;
    }
    return std::nullopt;
  }

  /// Waits for the turn. False when the exchange is over.
  bool await(std::uint64_t turn, const std::atomic<bool>& over) const {
    unsigned spins = 0;
    while (m_turn.load(std::memory_order_acquire) != turn) {
      if (over) return false;
      if (++spins % kSpins == 0) std::this_thread::yield();
    }
    return true;
  }

 private:
  alignas(64) std::array<std::uint64_t, kWords> m_words{};
  alignas(64) std::atomic<std::uint64_t> m_turn{0};
};

/// One of the two partners: waits for its turn, checks what came, and hands on.
struct Partner {
  Mailbox& mailbox;
  std::atomic<bool>& over;
  ResultTap& tap;
  std::uint64_t messages = 0;
  std::optional<Mismatch> wrong;

  void run(std::uint64_t firstTurn, std::uint64_t lastTurn, const std::function<bool()>& goesOn) {
    for (std::uint64_t turn = firstTurn; turn <= lastTurn; turn += 2) {
      if (!mailbox.await(turn, over)) return;
      if (turn > 0) {
        wrong = mailbox.check(turn, tap);
        ++messages;
      }
      if (wrong || !goesOn()) over = true;
      mailbox.write(turn + 1);
      if (over) return;
    }
  }
};

}  // namespace

CoherencyResult checkCoherency(unsigned cpu1, unsigned cpu2, std::uint64_t exchanges,
                               const std::function<bool(unsigned)>& bind,
                               const std::function<bool()>& goesOn, ResultTap& tap) {
  Mailbox mailbox;
  std::atomic<bool> over{false};
  std::atomic<bool> bound{true};
  Partner first{mailbox, over, tap, 0, {}};
  Partner second{mailbox, over, tap, 0, {}};
  const auto enter = [&](unsigned cpu, Partner& partner, std::uint64_t firstTurn) {
    if (!bind(cpu)) {
      bound = false;
      over = true;
      return;
    }
    partner.run(firstTurn, 2 * exchanges, goesOn);
  };
  std::thread other([&] { enter(cpu2, second, 1); });
  std::thread one([&] { enter(cpu1, first, 0); });
  one.join();
  over = true;
  other.join();
  return {bound, first.messages + second.messages, first.wrong ? first.wrong : second.wrong};
}

}  // namespace providers
