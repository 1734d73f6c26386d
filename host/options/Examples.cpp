#include "host/options/Examples.h"

namespace host {

const std::vector<Example>& examples() {
  static const std::vector<Example> kExamples = {
      {"", "diags list", "which tests there are"},
      {"", "diags run --all", "run every one of them"},
      {"", "diags run --help", "what run can do"},
      {"list", "diags list --long", "with estimates and settings"},
      {"list", "diags list --json", "for another program"},
      {"run", "diags run --all --html report.html", "every test, and a page of what they found"},
      {"run", "diags run \"DIAGS: Memory Self Addressing\" --set Loops=3",
       "one test, with a setting of its own"},
      {"run", "diags run --plan burn-in --for 8h --jobs 2", "a night under load"},
      {"results", "diags results \"DIAGS: Memory Self Addressing\"",
       "what the test found, at each level"},
      {"results", "diags results mem0 --level extended", "named by its device, with all data"},
      {"inspect", "diags inspect DIAGS_Memory", "what the object model says of the memory"},
      {"inspect", "diags inspect CIM_AvailableDiagnosticService", "which test is for which device"},
      {"providers", "diags providers", "what is registered, and whether it can be used"},
      {"providers", "diags providers --json", "for another program"},
      {"check", "diags check", "the installation of this program"},
      {"check", "diags check --root /opt/diags", "another one"},
      {"report", "diags report", "the last run, as it was shown"},
      {"report", "diags report last-1 --junit tests.xml", "the one before it, for a build server"},
      {"report", "diags report --html report.html --redact", "a page to be handed on"},
      {"history", "diags history --most 5", "the five newest runs"},
      {"history", "diags history --diff last-1 last", "what changed in the last run"},
      {"history", "diags history --trend \"DIAGS: Memory Self Addressing\"",
       "its measurements over the runs"},
      {"verify", "diags verify run.jsonl", "one stream"},
      {"verify", "diags verify first.jsonl second.jsonl", "several"},
      {"recover", "diags recover run.jsonl", "what a power cut left of a run"},
      {"recover", "diags recover first.jsonl second.jsonl", "several"},
      {"fleet", "diags fleet runs/", "every stream that came back from the machines"},
      {"fleet", "diags fleet runs/ --expect nodes.txt --json", "for another program"},
      {"completion", "diags completion bash >~/.local/share/bash-completion/completions/diags",
       "for this user's bash"},
      {"completion", "diags completion zsh >~/.zfunc/_diags", "for a zsh with ~/.zfunc in fpath"},
  };
  return kExamples;
}

std::string examplesText(const std::string& verb) {
  std::string text;
  for (const Example& example : examples()) {
    if (verb != example.verb) continue;
    text += std::string("\n  ") + example.line + "\n      " + example.purpose;
  }
  return text.empty() ? text : "Examples:" + text;
}

}  // namespace host
