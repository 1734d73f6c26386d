#pragma once

namespace NZELVOR20 {

/// The CIM data types (DSP0004, 5.2.1), embedded instances and references among them.
enum class ECIMType : unsigned char {
  eNone,  ///< a null value that was never given a type
  eBoolean,
  eChar16,
  eUint8,
  eUint16,
  eUint32,
  eUint64,
  eSint8,
  eSint16,
  eSint32,
  eSint64,
  eReal32,
  eReal64,
  eString,
  eDateTime,
  eReference,
  eInstance
};

}  // namespace NZELVOR20
