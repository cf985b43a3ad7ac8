// utils::Degree and utils::Radian: an angle in decimal degrees or in radians, with its text forms.
#pragma once

#include <utils/DMSFormat.h>
#include <utils/Export.h>

#include <QString>
#include <string>
#include <string_view>

namespace utils {

class Degree;

/// An angle in radians.
class KELVANE_EXPORT Radian {
 public:
  explicit Radian(double radians = 0.0) : value(radians) {}
  operator double() const { return value; }
  /// @param mark  kept for the callers' sake; only 0 is in use.
  Degree toDegree(int mark) const;

 private:
  double value;
};

/// An angle in decimal degrees.
class KELVANE_EXPORT Degree {
 public:
  /// @param mark  kept for the callers' sake; only 0 is in use.
  explicit Degree(double degrees = 0.0, int mark = 0);
  operator double() const { return value; }
  Radian toRadian() const;

  /// Text with `secondDecimals` decimals of a second (0 to 9).
  ///
  /// Rounded to the nearest last digit with carry, so that no text shows 60 seconds or 60 minutes; a value that rounds
  /// to zero has no sign. Forms in degrees, radians, gon or minutes keep the same resolution on the ground.
  QString toString(DMSFormat format, int mark, int secondDecimals) const;

  /// The same text in UTF-8, without the way through QString.
  std::string toUtf8(DMSFormat format, int secondDecimals) const;

  /// DD.MMSS text whose number has `decimals` decimals (0 to 13): 4 for whole seconds, 2 for whole minutes.
  /// Any other format than DegreeToDDPMMSS has `decimals` decimals of a second.
  QString toString(DMSFormat format, int decimals) const;

  /// Number of an angle text.
  ///
  /// @param format  DegreeToDDPMMSS: DD.MMSS text to decimal degrees. DDPMMSSToRadian: DD.MMSS text to radians.
  ///                Any other: the text as a plain number.
  /// @param valid   told whether the text was a number; may be null.
  /// @return        0.0 for a text that is no number. The sign holds for the whole angle. Minutes and seconds of 60 and
  ///                above count as they stand: 10.60 is 11 degrees. The digits are taken from the text and not from a
  ///                binary fraction, so the result is the nearest double to within 2 units in the last place.
  static double stringtoDouble(QString const& text, DMSFormat format, bool* valid = nullptr);

  /// The same for a text of bytes, without the way through QString.
  static double bytesToDouble(std::string_view text, DMSFormat format, bool* valid = nullptr);

 private:
  double value;
};

/// Direction of an axis, which has no sign: 123°45′, below 180°. Empty for what is not finite.
KELVANE_EXPORT std::string axisText(double radians);

}  // namespace utils
