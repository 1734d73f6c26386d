#include "engine/worker/wire/Wire.h"

#include <cstdlib>
#include <mutex>

#include "engine/protocol/PlaceRecord.h"
#include "engine/worker/wire/Descriptors.h"

namespace engine::wire {
namespace {

int g_in = -1;
int g_out = -1;
int g_place = -1;
std::mutex g_mutex;

bool writeAll(const char* bytes, std::size_t size) noexcept {
  while (size > 0) {
    const long written = writeSome(g_out, bytes, size);
    if (written <= 0) return false;
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

void sendLines(const std::string& lines) {
  const std::lock_guard<std::mutex> lock(g_mutex);
  if (!writeAll(lines.data(), lines.size())) std::_Exit(EXIT_FAILURE);
}

}  // namespace

bool open() {
  g_in = takeAway(3);
  g_out = takeAway(4);
  if (PlaceRecord::isRecord(PlaceRecord::kDescriptor)) g_place = takeAway(PlaceRecord::kDescriptor);
  closeInChildren(g_in, g_out, g_place);
  return g_in >= 0 && g_out >= 0;
}

std::optional<std::string> readLine() {
  static std::string rest;
  std::size_t end = rest.find('\n');
  while (end == std::string::npos) {
    char buffer[4096];
    const long count = readSome(g_in, buffer, sizeof buffer);
    if (count <= 0) return std::nullopt;
    rest.append(buffer, static_cast<std::size_t>(count));
    end = rest.find('\n');
  }
  std::string line = rest.substr(0, end);
  rest.erase(0, end + 1);
  return line;
}

void send(const Reply& reply) { sendLines(lineOf(reply) + "\n"); }

void send(const std::vector<Reply>& replies) {
  std::string lines;
  for (const Reply& reply : replies) lines += lineOf(reply) + "\n";
  sendLines(lines);
}

void tellPlace(const char* provider, const char* operation) noexcept {
  try {
    send(Entered{provider, operation});
  } catch (...) {
    // Without memory the place is known to this process alone.
  }
}

void leaveWord(const char* provider, const char* operation) noexcept {
  if (!PlaceRecord::write(g_place, provider, operation)) tellPlace(provider, operation);
}

void sendOutOfMemory() noexcept {
  char line[kOutOfMemoryLine.size() + 1];
  kOutOfMemoryLine.copy(line, kOutOfMemoryLine.size());
  line[kOutOfMemoryLine.size()] = '\n';
  const std::lock_guard<std::mutex> lock(g_mutex);
  writeAll(line, sizeof line);
}

void sendLastWord(const char* line, std::size_t size) noexcept { writeAll(line, size); }

}  // namespace engine::wire
