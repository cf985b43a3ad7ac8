// CommonFunction: conversions between the angle forms, and tests and cuts of texts.
#pragma once

#include "records/CalculationRecords.h"

#include <utils/Export.h>

#include <QString>
#include <string>
#include <vector>

namespace kvn {

/// Three numeric angle forms exist and must never be mixed: radians, inside the algorithms; DD.MMSS, 123.4530 being
/// 123°45'30", at the file and display boundary; DDDMMSS.ss, 1234530.25 being 123°45'30.25", in `DirectionResult`.
class KELVANE_EXPORT CommonFunction {
 public:
  static double const m_PI;  ///< the arc cosine of -1

  /// Radians of DD.MMSS; the sign holds for the whole angle.
  ///
  /// Within 5e-12 rad (1e-6") of the true angle: the value is lifted by 1e-10 before it is cut into fields, so that
  /// 30.29999999995 does not lose a minute, and the lift stays. 60 and more minutes or seconds count as they stand.
  static double dmsToRad(double dms);

  /// The same with checks.
  ///
  /// @param row  data row that the angle came from, named in the failure.
  /// @return     radians up to 361°01' in size: 360 degrees, 60 minutes and 60 seconds still pass, because formatted
  ///             angles are rounded without a carry and 59.996" is printed as 60.00".
  /// @throws AlgorithmException(row, DataError) beyond those bounds, and for a value that is not finite.
  static double dmsToRad(double dms, int row);

  /// Sexagesimal fields of radians, nothing rounded; all fields of a negative angle are negative or zero.
  static Degree radToDms(double radians);

  static QString getDmsFormat(Degree const& angle);    ///< "123:45:30.25", seconds rounded without a carry
  static QString getDmsFormat(double const& dddmmss);  ///< the same of DDDMMSS.ss
  static QString getDmsString(Degree angle);           ///< "123°45′30.25″"
  static QString getDmsStyle(double dddmmss);          ///< the same of DDDMMSS.ss

  /// DD.MMSS cut to six significant digits and normalised to `decimals` decimals.
  static double getKVNDegereeFormat(double const& dms, int decimals);
  /// DD.MMSS in the display form of a default `utils::Formater`.
  static QString getPLQDegreeeFormat(double const& dms);

  /// The whole text is a number.
  static bool judgeStringToDigital(std::string const& text);
  /// Digits and points only; anything goes behind a minus, and an empty text passes.
  static bool judgeStringToDouble(std::string const& text);

  /// The pieces between delimiters. A delimiter at the very end yields no further empty piece, an empty text none at
  /// all.
  static std::vector<std::string> split(std::string const& text, char delimiter, bool skipEmpty);
};

}  // namespace kvn
