#include "host/verbs/Circumstances.h"

#include <algorithm>
#include <iostream>
#include <string>

#include "host/Messages.h"
#include "text/SafeText.h"

namespace host {
namespace {

bool wasLeftOut(const engine::UnusableProvider& provider) {
  return provider.state == "crashed" || provider.state == "hangs" || provider.state == "fails";
}

void reportLine(const engine::OutputLine& line) {
  std::cout.flush();
  std::cerr << text::visible(line.text) << '\n';
}

void reportLeftOut(const engine::UnusableProvider& provider) {
  // One that threw may have told of other tests.
  const bool isAsked = provider.state == "fails";
  reportError("provider " + provider.name + (isAsked ? " fails: " : " is left out: ") +
              provider.reason);
}

}  // namespace

void reportWarnings(const engine::Circumstances& circumstances) {
  for (const engine::Finding& finding : circumstances.findings) {
    if (finding.weight == engine::Weight::kWarning) reportError(finding.text);
  }
  for (const engine::OutputLine& line : circumstances.lines) reportLine(line);
  for (const engine::Error& failure : circumstances.failures) {
    reportError("the worker ended badly behind its answer: " + textOf(failure));
  }
}

bool reportUnusable(const engine::Circumstances& circumstances) {
  std::string list;
  for (const engine::UnusableProvider& one : circumstances.unusable) {
    if (wasLeftOut(one)) {
      reportLeftOut(one);
    } else {
      list += (list.empty() ? "" : ", ") + one.name + " (" + one.state + ")";
    }
  }
  if (!list.empty()) {
    reportError("not every provider can be used: " + list + "; diags providers says why");
  }
  return !circumstances.unusable.empty();
}

bool hasLeftOut(const engine::Circumstances& circumstances) {
  const auto& all = circumstances.unusable;
  return std::any_of(all.begin(), all.end(), wasLeftOut);
}

std::string textOf(const engine::Error& error) {
  std::string text = error.text;
  if (!error.operation.empty()) text += ", in " + error.operation;
  if (!error.provider.empty()) text += " of " + error.provider;
  std::string libraries;
  for (const std::string& library : error.libraries) {
    libraries += (libraries.empty() ? "" : ", ") + library.substr(library.find_last_of("/\\") + 1);
  }
  return libraries.empty() ? text : text + " (" + libraries + ")";
}

}  // namespace host
