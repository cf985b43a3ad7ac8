// Fields of the exchange files: the texts of numbers, and the refusal of a text that is none.
#pragma once

#include "core/DataException.h"

#include <string>
#include <string_view>

namespace kvn::detail {

std::string fixed4(double value);  ///< four decimals, with a point whatever locale the process has
/// The general form with six digits of a stream, with a point whatever locale the stream or the process has.
std::string general6(double value);
std::string dms(double radians);  ///< DD.MMSS text with two decimals of a second

/// "The Format of Data is wrong".
DataException wrongFormat();

/// The number that a whole field is, blanks around it included.
/// @throws DataException `wrongFormat` when it is none.
double requiredNumber(std::string_view field);

}  // namespace kvn::detail
