#include <windows.h>

#include <boost/any.hpp>
