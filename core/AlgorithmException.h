// AlgorithmException: data that an algorithm cannot work with.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <exception>
#include <string>

namespace kvn {

class KELVANE_EXPORT AlgorithmException : public std::exception {
 public:
  enum ErrorType {
    /// A negative distance, an angle out of range, or a system that cannot be solved (name "Calculate failed": a point
    /// held by too few observations, two points at one place, fewer observations than unknowns); stations of a single
    /// traverse that make no chain.
    DataError,
    /// Fewer than two known points, or points that no observation connects to them (name "No enough data"): look for
    /// names that differ by a blank or a letter between the field book and the list of known points. A single traverse
    /// without its start or end ("No start data", or the name of the point that should be known) is such a case too.
    KnownPointNotEnough,
    /// No station at all, or one without a direction; in a single traverse one without its two directions.
    StationNotEnough,
    KnownPointNameRepeat,  ///< one known point twice in the list
    /// A station's lines do not stand together, so that it comes a second time; in a connecting traverse also a station
    /// without just two directions.
    StationNameRepeat,
    SightNameRepeat,  ///< a target twice at one station
    NoText,
    AllStationKnown,        ///< every observed point is a known point: nothing to compute
    HorizontalAngleRepeat,  ///< two equal directions at one station
  };

  AlgorithmException(int index, ErrorType type);
  AlgorithmException(ErrorType type, std::string name);
  ~AlgorithmException() override;

  char const* what() const noexcept override;

  /// Text of the constructor with an index; `StationNameRepeat` is filled with the exception's `name`.
  QString getErrorString(ErrorType type) const;
  /// Text of the constructor with a name.
  QString getErrorString(ErrorType type, std::string const& name) const;

  ErrorType errorType;
  std::string name;  ///< point name or detail; empty when not given
  int index = -1;    ///< number of the data item; -1 when not given

 private:
  std::string text;
};

}  // namespace kvn
