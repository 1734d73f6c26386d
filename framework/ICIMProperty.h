#pragma once

#include <string>

#include "framework/Export.h"
#include "framework/Options.h"
#include "framework/TCIMValue.h"

namespace NZELVOR20 {

/// A property of an instance, or a property declaration of a class.
class NZELVOR20_INTERFACE ICIMProperty {
 public:
  virtual ~ICIMProperty() = default;

  virtual std::string GetName() const = 0;

  virtual TCIMValue GetValue(TOptionsMap options) = 0;

  /// The value rendered for display: where the class gives the value a name (`ValueMap` and
  /// `Values`, DSP0004, 5.6.3.55 and 56), that name; else as `TCIMValue::ToString(10)`.
  virtual std::string ToString() = 0;

  /// The declared type.
  virtual ECIMType GetType() const = 0;
  virtual bool IsArray() const = 0;

  /// The value of a qualifier of the declaration; null where it has none.
  virtual TCIMValue GetQualifier(std::string name, TOptionsMap options) = 0;
};

}  // namespace NZELVOR20
