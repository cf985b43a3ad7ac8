// Any bytes as a COSA file, read by all readers; what the careful one takes, it writes and reads again as it was.
#include "Support.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

bool isWritten(kvn::NetworkDataInfo const& line) {
  return line.horizontalAngleFlag || line.horizontal_distance >= 5e-5;  // a distance that rounds to nothing is none
}

/// The directions of a station are written ahead of its distances, so that lines without a direction come last.
std::vector<kvn::NetworkDataInfo> sorted(std::vector<kvn::NetworkDataInfo> lines) {
  std::sort(lines.begin(), lines.end(), [](auto const& a, auto const& b) {
    return std::tie(a.start_name, a.end_name) < std::tie(b.start_name, b.end_name);
  });
  return lines;
}

std::vector<kvn::NetworkDataInfo> writtenLines(kvn::CosaCollection const& collection) {
  std::vector<kvn::NetworkDataInfo> lines;
  for (kvn::NetworkDataInfo const& line : collection.getNetworkDataList()) {
    if (isWritten(line)) lines.push_back(line);
  }
  return sorted(std::move(lines));
}

void requireSame(kvn::CosaCollection const& first, kvn::CosaCollection const& second) {
  auto const& points = first.getKnownPointList();
  fuzz::require(points.size() == second.getKnownPointList().size(), "known points survive");
  for (std::size_t i = 0; i < points.size(); ++i) {
    kvn::KnownPoint const& again = second.getKnownPointList()[i];
    fuzz::require(points[i].name == again.name, "names of known points survive");
    fuzz::require(fuzz::isNear(points[i].x, again.x, 1e-4) && fuzz::isNear(points[i].y, again.y, 1e-4),
                  "coordinates survive");
  }
  auto const lines = writtenLines(first);
  auto const others = sorted(second.getNetworkDataList());
  fuzz::require(lines.size() == others.size(), "lines survive");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    fuzz::require(lines[i].start_name == others[i].start_name && lines[i].end_name == others[i].end_name,
                  "names of lines survive");
    fuzz::require(lines[i].horizontalAngleFlag == others[i].horizontalAngleFlag, "directions survive");
    fuzz::require(fuzz::isNearOnCircle(lines[i].horizontal_angle, others[i].horizontal_angle, 0.01 * fuzz::kSecond),
                  "angles survive");
    fuzz::require(fuzz::isNear(lines[i].horizontal_distance, others[i].horizontal_distance, 1e-4), "distances survive");
  }
}

void carefully(std::string const& text) {
  kvn::CarefulCosaCollection first;
  kvn::CarefulCosaCollection second;
  std::string once;
  if (!fuzz::ends<kvn::DataException>([&] { fuzz::readText(first, text); })) return;
  if (!fuzz::ends<kvn::DataException>([&] { once = fuzz::written(first); })) return;
  fuzz::readAgain(second, once);
  requireSame(first, second);
}

void toTheLetter(std::string const& text) {
  kvn::CosaCollection collection;
  if (fuzz::ends<kvn::DataException, std::invalid_argument, std::out_of_range>(
          [&] { fuzz::readText(collection, text); })) {
    fuzz::written(collection);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  static fuzz::File const file("cosa.IN2");
  std::string const text(reinterpret_cast<char const*>(bytes), size);
  carefully(text);
  toTheLetter(text);
  file.write(text);
  fuzz::ends<kvn::DataException>([&] { kvn::FileData("").readCosaFileData(file.local()); });
  fuzz::ends<kvn::DataException>([&] { kvn::FileData("").readCosaFileFirstLine(file.local()); });
  return 0;
}
