#pragma once

#include <boost/shared_ptr.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace diagsrunner {

/// Hands `handle` on; throws `std::runtime_error` that names what was missing when it is empty.
template <typename T>
const boost::shared_ptr<T>& required(const boost::shared_ptr<T>& handle, std::string_view what) {
  if (!handle) {
    throw std::runtime_error("diagsrunner: no " + std::string(what));
  }
  return handle;
}

/// The same for a handle that is just being handed over.
template <typename T>
boost::shared_ptr<T> required(boost::shared_ptr<T>&& handle, std::string_view what) {
  required(static_cast<const boost::shared_ptr<T>&>(handle), what);
  return std::move(handle);
}

}  // namespace diagsrunner
