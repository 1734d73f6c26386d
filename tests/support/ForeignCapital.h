#pragma once

#include <locale>

namespace support {

/// Makes, for a while, a locale the global one in which the small letter of one capital is none of
/// ASCII, as that of "I" is in Turkish.
class ForeignCapital {
 public:
  explicit ForeignCapital(char capital)
      : m_former(std::locale::global(std::locale(std::locale(), new Letters(capital)))) {}
  ForeignCapital(const ForeignCapital&) = delete;
  ForeignCapital& operator=(const ForeignCapital&) = delete;
  ~ForeignCapital() { std::locale::global(m_former); }

 private:
  class Letters : public std::ctype<char> {
   public:
    explicit Letters(char capital) : m_capital(capital) {}

   protected:
    char do_tolower(char c) const override {
      return c == m_capital ? '\xFD' : std::ctype<char>::do_tolower(c);
    }
    const char* do_tolower(char* first, const char* last) const override {
      for (; first != last; ++first) {
        *first = do_tolower(*first);
      }
      return last;
    }

   private:
    const char m_capital;
  };

  const std::locale m_former;
};

}  // namespace support
