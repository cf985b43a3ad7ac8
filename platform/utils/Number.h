// Numbers in files: a point for the decimals whatever the user's locale is.
#pragma once

#include <utils/Export.h>

#include <optional>
#include <string>
#include <string_view>

namespace utils {

/// The number that a text of digits with at most one point among or behind them is, a minus ahead of it allowed.
///
/// Nothing for any other text, and for one of more than 15 digits, leading zeros aside. Up to there the digits and the
/// power of ten are both doubles without a rounding, so that their quotient is the nearest double, the one that every
/// reader of numbers gives.
KELVANE_EXPORT std::optional<double> plainDecimal(std::string_view text);

/// The number at the start of a text, by the rule of `strtod` in the C locale; what follows it is passed over.
///
/// Leading white space, a sign, an exponent, hexadecimal, "inf" and "nan" are read as `strtod` reads them. (`std::stod`
/// follows the process's locale, which a QCoreApplication takes from the user: "1.5" would read as 1 in a German one.)
/// @throws std::invalid_argument "invalid stod argument" when the text does not begin with a number.
/// @throws std::out_of_range "stod argument out of range" when it overflows or underflows a double.
KELVANE_EXPORT double leadingNumber(std::string_view text);

/// The number that a whole UTF-8 text is, by the rule of `QString::toDouble`: white space around it, a sign, an
/// exponent, "inf" and "nan" are taken; hexadecimal, anything behind the number and an overflow are not. Plain decimal
/// numbers do not go through QString.
KELVANE_EXPORT std::optional<double> fullNumber(std::string_view text);

/// A number as text without the sign where all its digits are 0: what rounds to zero is no negative value.
KELVANE_EXPORT std::string withoutSignOfZero(std::string text);

/// Digits and points only; anything goes behind a minus, and an empty text passes.
KELVANE_EXPORT bool isLikeNumber(std::string_view text);

}  // namespace utils
