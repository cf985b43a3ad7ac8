#include "core/AlgorithmException.h"

#include "records/detail/Messages.h"

#include <utility>

namespace kvn {
namespace {

QString withoutNumbers(AlgorithmException::ErrorType type, std::string const& name) {
  switch (type) {
    case AlgorithmException::DataError:
      return Messages::tr("Data error");
    case AlgorithmException::KnownPointNotEnough:
      return Messages::tr("Know point is not enough");
    case AlgorithmException::StationNotEnough:
      return Messages::tr("Station point is not enough");
    case AlgorithmException::KnownPointNameRepeat:
      return Messages::tr("Know point name repeat");
    case AlgorithmException::StationNameRepeat:
      return Messages::tr("Station Point Name %1 Repeat").arg(QString::fromStdString(name));
    case AlgorithmException::SightNameRepeat:
      return Messages::tr("Sight point name repeat");
    case AlgorithmException::NoText:
      return {};
    case AlgorithmException::AllStationKnown:
      return Messages::tr("All Station Point is known");
    case AlgorithmException::HorizontalAngleRepeat:
      return Messages::tr("Horizontal Angle repeat");
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
  return type == KnownPointNotEnough ? Messages::tr("Known points are not enough") : withoutNumbers(type, pointName);
}

}  // namespace kvn
