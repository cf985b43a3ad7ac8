// The text forms of an angle.
#pragma once

namespace utils {

/// Letters between the fields: C colon, P point, R the signs ° ′ ″, S blank.
enum DMSFormat {
  DMS,              ///< 123°45′30.25″
  DMSFix1,          ///< the same with one decimal whatever precision is asked for
  RADIAN,           ///< radians
  DEGREE,           ///< decimal degrees
  DDCMMCSS,         ///< 123:45:30.25
  DDCMM,            ///< 123:45.504
  DDRMMRSS,         ///< 123°45′30.25″
  DDRMMR,           ///< 123°45.504′
  DDMMSS,           ///< 1234530.25
  DDPMMSS,          ///< 123.453025
  DDPMM,            ///< 123.45504, minutes with their decimals behind the point
  DDSMMSSS,         ///< 123 45 30.25
  Gon,              ///< 400 gon to the circle
  Honey,            ///< 6000 mil to the circle
  DDPMMSSToRadian,  ///< reading only: DD.MMSS text to radians
  DegreeToDDPMMSS,  ///< decimal degrees to and from DD.MMSS
};

}  // namespace utils
