#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace providers {

/// A processor package: what sits in one socket.
struct CpuPackage {
  unsigned number = 0;
  std::string model;              ///< as the processor calls itself; may be empty
  unsigned cores = 0;             ///< of the online threads
  unsigned megahertz = 0;         ///< the highest clock rate, 0 when it is not known
  std::vector<unsigned> online;   ///< the system's numbers of the hardware threads, ascending
  std::vector<unsigned> coreIds;  ///< the core of each of them
  std::vector<unsigned> cpus;     ///< those of them that this process may use
};

/// Where a hardware thread sits.
struct CpuPlace {
  unsigned cpu = 0;
  unsigned core = 0;  ///< a number within the package
  unsigned package = 0;
};

/// The threads that this process may use.
std::vector<CpuPlace> usablePlaces(const std::vector<CpuPackage>& packages);

/// A cache for data.
struct CpuCache {
  unsigned level = 0;
  std::uint64_t bytes = 0;
  unsigned threads = 1;  ///< that share it
};

/// Asks the system. Packages in the order of their numbers; those without an online thread are left
/// out.
std::vector<CpuPackage> queryCpuPackages();

/// The same from the files of a Linux system whose root folder is `root`, "" for the real one, with
/// the CPUs that the process may use.
std::vector<CpuPackage> readCpuPackages(const std::string& root, const std::set<unsigned>& allowed);

/// The caches that a thread reaches, from the nearest on; none where the system does not tell.
std::vector<CpuCache> queryCpuCaches(unsigned cpu);
std::vector<CpuCache> readCpuCaches(const std::string& root, unsigned cpu);

/// The numbers of a list such as "0-3,8".
std::vector<unsigned> parseCpuList(const std::string& text);

/// The list that stands for ascending numbers.
std::string cpuListText(const std::vector<unsigned>& cpus);

}  // namespace providers
