#pragma once

#include <vector>

#include "substitute/cmpi.nsp/cache/ByteReader.h"
#include "substitute/cmpi.nsp/cache/ByteWriter.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"

namespace cmpinsp {

/// Writes the instances that the files declare, with their places; files without any are left out,
/// and so is everything else that a file says.
void writeInstances(ByteWriter& to, const std::vector<CompilationUnit>& units);

/// The units that `writeInstances` wrote. Throws `CacheDamage`.
std::vector<CompilationUnit> readInstances(ByteReader& from);

}  // namespace cmpinsp
