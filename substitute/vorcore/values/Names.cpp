#include <algorithm>

#include "substitute/vorcore/values/ClassDeclaration.h"

namespace vorcore {
namespace {

char lower(char letter) noexcept {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

bool equalNames(const std::string& left, const std::string& right) noexcept {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(), [](char one, char other) {
           return one == other || lower(one) == lower(other);
         });
}

bool lessName(const std::string& left, const std::string& right) noexcept {
  return std::lexicographical_compare(
      left.begin(), left.end(), right.begin(), right.end(), [](char one, char other) {
        return static_cast<unsigned char>(lower(one)) < static_cast<unsigned char>(lower(other));
      });
}

std::string nameKey(const std::string& name) {
  std::string key = name;
  std::transform(key.begin(), key.end(), key.begin(), lower);
  return key;
}

}  // namespace vorcore
