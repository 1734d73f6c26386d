#pragma once

#include <windows.h>

namespace cmpinsp {

/// The group of users in general that a file's access list grants one of the rights; null if there
/// is none. An entry that denies the right again does not count: its effect depends on the order of
/// the list. An empty pointer is the list of a file that everybody may do everything with.
const char* othersGranted(PACL list, ACCESS_MASK rights);

}  // namespace cmpinsp
