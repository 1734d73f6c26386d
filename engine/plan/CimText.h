#pragma once

#include <string>
#include <string_view>

namespace engine {

/// `text` as a value of a CIM type, in the one spelling that all values of the type have: integers
/// with digits alone, `true` and `false`, real numbers as short as they can be read back, a
/// datetime in its 25 signs. Integers may be given in hexadecimal with 0x, a datetime also as ISO
/// 8601
/// ("2026-11-22T02:00:00Z") or as a duration ("1h30m"). Of a type that ends in "[]" the elements
/// stand one behind the other as `text::arrayText` has them. Throws `PlanError` that quotes the
/// text and says what the type takes.
std::string canonicalText(const std::string& type, std::string_view text);

}  // namespace engine
