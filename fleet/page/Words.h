#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "fleet/Answer.h"

/// What the page calls things, and how it spells them.
namespace fleet::page {

/// How a verdict looks: a letter for it in the data, its class in the style sheets, the word on its
/// badge, and the sign in the table. None is told by colour alone.
struct Look {
  Verdict verdict;
  char letter;
  const char* style;  ///< "pass", "warn", "fail" or "open"
  const char* word;
  const char* sign;
};

/// The worst first.
extern const Look kLooks[kVerdicts];

const Look& lookOf(Verdict verdict);

/// "10,000".
std::string thousands(std::uint64_t number);

/// "1 machine", "10,000 machines".
std::string counted(std::uint64_t number, std::string_view what);

/// As HTML text, of at most so many bytes.
std::string htmlOf(std::string_view text, std::size_t bytes);

/// What a reader sees of a text: as `htmlOf`, but not yet for any place.
std::string seen(std::string_view text, std::size_t bytes);

/// "#key=value", as HTML; `value` is what is seen.
std::string address(std::string_view key, std::string_view value);

/// Those that are not empty, with dots between.
std::string joined(std::initializer_list<std::string_view> texts);

/// The name of a test of the answer; empty for that of no test.
std::string_view testName(const Answer& answer, std::uint32_t test);

/// "8.1 GiB/s, 63 % of the median of 199 peers, 12.9 GiB/s"; of several measurements "8.1 GiB/s
/// beside the median of 199 peers, 12.9 GiB/s; of 20 measurements the farthest off, together 80 %
/// of the peers' speed".
std::string besidePeers(const Slow& slow);

}  // namespace fleet::page
