#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "providers/common/values/Measured.h"
#include "providers/common/values/Value.h"

namespace providers {

/// The values of CIM_DiagnosticCompletionRecord.CompletionState.
enum class CompletionState : std::uint16_t {
  Ok = 2,
  Warning = 3,
  Incomplete = 4,
  Failed = 5,
  Aborted = 6,
  Stopped = 7
};

/// The values of CIM_DiagnosticRecord.RecordType that are in use.
enum class RecordType : std::uint16_t {
  Results = 2,
  Warnings = 5,
  DeviceErrors = 7,
  ServiceErrors = 8
};

/// How often an error was found; the code is free text.
struct ErrorTally {
  std::string code;
  std::uint32_t count = 0;
};

/// The part that is to be replaced or looked at: what somebody needs to find it. What is not known
/// stays empty.
struct FaultyPart {
  std::string name;          ///< "DIMM 3"; empty for the device itself
  std::string location;      ///< as it is printed on the board or the case: "CPU0 channel B slot 1"
  std::string serialNumber;  ///< of the part itself
};

/// A record beside the completion record.
struct Note {
  RecordType type = RecordType::DeviceErrors;
  std::string text;
  std::vector<ErrorTally> errors;
  /// What to do about it, a step a line, the first one first: "Replace DIMM 3.\n".
  std::string correctiveAction = {};
  FaultyPart part = {};
};

/// What a run found. `text` has lines ended by '\n', without other control characters.
struct Outcome {
  CompletionState state = CompletionState::Ok;
  std::string text;
  /// The text in one line of at most 64 characters, for display beside the verdict; may be empty.
  std::string summary;
  std::vector<ErrorTally> errors;
  std::string correctiveAction;  ///< as of a note
  FaultyPart part;
  std::vector<Note> notes;
  std::vector<Measured> measured;
  std::uint32_t loopsPassed = 0;
  std::uint32_t loopsFailed = 0;
};

/// What repeats a run; the first limit that is reached ends it. Without any, a run is made once.
struct LoopControl {
  bool continuous = false;
  std::uint32_t count = 0;    ///< 0: no such limit
  std::uint32_t seconds = 0;  ///< 0: no such limit
  bool limitErrors = false;
  std::uint32_t errors = 0;  ///< with `limitErrors`, goes on until there are more
};

/// The settings of a run, copied when the run is asked for.
struct RunSettings {
  bool haltOnError = false;
  bool quick = false;
  unsigned coveragePercent = 100;  ///< 1 to 100
  LoopControl loop;
  Properties properties;  ///< all that were given, for those that one diagnostic alone knows
};

/// What a diagnostic that is running can tell, and has to ask from time to time. Safe to call from
/// any thread of the run.
class RunControl {
 public:
  virtual ~RunControl() = default;
  /// How far this run has come, from 0 to 1.
  virtual void progress(double fraction) = 0;
  /// What is going on, for display.
  virtual void status(const std::string& text) = 0;
  /// True once the run is to end soon, in good order.
  virtual bool stopRequested() const = 0;
};

/// An element that a diagnostic can be run on.
struct Device {
  std::string id;    ///< at most 64 characters, none of them ',' or '|'
  std::string name;  ///< shown to the user; neither empty nor with ',' or '|'
  Properties properties;
};

/// What else of the family has to wait while a diagnostic runs, and what it waits for itself. A
/// second run of the same diagnostic on the same device waits in any case.
enum class Exclusive : std::uint8_t {
  Itself,  ///< nothing else
  Device,  ///< every diagnostic of the family on the same device
  Family   ///< every diagnostic of the family
};

/// What there is to know about a diagnostic before it is run.
struct DiagnosticDescription {
  std::string family;  ///< the class of the devices; the other classes' names start with it
  std::string name;    ///< the service's Name, without ',' or '|'
  std::string elementName;
  std::string text;
  Properties testProperties;
  Properties capabilities;
  Properties defaultSettings;  ///< all that are honoured beside those that every diagnostic does
  /// The class of its settings, which declares those and no others as ones to write; empty for the
  /// family's.
  std::string settingsClass;
  std::uint32_t estimatedSeconds = 0;
  /// From the beginning of a pass to that of the next one, where passes are repeated for a time and
  /// not counted: of a diagnostic that only looks, and is done at once.
  double secondsBetweenPasses = 0;
  Exclusive exclusive = Exclusive::Itself;
};

/// One kind of device and how it is tested. The operations may be called from several threads at
/// once.
class Diagnostic {
 public:
  virtual ~Diagnostic() = default;
  virtual const DiagnosticDescription& description() const = 0;
  virtual std::vector<Device> devices() const = 0;
  /// Tells why the settings cannot be honoured; empty when they can.
  virtual std::string refuse(const RunSettings& settings) const = 0;
  /// How long one pass takes with these settings, in seconds.
  virtual double passSeconds(const RunSettings&) const { return description().estimatedSeconds; }
  /// Tests the device once. An exception means that the test itself went wrong.
  virtual Outcome run(const Device& device, const RunSettings& settings, RunControl& control) = 0;
};

}  // namespace providers
