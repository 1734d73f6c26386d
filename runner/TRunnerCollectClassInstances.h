#pragma once

#include <boost/shared_ptr.hpp>

#include "framework/ICIMInstance.h"

/// Writes each instance that it receives to standard output: a heading with its path, and its
/// properties.
class TRunnerCollectClassInstances {
 public:
  /// True: go on.
  bool operator()(boost::shared_ptr<NZELVOR20::ICIMInstance> instance) const;
};
