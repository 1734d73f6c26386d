#include "integrations/slurm/Node.h"

#include <algorithm>
#include <sstream>

namespace slurm {
namespace {

/// The word behind " State=".
std::string stateWord(const std::string& line) {
  constexpr std::string_view kState = " State=";
  const std::size_t at = line.find(kState);
  if (at == std::string::npos) return "";
  const std::size_t from = at + kState.size();
  return line.substr(from, line.find(' ', from) - from);
}

/// "IDLE+DRAIN", "DRAINED*", "MIXED+DRAIN+NOT_RESPONDING": one of these words says it.
bool saysDrain(const std::string& state) {
  std::istringstream words(state);
  for (std::string word; std::getline(words, word, '+');) {
    word.erase(std::find_if(word.begin(), word.end(), [](char one) { return one < 'A'; }),
               word.end());
    if (word == "DRAIN" || word == "DRAINED" || word == "DRAINING") return true;
  }
  return false;
}

/// The last of the members, and the only one with blanks in it.
std::string reasonIn(const std::string& line) {
  constexpr std::string_view kReason = " Reason=";
  const std::size_t at = line.find(kReason);
  if (at == std::string::npos) return "";
  std::string reason = line.substr(at + kReason.size());
  const std::size_t who = reason.rfind(" [");
  if (who != std::string::npos && reason.find('@', who) != std::string::npos) reason.resize(who);
  return reason == "none" ? "" : reason;
}

}  // namespace

std::optional<NodeState> nodeStateFrom(const std::string& line, const std::string& node) {
  if (line.rfind("NodeName=" + node + " ", 0) != 0) return std::nullopt;
  const std::string state = stateWord(line);
  if (state.empty()) return std::nullopt;
  return NodeState{saysDrain(state), reasonIn(line)};
}

std::string reasonBeside(const NodeState& state, const std::string& reason) {
  return state.reason.empty() || state.reason == reason ? reason : state.reason + "; " + reason;
}

}  // namespace slurm
