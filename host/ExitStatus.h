#pragma once

namespace host {

/// What `diags` tells its caller when it ends. Scripts rely on the numbers.
enum class ExitStatus : int {
  kPassed = 0,        ///< every test passed, or the command did what it was asked
  kFailed = 1,        ///< at least one test found faulty hardware
  kUsage = 2,         ///< the command line asks for something that does not exist
  kCouldNotRun = 3,   ///< no verdict from at least one test, or the installation is faulty
  kNothingToRun = 4,  ///< no test, class or provider was found, or is left to be run
  kUnusable = 5,      ///< the installation cannot be used at all
  kInterrupted = 130  ///< the user ended the run
};

}  // namespace host
