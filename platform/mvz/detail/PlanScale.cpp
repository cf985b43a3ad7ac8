#include <mvz/detail/PlanScale.h>

#include <algorithm>
#include <cmath>

namespace mvz::detail {

double metresPerPixel(osg::Camera const& camera) {
  return 2 / (camera.getProjectionMatrix()(0, 0) * camera.getViewport()->width());
}

double scaleBarLength(double limit) {
  // One power too many, since the logarithm of an exact power may fall just below it.
  for (int power = static_cast<int>(std::floor(std::log10(limit))) + 1;; --power) {
    for (int const digit : {5, 2, 1}) {
      // Divided for small lengths: 2 / 10 is the number that "0.2" means, 2 * 0.1 need not be.
      double const length = power < 0 ? digit / std::pow(10.0, -power) : digit * std::pow(10.0, power);
      if (length <= limit) return length;
    }
  }
}

QString scaleBarText(double length) {
  bool const kilometres = length >= 1000;
  double const number = kilometres ? length / 1000 : length;
  // A hair above the number, so that 0.001 has its three decimals when its logarithm falls short.
  int const decimals = std::max(0, -static_cast<int>(std::floor(std::log10(number) + 1e-9)));
  return QString::number(number, 'f', decimals) + (kilometres ? QStringLiteral(" km") : QStringLiteral(" m"));
}

}  // namespace mvz::detail
