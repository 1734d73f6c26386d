#pragma once

#include <string>
#include <vector>

#include "engine/events/Event.h"

/// What happened as text for a reader, with all that the event knows: of several lines where there
/// are recommended actions, or a place where something broke. Not made safe for anything.
namespace reports {

/// The text, and a line for each action.
std::string withActions(std::string text, const std::vector<std::string>& actions);

std::string describe(const engine::RunStarted& run);
std::string describe(const engine::TestStarted& test);
std::string describe(const engine::StepStarted& step);
std::string describe(const engine::Progress& progress);
std::string describe(const engine::OutputLine& line);
std::string describe(const engine::LogLine& line);
std::string describe(const engine::Message& message);
std::string describe(const engine::Measurement& measurement);
std::string describe(const engine::Diagnosis& diagnosis);
std::string describe(const engine::Error& error);
std::string describe(const engine::Ended& end);
std::string describe(const engine::Body& body);

}  // namespace reports
