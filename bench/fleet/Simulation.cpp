#include "bench/fleet/Simulation.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <random>
#include <stdexcept>

#include "engine/events/Timestamp.h"
#include "reports/ocp/OcpLine.h"

namespace bench {
namespace {

using reports::OcpLine;
using text::JsonText;

constexpr std::uint32_t kParts =
    8;  ///< of a machine that are tested: four modules, and one of each

struct SimulatedPart {
  const char* kind;
  const char* name;
  const char* place;
  const char* model;
  std::string serial;
};

struct SimulatedMachine {
  std::string name;
  std::string serial;
  const char* model;
  const char* firmware;
  std::vector<SimulatedPart> parts;
  std::vector<bool> fails;       ///< by part
  std::uint32_t slow = kParts;   ///< a part, or none
  std::uint32_t cutAfter = ~0U;  ///< so many tests
};

std::string numbered(const char* format, std::uint32_t number) {
  char text[64];
  std::snprintf(text, sizeof(text), format, number);
  return text;
}

/// Of eight deliveries, the first is the bad one; each machine's modules come from one.
std::string moduleSerial(std::uint32_t machine, std::uint32_t slot) {
  return numbered("L%02u", machine % 8 + 1) + numbered("%06X", machine * 4 + slot);
}

SimulatedMachine machineOf(std::uint32_t number) {
  constexpr const char* kModels[] = {"RX-100", "RX-200", "RX-300"};
  constexpr const char* kFirmware[] = {"1.4.2", "1.4.7"};
  constexpr const char* kSlots[] = {"A1", "A2", "B1", "B2"};
  SimulatedMachine machine;
  machine.name = numbered("node-%05u", number);
  machine.serial = numbered("SN%07u", number);
  machine.model = kModels[number % 3];
  machine.firmware = kFirmware[number / 3 % 2];
  for (std::uint32_t slot = 0; slot < 4; ++slot) {
    machine.parts.push_back(
        {"memory", "Module", kSlots[slot], "M16-3200", moduleSerial(number, slot)});
  }
  machine.parts.push_back({"disk", "Disk", "bay 0", "D4T", numbered("DK%06u", number)});
  machine.parts.push_back({"processor", "Processor", "socket 0", "P64", ""});
  machine.parts.push_back({"port", "Port", "eth0", "N25", numbered("NP%06u", number)});
  machine.parts.push_back({"board", "Board", "slot 1", "B1", numbered("BD%06u", number)});
  machine.fails.resize(kParts);
  return machine;
}

class MachineWriter {
 public:
  MachineWriter(const FleetShape& shape, const SimulatedMachine& machine, std::mt19937_64& random,
                FleetTruth& truth)
      : m_shape(shape), m_machine(machine), m_random(random), m_truth(truth) {}

  std::string write() {
    m_text = OcpLine::schemaVersion(stamp()) + "\n";
    begin();
    for (std::uint32_t test = 0; test < m_shape.tests; ++test) {
      if (test == m_machine.cutAfter) {
        m_text.resize(m_text.size() - 40);
        return std::move(m_text);
      }
      writeTest(test);
    }
    const bool fails =
        std::any_of(m_machine.fails.begin(), m_machine.fails.end(), [](bool one) { return one; });
    run("testRunEnd", [&](JsonText& json) {
      json.add("status", "COMPLETE").add("result", fails ? "FAIL" : "PASS");
    });
    return std::move(m_text);
  }

 private:
  std::string stamp() const {
    constexpr std::int64_t kBegin = 1'790'000'000'000'000;
    return engine::timestampOf(engine::Time(
        std::chrono::microseconds(kBegin + static_cast<std::int64_t>(m_sequence) * 1000)));
  }

  template <typename Fill>
  void run(const char* artifact, const Fill& fill) {
    OcpLine line(++m_sequence, stamp());
    fill(line.ofRun(artifact));
    m_text += line.finish() + "\n";
  }
  template <typename Fill>
  void step(const std::string& id, const char* artifact, const Fill& fill) {
    OcpLine line(++m_sequence, stamp());
    fill(line.ofStep(id, artifact));
    m_text += line.finish() + "\n";
  }

  void begin() {
    run("testRunStart", [&](JsonText& json) {
      json.add("name", "simulator").add("version", "1").add("commandLine", "simulator");
      json.object("parameters").endObject();
      json.object("dutInfo").add("dutInfoId", "dut").add("name", m_machine.name);
      json.list("softwareInfos").object().add("softwareInfoId", "firmware");
      json.add("name", "firmware").add("version", m_machine.firmware);
      json.add("softwareType", "FIRMWARE").endObject().endList().list("hardwareInfos");
      json.object().add("hardwareInfoId", "system").add("name", "System");
      json.add("partType", "system").add("manufacturerPartNumber", m_machine.model);
      json.add("serialNumber", m_machine.serial).endObject();
      for (std::uint32_t i = 0; i < kParts; ++i) addPart(json, i);
      json.endList().endObject();
    });
  }

  void addPart(JsonText& json, std::uint32_t number) const {
    const SimulatedPart& part = m_machine.parts[number];
    json.object().add("hardwareInfoId", numbered("part-%u", number)).add("name", part.name);
    json.add("partType", part.kind).add("location", part.place);
    json.add("manufacturerPartNumber", part.model).addIfAny("serialNumber", part.serial);
    json.endObject();
  }

  /// The n-th test is of the n-th part, and again from the first.
  void writeTest(std::uint32_t test) {
    const std::uint32_t part = test % kParts;
    const std::string id = std::to_string(test + 1);
    const std::string name = m_machine.parts[part].name + numbered(" test %02u", test);
    const bool fails = m_machine.fails[part] && test < kParts;
    const bool isSlow = part == m_machine.slow;
    if (isSlow && !fails) m_truth.slow.push_back({m_machine.name, name});
    step(id, "testStepStart", [&](JsonText& json) { json.add("name", name); });
    for (std::uint32_t i = 0; i < m_shape.measurements; ++i) measure(id, part, i, isSlow);
    step(id, "diagnosis", [&](JsonText& json) {
      json.add("verdict", fails ? "test-fail" : "test-pass").add("type", fails ? "FAIL" : "PASS");
      json.add("message", fails ? "3 errors" : "0 errors");
      json.add("hardwareInfoId", numbered("part-%u", part));
    });
    step(id, "testStepEnd", [](JsonText& json) { json.add("status", "COMPLETE"); });
  }

  /// Two of three are speeds, the others times.
  void measure(const std::string& id, std::uint32_t part, std::uint32_t number, bool isSlow) {
    const bool isTime = number % 3 == 2;
    const double speed = isSlow ? m_shape.slowSpeed : 1;
    const double typical = 10.0 * (1 + number + part);
    const double value =
        typical * (1 + m_shape.noise * m_normal(m_random)) * (isTime ? 1 / speed : speed);
    step(id, "measurement", [&](JsonText& json) {
      json.add("name", numbered(isTime ? "latency %u" : "bandwidth %u", number));
      json.add("value", value).add("unit", isTime ? "us" : "GiB/s");
      json.list("validators").object().add("name", "minimum");
      json.add("type", "GREATER_THAN_OR_EQUAL").add("value", 1.0).endObject().endList();
      json.add("hardwareInfoId", numbered("part-%u", part));
    });
    ++m_truth.measurements;
  }

  const FleetShape& m_shape;
  const SimulatedMachine& m_machine;
  std::mt19937_64& m_random;
  FleetTruth& m_truth;
  std::normal_distribution<double> m_normal;
  std::uint64_t m_sequence = 0;
  std::string m_text;
};

/// Decides what is wrong with a machine, and writes it down.
void spoil(SimulatedMachine& machine, std::uint32_t number, const FleetShape& shape,
           std::mt19937_64& random, FleetTruth& truth) {
  std::uniform_real_distribution<double> chance(0, 1);
  const auto anyPart = [&] { return static_cast<std::uint32_t>(random() % kParts); };
  if (chance(random) < shape.failingShare) machine.fails[anyPart()] = true;
  for (std::uint32_t slot = 0; number % 8 == 0 && slot < 4; ++slot) {
    if (chance(random) < shape.batchShare) machine.fails[slot] = true;
  }
  if (chance(random) < shape.slowShare) machine.slow = anyPart();
  if (chance(random) < shape.cutShare) {
    machine.cutAfter = 1 + static_cast<std::uint32_t>(random() % std::max(1U, shape.tests - 1));
    truth.cut.push_back(machine.name);
  }
  for (std::uint32_t part = 0; part < kParts; ++part) {
    const bool isReached = part < std::min(machine.cutAfter, shape.tests);
    if (!machine.fails[part] || !isReached) continue;
    truth.failing.push_back(machine.name);
    break;
  }
}

}  // namespace

FleetTruth simulateFleet(const FleetShape& shape, const std::filesystem::path& folder) {
  constexpr std::uint32_t kInAFolder = 100;
  FleetTruth truth;
  truth.badBatch = "L01";
  std::mt19937_64 random(shape.seed);
  for (std::uint32_t number = 0; number < shape.machines; ++number) {
    SimulatedMachine machine = machineOf(number);
    spoil(machine, number, shape, random, truth);
    const std::filesystem::path place = folder / numbered("%03u", number / kInAFolder);
    if (number % kInAFolder == 0) std::filesystem::create_directories(place);
    const std::string text = MachineWriter(shape, machine, random, truth).write();
    std::ofstream out(place / (machine.name + ".jsonl"), std::ios::binary);
    if (!out.write(text.data(), static_cast<std::streamsize>(text.size())).flush()) {
      throw std::runtime_error("a stream of " + machine.name + " cannot be written");
    }
    truth.bytes += text.size();
  }
  return truth;
}

}  // namespace bench
