#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "fleet/gather/Member.h"

namespace fleet {

/// Everything that the streams say, before anything is concluded from it.
struct Gathered {
  std::vector<Member> members;  ///< by name, then serial number
  std::vector<Complaint> complaints;
  std::uint64_t moreComplaints = 0;
  std::uint64_t streams = 0;
  std::uint64_t leftOut = 0;
  std::uint64_t measurements = 0;
};

/// Reads the files and folders, in so many threads. A stream at a time a thread; nothing is kept of
/// one but what it adds to its machine.
Gathered gather(const std::vector<std::string>& names, Tables& tables, engine::Time now,
                unsigned threads);

}  // namespace fleet
