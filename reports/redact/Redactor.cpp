#include "reports/redact/Redactor.h"

#include <vector>

namespace reports {
namespace {

using Kind = Secrets::Kind;

/// Takes the secrets out of the members of an event.
class Redact {
 public:
  explicit Redact(Secrets& secrets) : m_secrets(secrets) {}

  void operator()(engine::RunStarted& run) const {
    texts(run.version, run.firmware);
    list(run.commandLine);
    for (auto& [name, value] : run.parameters) texts(name, value);
    for (engine::Part& part : run.parts) {
      texts(part.kind, part.name, part.location, part.manufacturer, part.model, part.version);
    }
  }
  void operator()(engine::TestStarted& test) const {
    texts(test.name, test.service, test.device, test.element);
  }
  void operator()(engine::StepStarted& step) const { texts(step.name); }
  void operator()(engine::Progress&) const {}
  void operator()(engine::OutputLine& line) const { texts(line.text); }
  void operator()(engine::LogLine& line) const { texts(line.text); }
  void operator()(engine::Message& message) const {
    texts(message.text);
    list(message.actions);
  }
  void operator()(engine::Measurement& measurement) const {
    texts(measurement.name, measurement.unit, measurement.part);
    if (auto* const text = std::get_if<std::string>(&measurement.value)) texts(*text);
  }
  void operator()(engine::Diagnosis& diagnosis) const {
    texts(diagnosis.text, diagnosis.part);
    list(diagnosis.actions);
  }
  void operator()(engine::Error& error) const {
    texts(error.text, error.provider, error.operation);
    list(error.libraries);
  }
  void operator()(engine::Ended& end) const { texts(end.text, end.brief, end.remark, end.record); }

 private:
  template <typename... Texts>
  void texts(Texts&... members) const {
    ((members = m_secrets.redact(members)), ...);
  }
  void list(std::vector<std::string>& members) const {
    for (std::string& member : members) texts(member);
  }

  Secrets& m_secrets;
};

}  // namespace

/// All of them first: a part may be named for another one's number.
void learnMachine(Secrets& secrets, engine::RunStarted& run) {
  if (!run.host.empty()) {
    const std::string name = run.host.substr(0, run.host.find('.'));
    run.host = secrets.replace(Kind::kHost, run.host);
    if (!name.empty()) secrets.replace(Kind::kHost, name);
  }
  for (engine::Part& part : run.parts) {
    if (!part.serial.empty()) part.serial = secrets.replace(Kind::kSerial, part.serial);
  }
}

void Redactor::take(const engine::Event& event) {
  engine::Event copy = event;
  if (auto* const run = std::get_if<engine::RunStarted>(&copy.body)) learnMachine(m_secrets, *run);
  if (auto* const line = std::get_if<engine::OutputLine>(&copy.body)) {
    line->text = withoutLastWord(event, *line);
  }
  if (std::holds_alternative<engine::Ended>(copy.body)) passHeldBack(event);
  pass(std::move(copy));
}

void Redactor::pass(engine::Event event) {
  std::visit(Redact(m_secrets), event.body);
  event.sequence = m_sequence++;
  m_next.take(event);
}

/// Behind what was held back of the line's part before.
std::string Redactor::withoutLastWord(const engine::Event& event, const engine::OutputLine& line) {
  constexpr std::size_t kLongestWord = 4096;
  const Place place{event.test, line.stream};
  std::string text = m_heldBack[place] + line.text;
  m_heldBack.erase(place);
  if (!line.isPart) return text;
  const std::size_t blank = text.find_last_of(" \t");
  const std::size_t cut = blank == std::string::npos ? 0 : blank + 1;
  if (text.size() - cut > kLongestWord) return text;
  m_heldBack[place] = text.substr(cut);
  text.resize(cut);
  return text;
}

void Redactor::passHeldBack(const engine::Event& event) {
  for (const engine::Stream stream : {engine::Stream::kOutput, engine::Stream::kError}) {
    const auto held = m_heldBack.find({event.test, stream});
    if (held == m_heldBack.end()) continue;
    engine::Event rest = event;
    rest.source = engine::Source::kProvider;
    rest.body = engine::OutputLine{stream, held->second, false};
    m_heldBack.erase(held);
    pass(std::move(rest));
  }
}

}  // namespace reports
