#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "framework/Export.h"
#include "framework/ICIMNamespace.h"
#include "framework/ILogger.h"
#include "substitute/cmpi.nsp/CallWatch.h"
#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/ProviderInfo.h"

/// The one header of the substitute framework that a host includes: it brings the framework up on
/// an installation directory and hands out the namespaces to work in.
namespace substitute {

/// Where the installation is and how the framework behaves.
struct Installation {
  std::string root;     ///< the installation directory, UTF-8
  std::string logFile;  ///< the core log; empty: no log
  int logLevel = 3;     ///< lines above this level are not written to the file
  /// Gets the core log too, beside the file: the lines of every level, from any thread. Kept until
  /// another installation is brought up, since the runner may log after the framework is gone.
  boost::shared_ptr<NZELVOR20::ILogger> logger;
  std::string biosId;  ///< instead of the firmware's identifier, when `overrideBiosId`
  bool overrideBiosId = false;
  std::size_t answerLimit = 0;  ///< answers of one provider to one call; 0: 10 million
  bool oemBuild = false;        ///< what `TOSSpecific::isOEMBuild` answers
  bool schemaCache = true;      ///< take the compiled schema from a cache where it is up to date
  std::string cacheFolder;      ///< where that is kept; empty: the user's folder for caches
  /// Registered names of providers that are neither loaded nor asked, as if they served nothing.
  std::vector<std::string> withoutProviders;
  /// Is told of each call into a provider; may be null. It outlives the framework, and the threads
  /// that providers keep.
  ICallWatch* callWatch = nullptr;
};

/// The framework, brought up on one installation. One a process; make it before the runner and
/// release it after the runner. The namespaces stay valid as long as it lives.
class CMPI_NSP_API Framework {
 public:
  /// Reads the schema and the registration files. Faults in them are collected, not thrown; throws
  /// `TVORException` when `root` is no directory.
  explicit Framework(const Installation& installation);
  Framework(const Framework&) = delete;
  Framework& operator=(const Framework&) = delete;
  /// Cleans every loaded provider up.
  ~Framework();

  /// The object manager's namespace: what to build the runner on.
  boost::shared_ptr<NZELVOR20::ICIMNamespace> objectManager() const;

  /// A new, empty in-memory namespace, to which the runner copies the records of its runs.
  boost::shared_ptr<NZELVOR20::ICIMNamespace> makeReportNamespace() const;

  /// The faults found in schema and registration files.
  const std::vector<Problem>& problems() const;

  /// What is worth knowing of those files, and no fault: classes below one that nobody declares,
  /// instances that are passed over.
  const std::vector<Problem>& notes() const;

  /// Every registered provider. With `load`, each library is loaded, so that its editions are known
  /// and the state tells whether it can be used; without, that is known of those that were asked
  /// for something by now, and of the others whether their library is there and may be loaded.
  std::vector<ProviderInfo> providers(bool load) const;

  /// Why classes looked empty that none of their providers enumerates, in words: those that came
  /// since the last call, each once. The core log has them too.
  std::vector<std::string> takeRefusals() const;

  /// Checks the runner's three data files: well-formed, known elements and attributes. A file that
  /// is missing is no fault.
  std::vector<Problem> checkDataFiles() const;

  /// What others than root and the user who runs this could change of the schema, registration and
  /// data files, of their folders and of what is above. Libraries are examined by themselves.
  std::vector<Problem> checkRights() const;

  /// What root, or an administrator on Windows, is to know before an answer is relied on: that the
  /// installation is another user's, or that others could change it; a line each. Empty for others.
  std::vector<std::string> warningsForRoot() const;

 private:
  class Impl;
  std::unique_ptr<Impl> m_impl;
};

}  // namespace substitute
