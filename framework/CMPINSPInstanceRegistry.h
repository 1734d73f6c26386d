#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <memory>

#include "framework/Export.h"

namespace NZELVOR20 {

class ICIMInstance;

/// Knows the instances that CMPI providers have handed out, until a run is over. It holds them
/// weakly: a host that reads a million instances one by one needs the memory of one. Safe to use
/// from several threads.
class CMPI_NSP_API CMPINSPInstanceRegistry {
 public:
  /// The registry of this process; never null, and alive until the process ends.
  static CMPINSPInstanceRegistry* GetRegistrySingleton();

  /// Drops the registry's own handles. An instance that somebody else holds lives on.
  void ClearInstances();

  /// Adds a handle, weakly.
  void AddInstance(boost::shared_ptr<ICIMInstance> instance);

  /// How many of the instances that it knows are alive.
  std::size_t GetInstanceCount() const;

  CMPINSPInstanceRegistry(const CMPINSPInstanceRegistry&) = delete;
  CMPINSPInstanceRegistry& operator=(const CMPINSPInstanceRegistry&) = delete;

 private:
  CMPINSPInstanceRegistry();
  ~CMPINSPInstanceRegistry();

  struct Impl;
  std::unique_ptr<Impl> m_impl;
};

}  // namespace NZELVOR20
