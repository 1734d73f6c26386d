#include "reports/redact/HostNames.h"

#include <algorithm>
#include <iterator>

#include "reports/common/Letters.h"

namespace reports {
namespace {

/// In the order of the alphabet.
constexpr std::string_view kEveryday[] = {
    "access",     "adapter",    "address",     "admin",    "array",    "backup",      "bank",
    "battery",    "bench",      "bios",        "block",    "board",    "boot",        "cache",
    "card",       "channel",    "check",       "chip",     "cluster",  "complete",    "computer",
    "controller", "core",       "count",       "data",     "debian",   "default",     "desktop",
    "device",     "diagnostic", "diagnostics", "diags",    "disk",     "disks",       "drive",
    "driver",     "engine",     "error",       "errors",   "event",    "express",     "fail",
    "failed",     "false",      "file",        "firmware", "gateway",  "hardware",    "health",
    "home",       "host",       "hosts",       "info",     "input",    "instance",    "laptop",
    "level",      "library",    "limit",       "line",     "link",     "linux",       "list",
    "load",       "local",      "loop",        "loopback", "machine",  "main",        "master",
    "memory",     "message",    "model",       "module",   "name",     "network",     "node",
    "none",       "number",     "output",      "parity",   "part",     "pass",        "passed",
    "path",       "percent",    "port",        "ports",    "power",    "process",     "processor",
    "processors", "product",    "provider",    "quick",    "random",   "read",        "record",
    "remote",     "report",     "result",      "root",     "router",   "sample",      "sensor",
    "sensors",    "sequential", "serial",      "server",   "service",  "setting",     "signal",
    "size",       "slot",       "socket",      "speed",    "standard", "state",       "status",
    "storage",    "store",      "switch",      "system",   "tape",     "temperature", "test",
    "tests",      "thread",     "time",        "timeout",  "true",     "unknown",     "user",
    "value",      "verdict",    "version",     "video",    "virtual",  "voltage",     "warning",
    "windows",    "worker",     "workstation", "write"};

constexpr std::string_view kAnnouncing[] = {"host",         "hostname", "host name",
                                            "host_name",    "computer", "computer name",
                                            "computername", "node",     "nodename"};
constexpr std::size_t kShortest = 4;

bool isLetter(char byte) { return folded(byte) >= 'a' && folded(byte) <= 'z'; }

bool endsWithWord(std::string_view text, std::string_view word) {
  if (text.size() < word.size()) return false;
  const std::string_view end = text.substr(text.size() - word.size());
  const bool isSame = std::equal(end.begin(), end.end(), word.begin(),
                                 [](char one, char other) { return folded(one) == other; });
  return isSame && (text.size() == word.size() || !isLetter(text[text.size() - word.size() - 1]));
}

}  // namespace

bool isEverydayName(std::string_view name) noexcept {
  if (name.size() < kShortest) return true;
  return std::find(std::begin(kEveryday), std::end(kEveryday), name) != std::end(kEveryday);
}

bool announcesHost(std::string_view text, std::size_t position) noexcept {
  std::string_view before = text.substr(0, position);
  if (before.empty()) return false;
  if (before.back() == '@' || endsWithWord(before, "//")) return true;
  const std::size_t last = before.find_last_not_of(" \t:=\"'");
  if (last == std::string_view::npos || last + 1 == before.size()) return false;
  before = before.substr(0, last + 1);
  return std::any_of(std::begin(kAnnouncing), std::end(kAnnouncing),
                     [&](std::string_view word) { return endsWithWord(before, word); });
}

}  // namespace reports
