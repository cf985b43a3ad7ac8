// kelvane_networks: writes a synthetic network or field job as a file that kelvane reads, with the truth beside it.
#include "SyntheticNetworks.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

constexpr char kUsage[] =
    "Usage: kelvane_networks KIND POINTS SEED DIRECTORY\n"
    "\n"
    "Writes DIRECTORY/KIND-POINTS-SEED.in2 (or .txt for a traverse), and with -truth.dat at its end a coordinate file\n"
    "with the true positions, name,mark,east,north,height a line.\n"
    "\n"
    "  grid      100 m apart, every point sights 4 to 8 around it by direction (2\") and distance (3 mm + 3 ppm)\n"
    "  chain     one long traverse, a known point every 50 legs\n"
    "  traverse  a field book on two faces with three side shots a station, four points a station\n"
    "\n"
    "POINTS is 10 (traverse: 16) to 10000000. The same SEED, 0 or more, gives the same file.\n";

struct WrongUse : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};

template <typename Number>
Number wholeNumber(std::string_view what, std::string_view text) {
  Number value{};
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc{} && end == text.data() + text.size()) return value;
  throw WrongUse(std::string(what) + " is no whole number in range: " + std::string(text));
}

template <typename Write>
void writeFile(std::filesystem::path const& path, Write const& write) {
  std::ofstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error(path.string() + ": cannot be created");
  write(stream);
  stream.close();
  if (!stream) throw std::runtime_error(path.string() + ": cannot be written, is the disk full?");
  std::printf("%s %ju bytes\n", path.string().c_str(), static_cast<std::uintmax_t>(std::filesystem::file_size(path)));
}

void writeTruth(std::string const& base, std::vector<bench::TruePoint> const& truth) {
  kvn::CoordinateDataCollection collection;
  for (std::size_t i = 0; i < truth.size(); ++i) {
    kvn::CoordinatePointInfo point;
    point.name = bench::nameOf(i);
    point.N = truth[i].x;
    point.E = truth[i].y;
    point.Z = truth[i].z;
    collection.getCoordinateDataList().push_back(std::move(point));
  }
  writeFile(base + "-truth.dat", [&collection](std::ostream& stream) { collection.write(stream); });
}

void writeNetwork(std::string const& base, bench::SyntheticNetwork synthetic) {
  writeTruth(base, synthetic.points);
  kvn::Network network = synthetic.network();
  synthetic = {};
  kvn::CarefulCosaCollection collection;
  kvn::Configure errors;
  errors.AngleError = static_cast<float>(bench::kDirectionErrorSeconds);
  errors.LineFixedError = static_cast<float>(bench::kDistanceErrorMm);
  errors.LineProportionError = static_cast<float>(bench::kDistanceErrorPpm);
  collection.setConfigure(errors);
  collection.setKnownPointList(std::move(network.knownPoints));
  collection.setNetworkDataList(std::move(network.lines));
  writeFile(base + ".in2", [&collection](std::ostream& stream) { collection.write(stream); });
}

void writeJob(std::string const& base, bench::SyntheticJob job) {
  writeTruth(base, job.points);
  kvn::VRDTraverseDataCollcetion collection;
  collection.getTraverseDataList() = std::move(job.rows);
  writeFile(base + ".txt", [&collection](std::ostream& stream) { collection.write(stream); });
}

void run(std::string const& kind, std::string const& points, std::string const& seed, std::string const& directory) {
  auto const size = wholeNumber<std::size_t>("POINTS", points);
  auto const start = wholeNumber<std::uint64_t>("SEED", seed);
  std::filesystem::create_directories(directory);
  std::string const base =
      (std::filesystem::path(directory) / (kind + "-" + std::to_string(size) + "-" + std::to_string(start))).string();
  if (kind == "grid") return writeNetwork(base, bench::gridNetwork(size, start));
  if (kind == "chain") return writeNetwork(base, bench::chainNetwork(size, start));
  if (kind == "traverse") return writeJob(base, bench::traverseJob(size, start));
  throw WrongUse("KIND must be grid, chain or traverse, not " + kind);
}

}  // namespace

int main(int count, char** arguments) {
  try {
    if (count == 2 && (arguments[1] == std::string_view("--help") || arguments[1] == std::string_view("-h"))) {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (count != 5) throw WrongUse("four arguments are wanted");
    run(arguments[1], arguments[2], arguments[3], arguments[4]);
    return 0;
  } catch (std::invalid_argument const& wrong) {
    std::fprintf(stderr, "kelvane_networks: %s\n\n%s", wrong.what(), kUsage);
    return 2;
  } catch (std::exception const& failure) {
    std::fprintf(stderr, "kelvane_networks: %s\n", failure.what());
    return 1;
  }
}
