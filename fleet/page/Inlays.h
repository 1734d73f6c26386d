#pragma once

/// What stands in every page as it is. The page's security policy names each by its hash: no other
/// style holds, and no other script runs.
namespace fleet::page {

struct Inlay {
  const char* text;
  const char* hash;  ///< of the text, SHA-256, as a policy spells it
};

/// What the style sheet of the reports of a run does not have.
extern const Inlay kStyle;

/// Decodes the page's data; filters and sorts machines.
extern const Inlay kFleetScript;

/// Draws what of the table can be seen, and answers to its controls.
extern const Inlay kTableScript;

}  // namespace fleet::page
