#pragma once

#include <boost/shared_ptr.hpp>
#include <stdexcept>
#include <string>

namespace diagsrunner {

/// Hands `handle` on; throws `std::runtime_error` that names what was missing when it is empty.
template <typename T>
const boost::shared_ptr<T>& required(const boost::shared_ptr<T>& handle, const std::string& what) {
  if (!handle) {
    throw std::runtime_error("diagsrunner: no " + what);
  }
  return handle;
}

}  // namespace diagsrunner
