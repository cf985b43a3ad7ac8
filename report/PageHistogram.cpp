// How the standardised residuals lie, against the normal curve that good observations follow.
#include "adjust/HeightAdjustment.h"
#include "adjust/PlaneAdjustment.h"
#include "records/detail/Messages.h"
#include "report/detail/PageNumbers.h"
#include "report/detail/ReportParts.h"

#include <utils/Circle.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace kvn::detail {
namespace {

// Bins of half a standard error from -5 to 5; what is beyond is in the outermost ones.
constexpr int kBins = 20;
constexpr double kBinWidth = 0.5;
constexpr double kEnd = kBins * kBinWidth / 2.0;
// Of a normal variable 5 % are beyond.
constexpr double kFivePercent = 1.96;
// Fewer make no curve.
constexpr std::size_t kLeast = 10;

constexpr double kWidth = 640.0;  // of the drawing, about as many pixels
constexpr double kHeight = 220.0;
constexpr double kBase = 190.0;
constexpr double kTop = 14.0;

struct Histogram {
  std::array<std::size_t, kBins> bins{};
  std::size_t count = 0;
  std::size_t beyond = 0;

  void add(double standardised) {
    if (!std::isfinite(standardised)) return;
    ++count;
    if (std::abs(standardised) > kFivePercent) ++beyond;
    double const place = std::floor((standardised + kEnd) / kBinWidth);
    ++bins[static_cast<std::size_t>(std::clamp(place, 0.0, kBins - 1.0))];
  }
};

double normalDensity(double w) { return std::exp(-0.5 * w * w) / std::sqrt(2.0 * utils::kPi); }

double xOf(double w) { return (w + kEnd) / (2.0 * kEnd) * kWidth; }

std::string plain(double value) {
  std::string text = decimals(value, 1);
  return text.rfind("−", 0) == 0 ? "-" + text.substr(3) : text;
}

void writeBars(PageWriter& page, Histogram const& histogram, double scale) {
  for (int b = 0; b < kBins; ++b) {
    auto const count = static_cast<double>(histogram.bins[static_cast<std::size_t>(b)]);
    if (count == 0.0) continue;
    double const left = -kEnd + b * kBinWidth;
    bool const isFar = left >= 3.0 || left + kBinWidth <= -3.0;
    page.markup(isFar ? "<rect class=\"bar far\" x=\"" : "<rect class=\"bar\" x=\"").markup(plain(xOf(left) + 1.0));
    page.markup("\" y=\"").markup(plain(kBase - count * scale)).markup("\" width=\"");
    page.markup(plain(kWidth / kBins - 2.0)).markup("\" height=\"").markup(plain(count * scale)).markup("\"><title>");
    page.markup(ratio(left)).markup(" … ").markup(ratio(left + kBinWidth)).markup(": ");
    page.markup(histogram.bins[static_cast<std::size_t>(b)]).markup("</title></rect>\n");
  }
}

void writeCurve(PageWriter& page, double height) {
  page.markup("<path class=\"curve\" d=\"M");
  for (int i = 0; i <= 100; ++i) {
    double const w = -kEnd + i * 2.0 * kEnd / 100.0;
    if (i > 0) page.markup("L");
    page.markup(plain(xOf(w))).markup(" ").markup(plain(kBase - normalDensity(w) * height));
  }
  page.markup("\"/>\n");
}

void writeAxis(PageWriter& page) {
  page.markup("<path class=\"axis\" d=\"M0 ").markup(plain(kBase)).markup("H").markup(plain(kWidth)).markup("\"/>\n");
  for (int w = -4; w <= 4; ++w) {
    page.markup("<text x=\"").markup(plain(xOf(w))).markup("\" y=\"208\" text-anchor=\"middle\">");
    page.markup(decimals(w, 0)).markup("</text>\n");
  }
}

}  // namespace

void writeHistogram(PageWriter& page, ReportParts const& parts) {
  Histogram histogram;
  if (parts.hasPlane()) {
    for (auto const* list : {&parts.plane->result().directions, &parts.plane->result().distances}) {
      for (PlaneObservation const& one : *list) {
        if (one.weight > 0.0) histogram.add(one.standardised);
      }
    }
  } else if (parts.heights != nullptr) {
    for (HeightObservation const& one : parts.heights->result().sights) histogram.add(one.standardised);
  }
  if (histogram.count < kLeast) return;
  beginSection(page, "histogram", Messages::tr("Standardised residuals"),
               Messages::tr("Larger than 1.96: %1 of %2; by chance it would be about %3. The curve is the normal one.")
                   .arg(histogram.beyond)
                   .arg(histogram.count)
                   .arg(std::lround(0.05 * static_cast<double>(histogram.count))));
  double const expected = static_cast<double>(histogram.count) * kBinWidth;  // of the density 1
  auto const largest = static_cast<double>(*std::max_element(histogram.bins.begin(), histogram.bins.end()));
  double const scale = (kBase - kTop) / std::max(largest, expected * normalDensity(0.0));
  page.markup("<svg class=\"histogram\" viewBox=\"-10 0 ").markup(plain(kWidth + 20.0)).markup(" ");
  page.markup(plain(kHeight)).markup("\" role=\"img\" aria-labelledby=\"h-histogram\">\n");
  writeBars(page, histogram, scale);
  writeCurve(page, expected * scale);
  writeAxis(page);
  page.markup("</svg>\n");
  endSection(page);
}

}  // namespace kvn::detail
