#pragma once

#include <boost/function.hpp>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"

namespace cmpinsp {

/// Makes the value of a literal whose meaning lies outside it: an alias, a path or an instance, for
/// the type given (reference or instance). Throws `SyntaxError`.
using LiteralResolver =
    boost::function<NZELVOR20::TCIMValue(const Literal&, NZELVOR20::ECIMType type)>;

/// The typed value of `initializer`; numbers and booleans may be written as strings. Throws
/// `SyntaxError` for what does not fit the type. Without `resolve`, references and instances other
/// than NULL are refused.
NZELVOR20::TCIMValue valueOf(const Initializer& initializer, NZELVOR20::ECIMType type, bool isArray,
                             const LiteralResolver& resolve = LiteralResolver());

/// The value of `initializer`, typed by how its first literal is written.
NZELVOR20::TCIMValue guessedValueOf(const Initializer& initializer);

}  // namespace cmpinsp
