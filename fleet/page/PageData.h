#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "fleet/Answer.h"
#include "fleet/page/PageLimits.h"

namespace fleet::page {

/// What the page's script draws, as JSON that may stand between the tags of a script: a row for
/// each machine (name, place in `kinds`, tests, the letter of each's verdict, how many slow parts,
/// facts, notes). Its tests are a list of places in `tests`, or, where an earlier machine has had
/// the same, which one of these lists.
void writeData(std::ostream& out, const Answer& answer, const PageLimits& limits);

/// JSON in which nothing ends or opens a script. In JSON, `<` stands in texts alone.
std::string insideScript(std::string_view json);

}  // namespace fleet::page
