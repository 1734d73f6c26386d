#pragma once

#include <optional>
#include <string>
#include <vector>

namespace providers {

/// What becomes of a measurement that several passes of a run have made.
enum class Fold { Sum, Least, Most };

/// Something that a run has measured or counted.
struct Measured {
  std::string name;       ///< an identifier: letters and digits, each word begun in upper case
  double value = 0;       ///< neither infinite nor no number
  std::string unit = {};  ///< for people: "GiB/s"; empty for a plain count
  bool whole = true;      ///< a count, else a real number
  Fold fold = Fold::Sum;
  std::optional<double> minimum = {};  ///< the least that is all right
  std::optional<double> maximum = {};  ///< the most that is all right
};

/// The name of a thing in several words as one identifier: "MovingInversions".
std::string measureName(const std::string& words);

/// Puts what another pass has measured to what is known; what is new comes at the end.
void foldMeasured(std::vector<Measured>& known, const std::vector<Measured>& more);

/// RecordFormat and RecordData of a record of results.
struct ResultText {
  std::string format;
  std::string data;
};

/// For each measurement a declaration "uint64 Name" or "real64 Name", and where it has them
/// "string NameUnits", "real64 NameMinimum", "real64 NameMaximum". Both are empty for none.
ResultText resultText(const std::vector<Measured>& measured);

}  // namespace providers
