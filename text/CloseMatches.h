#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace text {

/// How many letters have to be inserted, removed or exchanged to make one text of the other;
/// `limit` + 1 where it takes more than `limit`.
std::size_t editDistance(const std::string& left, const std::string& right, std::size_t limit);

/// Those of `candidates` that somebody who typed `text` may have meant, the likeliest first, at
/// most `most`: the ones that contain the text, and the ones that are a few letters away from it.
/// ASCII case makes no difference.
std::vector<std::string> closeMatches(const std::string& text,
                                      const std::vector<std::string>& candidates, std::size_t most);

/// `"one", "other"`.
std::string quotedList(const std::vector<std::string>& texts);

/// `; close to it: "one", "other"`, three at most, for a message about `text`; empty where nothing
/// is close to it.
std::string suggestions(const std::string& text, const std::vector<std::string>& candidates);

}  // namespace text
