#pragma once

#include <boost/shared_ptr.hpp>

#include "framework/Export.h"

namespace NZELVOR20 {

class ICIMInstance;

/// Receives the instances that a subscription asked for.
class NZELVOR20_INTERFACE INamespaceConsumer {
 public:
  virtual ~INamespaceConsumer() = default;

  /// Called once per event, on the thread that raised it.
  virtual void Consume(boost::shared_ptr<ICIMInstance> event) = 0;
};

}  // namespace NZELVOR20
