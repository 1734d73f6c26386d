#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace providers::memory {

/// A logical processor that this process may run on, by the system's number.
using Processor = unsigned;

/// Those that there are; where a quota allows less computing, only so many. One at least.
std::vector<Processor> usableProcessors();

/// How many processors a control group lets compute at once, by the files of the system whose root
/// folder is `root`; 0 where none limits it.
std::size_t processorQuota(const std::string& root);

/// Has the calling thread run on that processor alone and have its new memory near it, as far as
/// the system allows.
void takePlace(Processor processor);

/// The bytes of all the caches that the processors share; 0 where the system does not tell.
std::size_t sharedCacheBytes();

}  // namespace providers::memory
