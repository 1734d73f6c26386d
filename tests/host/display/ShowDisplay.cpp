#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

#include "host/display/Display.h"
#include "host/display/Terminal.h"

namespace {

using Clock = host::DisplayStyle::Clock;

/// Carries out what standard input says, a line each: what happens to which test.
class Show {
 public:
  Show() : m_display(std::cout, std::cerr, style()) {}

  void run(const std::string& line) {
    std::istringstream words(line);
    std::string what;
    std::uint64_t test = 0;
    std::string text;
    words >> what >> test >> std::ws;
    std::getline(words, text);
    if (what == "begin") take(test, engine::TestStarted{text, "", "", "", 1, 60});
    if (what == "progress") take(test, engine::Progress{std::stod(text)});
    if (what == "pass") take(test, ended(engine::Outcome::kPassed, "Pass", text));
    if (what == "fail") take(test, ended(engine::Outcome::kFailed, "Fail", text));
    if (what == "error") {
      take(test, engine::Error{engine::Cause::kCrashed, text, 0, "", "", {}});
    }
    if (what == "over") take(0, engine::Ended{});
    if (what == "later") m_now += std::chrono::seconds(test);
    if (what == "tick") m_display.tick();
  }

 private:
  static engine::Ended ended(engine::Outcome outcome, const char* word, const std::string& remark) {
    return {outcome, word, 5, "", remark, ""};
  }

  void take(std::uint64_t test, engine::Body body) {
    m_display.take({0, {}, engine::Source::kEngine, test, std::move(body)});
  }

  host::DisplayStyle style() {
    host::DisplayStyle style;
    style.now = [this] { return m_now; };
    host::adapt(style, host::surroundings());
    return style;
  }

  Clock::time_point m_now;
  host::Display m_display;
};

}  // namespace

/// Shows a run that is told line by line on standard input, and says after each line, on the file
/// descriptor that is its argument, that it has been shown.
int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: show_display DESCRIPTOR\n";
    return 2;
  }
  const int descriptor = std::atoi(argv[1]);
  Show show;
  for (std::string line; std::getline(std::cin, line);) {
    show.run(line);
    if (write(descriptor, ".", 1) != 1) return 1;
  }
  return 0;
}
