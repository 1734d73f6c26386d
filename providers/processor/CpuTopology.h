#pragma once

#include <set>
#include <string>
#include <vector>

namespace providers {

/// A processor package: what sits in one socket.
struct CpuPackage {
  unsigned number = 0;
  std::string model;             ///< as the processor calls itself; may be empty
  unsigned cores = 0;            ///< of the online threads
  unsigned megahertz = 0;        ///< the highest clock rate, 0 when it is not known
  std::vector<unsigned> online;  ///< the system's numbers of the hardware threads, ascending
  std::vector<unsigned> cpus;    ///< those of them that this process may use
};

/// Asks the system. Packages in the order of their numbers; those without an online thread are left
/// out.
std::vector<CpuPackage> queryCpuPackages();

/// The same from the files of a Linux system whose root folder is `root`, "" for the real one, with
/// the CPUs that the process may use.
std::vector<CpuPackage> readCpuPackages(const std::string& root, const std::set<unsigned>& allowed);

/// The numbers of a list such as "0-3,8".
std::vector<unsigned> parseCpuList(const std::string& text);

/// The list that stands for ascending numbers.
std::string cpuListText(const std::vector<unsigned>& cpus);

}  // namespace providers
