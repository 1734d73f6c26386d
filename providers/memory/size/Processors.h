#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace providers::memory {

/// A logical processor that this process may run on, by the system's number.
using Processor = unsigned;

/// Those that there are; where a quota allows less computing, only so many. One at least.
std::vector<Processor> usableProcessors();

/// So many of them, evenly from all of the list: those that follow each other share a node and its
/// memory.
std::vector<Processor> spreadOver(const std::vector<Processor>& list, std::size_t count);

/// How many processors a control group lets compute at once, by the files of the system whose root
/// folder is `root`; 0 where none limits it.
std::size_t processorQuota(const std::string& root);

/// Has the calling thread run on that processor alone and have its new memory near it, as far as
/// the system allows.
void takePlace(Processor processor);

/// The bytes that the processors' caches hold together, each cache counted once: a machine has
/// several of the last level. Where the system does not tell, more than there are likely to be.
std::size_t queryCacheBytes(const std::vector<Processor>& processors);

/// The same from the files of a Linux system whose root folder is `root`, "" for the real one; 0
/// where they do not tell.
std::size_t readCacheBytes(const std::string& root, const std::vector<Processor>& processors);

}  // namespace providers::memory
