// Any bytes as a COSA file: read, written, read back, adjusted. Only the documented failures may come out of it, and no
// adjusted coordinate may be anything but a finite number.
#include <Kelvane.h>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace {

void adjust(kvn::CosaCollection const& collection) {
  kvn::Network network;
  network.knownPoints = collection.getKnownPointList();
  network.lines = collection.getNetworkDataList();
  if (network.lines.size() > 60) return;
  kvn::AlgorithmAdjust driver;
  int polls = 0;
  driver.setCancelCall([&polls] { return ++polls > 50; });
  driver.setNetworkData(network);
  driver.calculateAdjust();
  for (auto const& point : driver.getPointErrorInfoList()) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) std::abort();
    if (point.mpValid && !std::isfinite(point.mp)) std::abort();
  }
}

}  // namespace

namespace {

/// What the careful writer writes, the careful reader must read back to the same text.
void carefulRoundTrip(std::string const& text) {
  kvn::CarefulCosaCollection collection;
  std::istringstream stream(text);
  collection.read(stream);
  std::ostringstream first;
  collection.write(first);
  kvn::CarefulCosaCollection again;
  std::istringstream firstText(first.str());
  again.read(firstText);
  std::ostringstream second;
  again.write(second);
  // A distance that rounds to nothing in the file is no observation when it comes back.
  for (auto const& line : collection.getNetworkDataList()) {
    if (line.horizontal_distance != 0.0 && line.horizontal_distance < 1e-3) return;
  }
  if (again.getNetworkDataList().size() != collection.getNetworkDataList().size()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  std::string const text(reinterpret_cast<char const*>(bytes), size);
  try {
    carefulRoundTrip(text);
  } catch (std::exception const&) {  // documented failures
  }
  std::istringstream stream(text);
  kvn::CosaCollection collection;
  try {
    collection.read(stream);
    std::stringstream again;
    collection.write(again);
    adjust(collection);
  } catch (std::exception const&) {  // documented failures
  }
  return 0;
}
