#include "engine/worker/tasks/ProgressFilter.h"

#include <optional>
#include <string_view>

#include "engine/worker/wire/Wire.h"

namespace engine::tasks {
namespace {

bool takeOff(std::string_view& text, std::string_view start) {
  if (text.substr(0, start.size()) != start) return false;
  text.remove_prefix(start.size());
  return true;
}

/// The runner writes its progress in one piece: "\nPercent Complete : 59%\n", and that of a
/// threaded run as "59%", to wipe it again with the cursor moved back.
std::optional<unsigned> percentIn(std::string_view text) {
  const bool isProgress =
      takeOff(text, "\nPercent Complete : ") || takeOff(text, "\nPercent Complete: ");
  const char* const rest = isProgress ? "%\n" : "%";
  unsigned percent = 0;
  std::size_t digits = 0;
  for (; digits < text.size() && text[digits] >= '0' && text[digits] <= '9'; ++digits) {
    if (digits == 5) return std::nullopt;
    percent = percent * 10 + static_cast<unsigned>(text[digits] - '0');
  }
  const bool isWhole = digits > 0 && text.substr(digits) == rest;
  return isWhole ? std::optional<unsigned>(percent) : std::nullopt;
}

/// Moves of the cursor, and blanks over what stood there.
bool isWiping(std::string_view text) {
  const bool isMove = text.find_first_not_of('\b') == std::string_view::npos;
  return !text.empty() && (isMove || text == "    ");
}

}  // namespace

ProgressFilter::ProgressFilter(std::ostream& stream)
    : m_stream(stream), m_former(stream.rdbuf(this)) {}

ProgressFilter::~ProgressFilter() { m_stream.rdbuf(m_former); }

ProgressFilter::int_type ProgressFilter::overflow(int_type one) {
  if (traits_type::eq_int_type(one, traits_type::eof())) return traits_type::not_eof(one);
  return m_former->sputc(traits_type::to_char_type(one));
}

std::streamsize ProgressFilter::xsputn(const char* text, std::streamsize size) {
  const std::string_view written(text, static_cast<std::size_t>(size));
  if (isWiping(written)) return size;
  const auto percent = percentIn(written);
  if (!percent) return m_former->sputn(text, size);
  wire::send(Happened{Source::kWorker, Progress{static_cast<double>(*percent)}});
  return size;
}

}  // namespace engine::tasks
