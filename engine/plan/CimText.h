#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace engine {

/// `text` as a value of a CIM type, in the one spelling that all values of the type have: integers
/// with digits alone, `true` and `false`, real numbers as short as they can be read back, a
/// datetime in its 25 signs. Integers may be given in hexadecimal with 0x, a datetime also as ISO
/// 8601
/// ("2026-11-22T02:00:00Z") or as a duration ("1h30m"). Of a type that ends in "[]" the elements
/// stand one behind the other with a comma between them; `\,` is a comma in an element and `\\` a
/// backslash. Throws `PlanError` that quotes the text and says what the type takes.
std::string canonicalText(const std::string& type, std::string_view text);

/// The elements as the text of an array.
std::string arrayText(const std::vector<std::string>& elements);

/// The elements of such a text; none of an empty one.
std::vector<std::string> arrayElements(std::string_view text);

}  // namespace engine
