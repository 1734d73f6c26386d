#pragma once

#include <iosfwd>

#include "fleet/Answer.h"
#include "fleet/page/PageLimits.h"

namespace fleet {

/// Writes the answer as one page of HTML that needs nothing but itself and loads nothing: the
/// verdict, what the failures have in common, slow parts and silent machines as text; all machines
/// and tests as data of which a script draws what is looked at. Whatever the answer holds is text
/// there, never markup. Written piece by piece: the page as a whole is never in memory. The stream
/// tells whether it could be written.
void writePage(const Answer& answer, std::ostream& out, const PageLimits& limits = {});

}  // namespace fleet
