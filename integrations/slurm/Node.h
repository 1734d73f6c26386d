#pragma once

#include <optional>
#include <string>

namespace slurm {

/// What the controller says of a node.
struct NodeState {
  bool isDrained = false;
  std::string reason;  ///< somebody's, without who it was and when; empty: none
};

/// From the one line of `scontrol --oneliner show node NAME`; nothing where it is none of that
/// node.
std::optional<NodeState> nodeStateFrom(const std::string& line, const std::string& node);

/// What it is to be drained for: what somebody said of it stays in front.
std::string reasonBeside(const NodeState& state, const std::string& reason);

}  // namespace slurm
