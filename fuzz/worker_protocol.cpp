#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "engine/process/LineSplitter.h"
#include "engine/protocol/Messages.h"

namespace {

using namespace engine;

void check(bool holds) {
  if (!holds) std::abort();
}

/// What one side says, the other one understands, and says in the same words.
void checkReply(const std::string& line) {
  try {
    const std::string said = lineOf(replyFrom(line));
    check(said.find('\n') == std::string::npos);
    check(lineOf(replyFrom(said)) == said);
  } catch (const ProtocolError& fault) {
    check(*fault.what() != '\0');
  }
}

void checkOrder(const std::string& line) {
  try {
    const std::string said = lineOf(orderFrom(line));
    check(said.find('\n') == std::string::npos);
    check(lineOf(orderFrom(said)) == said);
  } catch (const ProtocolError& fault) {
    check(*fault.what() != '\0');
  }
}

}  // namespace

/// Whatever comes through the pipes, in whatever pieces: the first byte says how long they are. It
/// is refused with a reason, or is a message that stays the same when it is said again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t piece = data[0] + std::size_t{1};
  std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
  std::size_t taken = 0;
  const std::size_t limit = 4 + data[0] * std::size_t{64};
  LineSplitter splitter(limit, [&](std::string&& line, bool isPart) {
    check(line.size() <= limit);
    check(line.find('\n') == std::string::npos);
    taken += line.size();
    if (isPart) return;
    checkReply(line);
    checkOrder(line);
  });
  for (; !rest.empty(); rest.remove_prefix(std::min(piece, rest.size()))) {
    splitter.add(rest.substr(0, piece));
  }
  splitter.finish();
  check(taken < size);
  return 0;
}
