#include <boost/any.hpp>
#include <windows.h>
