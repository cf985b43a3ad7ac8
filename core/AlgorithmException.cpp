#include "core/AlgorithmException.h"

#include "core/System.h"

#include <utility>

namespace kvn {
namespace {

QString withoutNumbers(AlgorithmException::ErrorType type, std::string const& name) {
  switch (type) {
    case AlgorithmException::DataError:
      return System::tr("Data error");
    case AlgorithmException::KnownPointNotEnough:
      return System::tr("Know point is not enough");
    case AlgorithmException::StationNotEnough:
      return System::tr("Station point is not enough");
    case AlgorithmException::KnownPointNameRepeat:
      return System::tr("Know point name repeat");
    case AlgorithmException::StationNameRepeat:
      return System::tr("Station Point Name %1 Repeat").arg(QString::fromStdString(name));
    case AlgorithmException::SightNameRepeat:
      return System::tr("Sight point name repeat");
    case AlgorithmException::NoText:
      return {};
    case AlgorithmException::AllStationKnown:
      return System::tr("All Station Point is known");
    case AlgorithmException::HorizontalAngleRepeat:
      return System::tr("Horizontal Angle repeat");
  }
  return {};
}

}  // namespace

AlgorithmException::AlgorithmException(int itemIndex, ErrorType type)
    : errorType(type), index(itemIndex), text(getErrorString(type).toStdString()) {}

AlgorithmException::AlgorithmException(ErrorType type, std::string pointName)
    : errorType(type), name(std::move(pointName)), text(getErrorString(type, name).toStdString()) {}

AlgorithmException::~AlgorithmException() = default;

char const* AlgorithmException::what() const noexcept { return text.c_str(); }

QString AlgorithmException::getErrorString(ErrorType type) const { return withoutNumbers(type, name); }

QString AlgorithmException::getErrorString(ErrorType type, std::string const& pointName) const {
  return type == KnownPointNotEnough ? System::tr("Known points are not enough") : withoutNumbers(type, pointName);
}

}  // namespace kvn
