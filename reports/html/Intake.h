#pragma once

#include <cstddef>

#include "engine/events/Event.h"
#include "reports/html/Escape.h"
#include "reports/html/HtmlLimits.h"
#include "reports/html/RunPicture.h"

/// Events cut down to what a page has room for, and what their texts take.
namespace reports::html {

engine::RunStarted shortened(engine::RunStarted run, const HtmlLimits& limits);
engine::TestStarted shortened(engine::TestStarted test, const HtmlLimits& limits);
engine::Message shortened(engine::Message message, const HtmlLimits& limits);
engine::Diagnosis shortened(engine::Diagnosis finding, const HtmlLimits& limits);
engine::Error shortened(engine::Error error, const HtmlLimits& limits);
engine::Measurement shortened(engine::Measurement measurement, const HtmlLimits& limits);
engine::Ended shortened(engine::Ended end, const HtmlLimits& limits);

std::size_t bytesOf(const engine::TestStarted& test);
std::size_t bytesOf(const Step& step);
std::size_t bytesOf(const engine::Message& message);
std::size_t bytesOf(const engine::Diagnosis& finding);
std::size_t bytesOf(const engine::Error& error);
std::size_t bytesOf(const Series& series);
std::size_t bytesOf(const engine::Ended& end);

}  // namespace reports::html
