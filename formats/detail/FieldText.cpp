#include "formats/detail/FieldText.h"

#include "records/detail/Messages.h"

#include <utils/Degree.h>
#include <utils/Number.h>

namespace kvn::detail {

std::string fixed4(double value) { return utils::withoutSignOfZero(QString::number(value, 'f', 4).toStdString()); }

std::string general6(double value) { return utils::withoutSignOfZero(QString::number(value, 'g', 6).toStdString()); }

std::string dms(double radians) {
  return utils::Radian(radians).toDegree(0).toString(utils::DegreeToDDPMMSS, 0, 2).toStdString();
}

DataException wrongFormat() { return DataException(Messages::tr("The Format of Data is wrong").toStdString()); }

double requiredNumber(std::string_view field) {
  std::optional<double> const number = utils::fullNumber(field);
  if (!number) throw wrongFormat();
  return *number;
}

}  // namespace kvn::detail
