#include <expat.h>

#include <boost/any.hpp>
