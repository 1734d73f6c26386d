#pragma once

#include <string>

#include "framework/ECIMType.h"
#include "framework/TCIMValue.h"

namespace NZELVOR20 {

/// The declaration of a qualifier (DSP0004, 7.8): its type, default and how it is inherited.
class TCIMQualifierDecl {
 public:
  std::string name;
  ECIMType type = ECIMType::eBoolean;
  bool isArray = false;
  TCIMValue defaultValue;
  bool overridable = true;
  bool toSubclass = true;
  bool translatable = false;
};

}  // namespace NZELVOR20
