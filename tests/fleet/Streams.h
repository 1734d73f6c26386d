#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace fleet_test {

/// Writes the lines of a stream, as any program could.
class Stream {
 public:
  Stream() { top("\"schemaVersion\":{\"major\":2,\"minor\":0}"); }
  explicit Stream(std::string began) : m_time(std::move(began)) {
    top("\"schemaVersion\":{\"major\":2,\"minor\":0}");
  }

  /// The run's start on a machine; `parts` is the inside of its list of hardware.
  Stream& machine(const std::string& name, const std::string& serial = "",
                  const std::string& parts = "") {
    std::string hardware = parts;
    if (!serial.empty()) {
      hardware += std::string(parts.empty() ? "" : ",") +
                  "{\"hardwareInfoId\":\"box\",\"name\":\"Box\",\"partType\":\"system\","
                  "\"manufacturerPartNumber\":\"M1\",\"serialNumber\":\"" +
                  serial + "\"}";
    }
    return run(
        "\"testRunStart\":{\"name\":\"x\",\"version\":\"1\",\"commandLine\":\"x\","
        "\"parameters\":{},\"dutInfo\":{\"dutInfoId\":\"d\",\"name\":\"" +
        name + "\",\"hardwareInfos\":[" + hardware + "]}}");
  }
  Stream& begin(const std::string& id, const std::string& name) {
    return step(id, "\"testStepStart\":{\"name\":\"" + name + "\"}");
  }
  Stream& end(const std::string& id, const std::string& status = "COMPLETE") {
    return step(id, "\"testStepEnd\":{\"status\":\"" + status + "\"}");
  }
  Stream& diagnosis(const std::string& id, const std::string& type, const std::string& more = "") {
    return step(id, "\"diagnosis\":{\"verdict\":\"v\",\"type\":\"" + type + "\"" + more + "}");
  }
  Stream& measurement(const std::string& id, const std::string& name, double value,
                      const std::string& more = ",\"unit\":\"GiB/s\"") {
    return step(id, "\"measurement\":{\"name\":\"" + name +
                        "\",\"value\":" + std::to_string(value) + more + "}");
  }
  /// A test from its beginning to its end.
  Stream& test(const std::string& name, const std::string& type = "PASS") {
    const std::string id = std::to_string(++m_tests);
    return begin(id, name).diagnosis(id, type).end(id);
  }
  Stream& finish(const std::string& result = "PASS") {
    return run("\"testRunEnd\":{\"status\":\"COMPLETE\",\"result\":\"" + result + "\"}");
  }
  Stream& step(const std::string& id, const std::string& artifact) {
    return top("\"testStepArtifact\":{\"testStepId\":\"" + id + "\"," + artifact + "}");
  }
  Stream& run(const std::string& artifact) { return top("\"testRunArtifact\":{" + artifact + "}"); }
  Stream& top(const std::string& member) {
    return raw("{\"sequenceNumber\":" + std::to_string(m_sequence++) + ",\"timestamp\":\"" +
               m_time + "\"," + member + "}\n");
  }
  Stream& raw(const std::string& bytes) {
    m_text += bytes;
    return *this;
  }
  const std::string& text() const { return m_text; }

 private:
  std::string m_time = "2026-11-20T10:00:00Z";
  std::string m_text;
  int m_sequence = 0;
  int m_tests = 0;
};

/// A folder of its own, gone with it.
class Folder {
 public:
  explicit Folder(const std::string& name)
      : m_path(std::filesystem::temp_directory_path() / std::filesystem::u8path("fleet-" + name)) {
    std::filesystem::remove_all(m_path);
    std::filesystem::create_directories(m_path);
  }
  ~Folder() {
    std::error_code failure;
    std::filesystem::remove_all(m_path, failure);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string write(const std::string& name, const std::string& text) const {
    const std::filesystem::path file = m_path / std::filesystem::u8path(name);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return file.u8string();
  }
  const std::filesystem::path& path() const { return m_path; }
  std::string name() const { return m_path.u8string(); }

 private:
  std::filesystem::path m_path;
};

}  // namespace fleet_test
