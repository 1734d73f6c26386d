#include "providers/processor/coherency/MessageExchange.h"

#include <array>
#include <atomic>

#include "providers/common/SplitMix.h"

namespace providers {

namespace {

constexpr unsigned kSpins = 1000;

/// A message that has been handed over `turn` times; odd turns are the second thread's.
class Mailbox {
 public:
  void write(std::uint64_t turn) {
    std::size_t i = 0;
    for (std::uint64_t& word : m_words) word = splitMix(turn, i++);
    m_turn.store(turn, std::memory_order_release);
  }

  std::optional<WrongWord> check(std::uint64_t turn, unsigned reader, const MessageTap& tap) const {
    std::size_t i = 0;
    for (const std::uint64_t& word : m_words) {
      const std::uint64_t expected = splitMix(turn, i);
      const std::uint64_t found = tap.pass(reader, word);
      if (found != expected) return WrongWord{reader, i, expected, found};
      ++i;
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
  alignas(64) std::array<std::uint64_t, kMessageWords> m_words{};
  alignas(64) std::atomic<std::uint64_t> m_turn{0};
};

/// One of the two partners: waits for its turn, checks what came, and hands on.
struct Partner {
  Mailbox& mailbox;
  std::atomic<bool>& over;
  const MessageTap& tap;
  unsigned cpu = 0;
  std::uint64_t messages = 0;
  std::optional<WrongWord> wrong;

  void run(std::uint64_t firstTurn, std::uint64_t lastTurn, const std::function<bool()>& goesOn) {
    for (std::uint64_t turn = firstTurn; turn <= lastTurn; turn += 2) {
      if (!mailbox.await(turn, over)) return;
      if (turn > 0) {
        wrong = mailbox.check(turn, cpu, tap);
        ++messages;
      }
      if (wrong || !goesOn()) over = true;
      if (over) return;
      mailbox.write(turn + 1);
    }
  }
};

}  // namespace

ExchangeResult exchangeMessages(unsigned cpu1, unsigned cpu2, std::uint64_t exchanges,
                                const std::function<bool(unsigned)>& bind,
                                const std::function<bool()>& goesOn, const MessageTap& tap,
                                const StartThread& start) {
  Mailbox mailbox;
  std::atomic<bool> over{false};
  std::atomic<bool> bound{true};
  Partner first{mailbox, over, tap, cpu1, 0, {}};
  Partner second{mailbox, over, tap, cpu2, 0, {}};
  const auto enter = [&](Partner& partner, std::uint64_t firstTurn) {
    const bool begins = bind(partner.cpu);
    if (begins) partner.run(firstTurn, 2 * exchanges, goesOn);
    // Where a CPU goes away, the system has its threads run on others and tells nobody.
    if (begins && bind(partner.cpu)) return;
    bound = false;
    over = true;
  };
  JoinedThreads other(start);
  if (!other.add([&] { enter(second, 1); })) return {false, false, 0, {}};
  enter(first, 0);
  other.join();
  return {true, bound, first.messages + second.messages, first.wrong ? first.wrong : second.wrong};
}

}  // namespace providers
