#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace host {

/// How many letters have to be inserted, removed or exchanged to make one text of the other;
/// `limit` + 1 where it takes more than `limit`.
std::size_t editDistance(const std::string& left, const std::string& right, std::size_t limit);

/// Those of `candidates` that somebody who typed `text` may have meant, the likeliest first, at
/// most `most`: the ones that contain the text, and the ones that are a few letters away from it.
/// ASCII case makes no difference.
std::vector<std::string> closeMatches(const std::string& text,
                                      const std::vector<std::string>& candidates, std::size_t most);

}  // namespace host
