// How far the results of this library are from published ones and from those of another program: docs/comparison.md.
//
//     kelvane_comparison > docs/comparison.md
//     kelvane_comparison docs/comparison.md    ends with 1 where the page says something else
#include "Published.h"
#include "adjust/PlaneAdjustment.h"
#include "formats/CarefulCosaCollection.h"

#include <json/json.h>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kSeconds = 180.0 * 3600.0 / kPi;
constexpr double kMillimetres = 1000.0;

kvn::PlaneAdjustment adjustmentOf(std::string const& path) {
  kvn::CarefulCosaCollection file;
  file.setKeepObservations(true);
  std::ifstream stream(path);
  if (!stream) throw std::runtime_error("cannot read " + path);
  file.read(stream);
  kvn::PlaneNetwork network = file.getObservations();
  kvn::ObservationErrors errors;
  errors.directionSeconds = double(file.getConfigure().AngleError);
  errors.distanceFixed = double(file.getConfigure().LineFixedError) / 1000.0;
  errors.distanceProportional = double(file.getConfigure().LineProportionError) / 1e6;
  kvn::setErrors(network, errors);
  kvn::PlaneAdjustment adjustment(network);
  adjustment.adjust();
  return adjustment;
}

/// The largest of some differences.
class Largest {
 public:
  void add(double ours, double theirs) {
    double const difference = std::abs(ours - theirs);
    value = std::isfinite(difference) ? std::max(value, difference) : difference;
    isEmpty = false;
  }

  /// The power of ten above it: the digits of a difference that is all rounding are those of the machine.
  std::string text() const {
    if (isEmpty) return "-";
    if (!std::isfinite(value)) return "missing";
    constexpr double kRounding = 1e-7;
    std::ostringstream text;
    text << "< " << std::pow(10.0, std::ceil(std::log10(std::max(value, 0.9 * kRounding))));
    return text.str();
  }

 private:
  double value = 0.0;
  bool isEmpty = true;
};

std::string sizeOf(kvn::PlaneNetwork const& network) {
  return std::to_string(network.points.size()) + " | " + std::to_string(network.directions.size()) + " | " +
         std::to_string(network.distances.size());
}

std::size_t pointOf(kvn::PlaneNetwork const& network, std::string const& name) {
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    if (network.points[p].name == name) return p;
  }
  throw std::runtime_error("no point " + name);
}

void comparePeer(std::string const& folder, std::string const& name, std::ostream& page) {
  kvn::PlaneAdjustment const adjustment = adjustmentOf(folder + name + ".in2");
  kvn::PlaneNetwork const& network = adjustment.network();
  kvn::PlaneResult const& result = adjustment.result();
  Json::Value theirs;
  std::ifstream(folder + name + ".json") >> theirs;
  Largest coordinates;
  Largest errors;
  Largest ellipses;
  for (std::string const& point : theirs["points"].getMemberNames()) {
    Json::Value const& expected = theirs["points"][point];
    kvn::PlanePoint const& ours = result.points[pointOf(network, point)];
    coordinates.add(kMillimetres * ours.x, kMillimetres * expected["N"].asDouble());
    coordinates.add(kMillimetres * ours.y, kMillimetres * expected["E"].asDouble());
    if (!expected["adjusted"].asBool()) continue;
    errors.add(kMillimetres * ours.mx, expected["sN"].asDouble());
    errors.add(kMillimetres * ours.my, expected["sE"].asDouble());
    ellipses.add(kMillimetres * ours.semiMajor, expected["a"].asDouble());
    ellipses.add(kMillimetres * ours.semiMinor, expected["b"].asDouble());
  }
  Largest unit;
  unit.add(result.unitError, theirs["m0"].asDouble());
  Largest residuals;
  Largest redundancies;
  Largest standardised;
  std::size_t direction = 0;
  std::size_t distance = 0;
  for (Json::Value const& line : theirs["observations"]) {
    bool const isDirection = line["kind"].asString() == "L";
    kvn::PlaneObservation const& o = isDirection ? result.directions[direction++] : result.distances[distance++];
    residuals.add((isDirection ? kSeconds : kMillimetres) * o.residual, line["v"].asDouble());
    redundancies.add(o.redundancy, line["r"].asDouble());
    if (std::isfinite(o.standardised)) standardised.add(std::abs(o.standardised), line["std_residual"].asDouble());
  }
  page << "| " << name << " | " << sizeOf(network) << " | " << result.redundancy
       << (result.redundancy == theirs["dof"].asInt() ? "" : " (!)") << " | " << coordinates.text() << " | "
       << errors.text() << " | " << ellipses.text() << " | " << unit.text() << " | " << residuals.text() << " | "
       << redundancies.text() << " | " << standardised.text() << " |\n";
}

void comparePublished(std::string const& folder, test::Published const& published, std::ostream& page) {
  kvn::PlaneAdjustment const adjustment = adjustmentOf(folder + published.file);
  kvn::PlaneResult const& result = adjustment.result();
  Largest coordinates;
  Largest errors;
  Largest ellipses;
  for (test::PublishedPoint const& expected : published.points) {
    kvn::PlanePoint const& ours = result.points[pointOf(adjustment.network(), expected.name)];
    coordinates.add(kMillimetres * ours.x, kMillimetres * expected.x);
    coordinates.add(kMillimetres * ours.y, kMillimetres * expected.y);
    errors.add(kMillimetres * ours.mx, kMillimetres * expected.mx);
    errors.add(kMillimetres * ours.my, kMillimetres * expected.my);
    if (expected.semiMajor == 0.0) continue;
    ellipses.add(kMillimetres * ours.semiMajor, kMillimetres * expected.semiMajor);
    ellipses.add(kMillimetres * ours.semiMinor, kMillimetres * expected.semiMinor);
  }
  Largest unit;
  unit.add(result.unitError, published.unitError);
  page << "| " << published.source << " | " << sizeOf(adjustment.network()) << " | " << result.redundancy
       << (result.redundancy == published.redundancy ? "" : " (!)") << " | " << kMillimetres * published.lastDigit
       << " | " << coordinates.text() << " | " << kMillimetres * published.lastErrorDigit << " | " << errors.text()
       << " | " << ellipses.text() << " | " << unit.text() << " |\n";
}

std::string page() {
  std::string const source = KELVANE_SOURCE_DIR;
  std::ostringstream page;
  page
      << "# Compared with others\n\n"
         "The largest difference between the results of `PlaneAdjustment`, which `kelvane adjust` prints, and those of "
         "others, for\neach network, in millimetres and seconds; < 0.01 stands for 0.001 to 0.01. A program makes this "
         "page, and a test compares\nit: `build/debug/bin/kelvane_comparison`.\n\n"
         "## Published networks\n\n"
         "Files and sources: `samples/README.md`. Beside a difference stands the last digit that is published.\n\n"
         "| network | points | directions | distances | redundancy | digit | coordinates [mm] | digit | errors [mm] | "
         "ellipses [mm] | unit weight error |\n"
         "|---|---|---|---|---|---|---|---|---|---|---|\n";
  for (test::Published const& published : test::publishedNetworks()) {
    comparePublished(source + "/samples/", published, page);
  }
  page << "\n## Another program\n\n"
          "Nine networks with the results of GNU Gama 2.33: `tests/adjust/peer/README.md`. It prints standardised "
          "residuals "
          "with\nthree decimals, ellipses and the unit weight error with eight digits.\n\n"
          "| network | points | directions | distances | redundancy | coordinates [mm] | errors [mm] | ellipses [mm] | "
          "unit weight error | residuals [mm, ″] | redundancy numbers | standardised residuals |\n"
          "|---|---|---|---|---|---|---|---|---|---|---|---|\n";
  for (char const* name : {"start_gama-local", "start_traverse-01-en-left", "synth_chain50", "synth_free50",
                           "synth_grid100", "textbook_Benning88_Distance_fix", "textbook_Grossmann_Direction_fix",
                           "textbook_LotherStrehle_Direction1", "textbook_StrangBorre_Distance_fix"}) {
    comparePeer(source + "/tests/adjust/peer/", name, page);
  }
  return page.str();
}

}  // namespace

int main(int count, char** arguments) {
  try {
    std::string const made = page();
    if (count < 2) {
      std::cout << made;
      return 0;
    }
    std::ifstream stream(arguments[1]);
    std::string const there{std::istreambuf_iterator<char>(stream), {}};
    if (there == made) return 0;
    std::cerr << arguments[1] << " is not what comes out now:\n" << made;
  } catch (std::exception const& failure) {
    std::cerr << failure.what() << '\n';
  }
  return 1;
}
