#pragma once

#include <boost/shared_ptr.hpp>
#include <utility>
#include <vector>

namespace NZELVOR20 {

/// A callback that appends each handle it receives to a list and goes on. The list must outlive
/// the enumeration; `T` is `ICIMClass`, `ICIMProperty` or `ICIMInstance`.
template <typename T>
class TAddToVectorCallback {
 public:
  explicit TAddToVectorCallback(std::vector<boost::shared_ptr<T>>& list) : m_list(&list) {}

  bool operator()(boost::shared_ptr<T> handle) const {
    m_list->push_back(std::move(handle));
    return true;
  }

 private:
  std::vector<boost::shared_ptr<T>>* m_list;
};

}  // namespace NZELVOR20
