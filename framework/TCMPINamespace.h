#pragma once

#include <boost/shared_ptr.hpp>

#include "framework/Export.h"
#include "framework/ICIMNamespace.h"
#include "framework/INamespaceConsumer.h"

namespace NZELVOR20 {

/// A namespace that is served by CMPI providers.
class NZELVOR20_INTERFACE TCMPINamespace : public ICIMNamespace, public INamespaceConsumer {
 public:
  using ICIMNamespace::operator=;

  /// The namespace through which a provider reaches the rest of the object manager; empty where
  /// none was set, or where it is gone.
  virtual boost::shared_ptr<ICIMNamespace> GetUpcallNamespace() = 0;

 protected:
  TCMPINamespace() = default;
  TCMPINamespace(const TCMPINamespace&) = default;
};

}  // namespace NZELVOR20
