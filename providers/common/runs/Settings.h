#pragma once

#include <stdexcept>

#include "providers/common/Diagnostic.h"
#include "providers/common/runs/JobRegistry.h"

namespace providers {

/// A setting that makes no sense; the text says which and why.
class BadSetting : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

/// Reads the properties of a CIM_DiagnosticSettingData or CIM_DiagnosticSetting instance; what is
/// null keeps its default. Throws `BadSetting`.
RunSettings readRunSettings(const Properties& properties);

/// How long job and records are kept, from the diagnostic's settings and those of the job. Throws
/// `BadSetting`.
void readRetention(const Properties& diagnosticSettings, const Properties& jobSettings,
                   JobRequest& request);

}  // namespace providers
