#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "engine/events/EventSink.h"
#include "history/Recorder.h"
#include "history/show/Tables.h"
#include "history/show/TrendPicture.h"
#include "history/show/TrendPlot.h"
#include "history/store/Store.h"

namespace {

namespace fs = std::filesystem;

/// Runs of an input that are looked at: more of them show nothing new.
constexpr std::size_t kMostRuns = 4;

class NoSink : public engine::EventSink {
 public:
  void take(const engine::Event&) override {}
};

/// In memory where the system has such a place.
fs::path folder() {
  const fs::path memory = "/dev/shm";
  const fs::path base = fs::is_directory(memory) ? memory : fs::temp_directory_path();
  return base / ("diags-fuzz-history-" + std::to_string(::getpid()));
}

void ask(const history::History& history) {
  std::ostringstream stream;
  const std::vector<history::RunRecord> runs = history.runs({}, kMostRuns);
  history::writeRuns(stream, runs);
  for (const history::RunRecord& run : runs) {
    NoSink sink;
    history.events(run.id, sink);
    const history::Difference difference = history.diff(runs.front().id, run.id);
    history::writeDifference(stream, difference);
    for (const history::TestDifference& test : difference.tests) {
      const std::vector<history::Trend> trends = history.trend(test.name);
      history::writeFigures(stream, trends);
      for (const history::Trend& trend : trends) history::writePlot(stream, trend);
    }
  }
}

/// A run in it, room made for it, and one removed.
void change(history::History& history) {
  {
    history::Recorder recorder(history);
    engine::Event event;
    event.body = engine::RunStarted{};
    recorder.take(event);
    event.body = engine::Ended{};
    recorder.take(event);
  }
  history.remove(history.resolve("last"));
  history.keepWithin(16'384);
}

template <typename Act>
void attempt(Act act) {
  try {
    act();
  } catch (const history::HistoryError& error) {
    if (std::string(error.what()).empty()) std::abort();
  }
}

}  // namespace

/// Whatever the file holds: its runs are told, or it is refused by name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fs::path place = folder();
  fs::remove_all(place);
  fs::create_directories(place);
  std::ofstream(history::fileIn(place), std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  attempt([] {
    history::Options options;
    options.patience = std::chrono::milliseconds(0);
    history::History history = history::History::open(place, options);
    attempt([&] { ask(history); });
    attempt([&] { change(history); });
  });
  fs::remove_all(place);
  return 0;
}
