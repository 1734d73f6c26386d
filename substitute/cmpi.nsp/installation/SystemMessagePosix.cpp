#include "substitute/cmpi.nsp/installation/SystemMessage.h"

namespace cmpinsp {

std::string systemMessage(const std::error_code& error, unsigned short) { return error.message(); }

}  // namespace cmpinsp
