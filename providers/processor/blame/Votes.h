#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "providers/processor/operations/Operation.h"

namespace providers {

/// What several processors take for the results of the same block.
class Votes {
 public:
  void add(const Words& results, unsigned weight);

  bool areNone() const { return m_parties.empty(); }
  /// The results that most believe in; null where as many believe in others, or nobody in any.
  const Words* winner() const;
  /// Those with this digest; null where nobody believes in them.
  const Words* find(std::uint64_t digest) const;

 private:
  struct Party {
    Words results;
    unsigned votes = 0;
  };
  std::map<std::uint64_t, Party> m_parties;
};

}  // namespace providers
