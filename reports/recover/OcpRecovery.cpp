#include <stdexcept>

#include "reports/ocp/OcpLine.h"
#include "reports/ocp/OcpReader.h"
#include "reports/recover/StreamEnd.h"
#include "reports/verify/OcpVerifier.h"

namespace reports {
namespace {

constexpr const char* kSymptom = "cut-off";

class OcpEnd : public StreamEnd {
 public:
  /// Only what makes no sense at all is refused: a stream need not keep every rule to be closed.
  void take(std::string_view line) override {
    const nlohmann::json value = readOcpLine(line).value;
    if (!value.is_object()) throw NoJson("the line is no object");
    m_verifier.take(line);
  }

  void close(Recovery& recovery) const override {
    recovery.format = StreamFormat::kOcp;
    const OcpOrder& order = m_verifier.order();
    if (order.hasEnded()) return;
    recovery.open = order.openSteps().size();
    std::uint64_t sequence = m_verifier.nextSequence();
    const std::string& last = m_verifier.timestamp();
    const std::string time = last.empty() ? "1970-01-01T00:00:00Z" : last;
    const auto write = [&](const auto& fill) {
      OcpLine line(sequence++, time);
      fill(line);
      recovery.closing.push_back(line.finish());
    };
    if (!order.hasStarted()) write(start);
    for (const auto& step : order.openSteps()) closeStep(step.first, step.second, write);
    write([](OcpLine& line) { fillError(line.ofRun("error"), kRunCutOff); });
    const bool failed = order.hasFailure();
    write([failed](OcpLine& line) {
      text::JsonText& json = line.ofRun("testRunEnd");
      json.add("status", failed ? "COMPLETE" : "ERROR");
      json.add("result", failed ? "FAIL" : "NOT_APPLICABLE");
    });
  }

 private:
  static void fillError(text::JsonText& json, const char* text) {
    json.add("symptom", kSymptom).add("message", text);
  }

  /// Of a run of which nothing is known.
  static void start(OcpLine& line) {
    text::JsonText& json = line.ofRun("testRunStart");
    json.add("name", "unknown").add("version", "unknown").add("commandLine", "");
    json.object("parameters").endObject();
    json.object("dutInfo").add("dutInfoId", "unknown").endObject();
  }

  template <typename Write>
  static void closeStep(const std::string& step, const OcpOrder::OpenSeries& open,
                        const Write& write) {
    for (const auto& series : open) {
      write([&](OcpLine& line) {
        text::JsonText& json = line.ofStep(step, "measurementSeriesEnd");
        json.add("measurementSeriesId", series.first).add("totalCount", series.second);
      });
    }
    write([&](OcpLine& line) { fillError(line.ofStep(step, "error"), kTestCutOff); });
    write([&](OcpLine& line) { line.ofStep(step, "testStepEnd").add("status", "ERROR"); });
  }

  OcpVerifier m_verifier{[](const Finding&) {}};
};

}  // namespace

std::unique_ptr<StreamEnd> makeOcpEnd() { return std::make_unique<OcpEnd>(); }

}  // namespace reports
