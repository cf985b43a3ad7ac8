#include "Tables.h"

#include <cmath>
#include <memory>
#include <utility>

namespace {

constexpr double kDegrees = 57.29577951308232;

QString number(double value, int decimals) {
  return std::isnan(value) ? QStringLiteral("-") : QString::number(value, 'f', decimals);
}

QString millimetres(double metres) { return number(1000 * metres, 2); }
QString degrees(double radians) { return number(radians * kDegrees, 5) + QChar(0xB0); }

/// What the views of points and observations read after an adjustment.
struct Adjusted {
  kvn::PlaneNetwork network;
  kvn::PlaneResult result;
};

/// Station, target and result of the observation of a row: the directions, then the distances.
struct Observation {
  bool isDirection;
  std::size_t from, to;
  double value;
  kvn::PlaneObservation const* result;
  int line;
};

Observation observation(Adjusted const& run, int row) {
  auto const at = std::size_t(row);
  std::size_t const directions = run.network.directions.size();
  if (at < directions) {
    auto const& direction = run.network.directions[at];
    int const station = run.network.setUps[std::size_t(direction.setUp)].station;
    return {true,
            std::size_t(station),
            std::size_t(direction.target),
            direction.value,
            &run.result.directions[at],
            direction.origin.line};
  }
  auto const& distance = run.network.distances[at - directions];
  return {false,
          std::size_t(distance.from),
          std::size_t(distance.to),
          distance.value,
          &run.result.distances[at - directions],
          distance.origin.line};
}

QString residual(Observation const& of) {
  return of.isDirection ? number(of.result->residual * kDegrees * 3600, 2) + QChar(0x2033)
                        : millimetres(of.result->residual) + " mm";
}

}  // namespace

void Table::setContent(Content value) {
  beginResetModel();
  data_ = std::move(value);
  endResetModel();
}

int Table::find(std::function<bool(int row)> const& matches) const {
  for (int row = 0; row < data_.rows; ++row) {
    if (matches(row)) return row;
  }
  return -1;
}

int Table::rowCount(QModelIndex const& parent) const { return parent.isValid() ? 0 : data_.rows; }
int Table::columnCount(QModelIndex const& parent) const { return parent.isValid() ? 0 : int(data_.columns.size()); }

QVariant Table::data(QModelIndex const& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid()) return {};
  return data_.columns[std::size_t(index.column())].text(index.row());
}

QVariant Table::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation == Qt::Vertical)
    return QAbstractTableModel::headerData(section, orientation, role);
  return data_.columns[std::size_t(section)].title;
}

Table::Content rowsOf(kvn::Job const& job) {
  auto const rows = std::make_shared<std::vector<kvn::TraverseDataInfo> const>(job.project()->getTraverseDataList());
  auto const at = [rows](int row) -> kvn::TraverseDataInfo const& { return (*rows)[std::size_t(row)]; };
  Table::Content content;
  content.rows = int(rows->size());
  content.columns = {
      {"Kind",
       [at](int row) {
         return QString(at(row).pointType == kvn::TraversePointType::StationPoint ? "station" : "target");
       }},
      {"Name", [at](int row) { return kvn::recordText(at(row).name); }},
      {"Height [m]", [at](int row) { return number(at(row).instrument, 4); }},
      {"Circle", [at](int row) { return degrees(at(row).horizontal_angle); }},
      {"Zenith", [at](int row) { return degrees(at(row).vertical_angle); }},
      {"Slope distance [m]",
       [at](int row) { return at(row).isSlantDistanceHave ? number(at(row).slant_distance, 4) : QString(); }},
  };
  content.points = [at](int row) { return std::vector<std::string>{at(row).name}; };
  content.line = [](int /*row*/) { return 0; };
  return content;
}

Table::Content pointsOf(kvn::Job const& job) {
  Table::Content content;
  if (kvn::PlaneAdjustment const* const run = job.planeAdjustment()) {
    auto const all = std::make_shared<Adjusted const>(Adjusted{run->network(), run->result()});
    auto const at = [all](int row) -> kvn::PlanePoint const& { return all->result.points[std::size_t(row)]; };
    content.rows = int(all->result.points.size());
    content.columns = {
        {"Point", [all](int row) { return kvn::recordText(all->network.points[std::size_t(row)].name); }},
        {"North x [m]", [at](int row) { return number(at(row).x, 4); }},
        {"East y [m]", [at](int row) { return number(at(row).y, 4); }},
        {"mx [mm]", [at](int row) { return millimetres(at(row).mx); }},
        {"my [mm]", [at](int row) { return millimetres(at(row).my); }},
        {"mp [mm]", [at](int row) { return millimetres(at(row).mp); }},
        {"Checked", [at](int row) { return QString(at(row).isChecked ? "yes" : "no"); }},
    };
    content.points = [all](int row) { return std::vector<std::string>{all->network.points[std::size_t(row)].name}; };
  } else {
    auto const known = std::make_shared<std::vector<kvn::KnownPoint> const>(job.project()->getNetwork().knownPoints);
    auto const at = [known](int row) -> kvn::KnownPoint const& { return (*known)[std::size_t(row)]; };
    content.rows = int(known->size());
    content.columns = {
        {"Known point", [at](int row) { return kvn::recordText(at(row).name); }},
        {"North x [m]", [at](int row) { return number(at(row).x, 4); }},
        {"East y [m]", [at](int row) { return number(at(row).y, 4); }},
    };
    content.points = [at](int row) { return std::vector<std::string>{at(row).name}; };
  }
  content.line = [](int /*row*/) { return 0; };
  return content;
}

Table::Content observationsOf(kvn::Job const& job) {
  Table::Content content;
  if (kvn::PlaneAdjustment const* const run = job.planeAdjustment()) {
    auto const all = std::make_shared<Adjusted const>(Adjusted{run->network(), run->result()});
    auto const at = [all](int row) { return observation(*all, row); };
    auto const name = [all](std::size_t point) { return all->network.points[point].name; };
    content.rows = int(all->network.directions.size() + all->network.distances.size());
    content.columns = {
        {"Station", [at, name](int row) { return kvn::recordText(name(at(row).from)); }},
        {"Target", [at, name](int row) { return kvn::recordText(name(at(row).to)); }},
        {"Observed",
         [at](int row) { return at(row).isDirection ? degrees(at(row).value) : number(at(row).value, 4) + " m"; }},
        {"Residual", [at](int row) { return residual(at(row)); }},
        {"Redundancy", [at](int row) { return number(at(row).result->redundancy, 2); }},
        {"Test", [at](int row) { return number(at(row).result->test, 2); }},
    };
    content.points = [at, name](int row) { return std::vector<std::string>{name(at(row).from), name(at(row).to)}; };
    content.line = [at](int row) { return at(row).line; };
  } else {
    auto const lines = std::make_shared<std::vector<kvn::NetworkDataInfo> const>(job.project()->getNetwork().lines);
    auto const at = [lines](int row) -> kvn::NetworkDataInfo const& { return (*lines)[std::size_t(row)]; };
    content.rows = int(lines->size());
    content.columns = {
        {"Station", [at](int row) { return kvn::recordText(at(row).start_name); }},
        {"Target", [at](int row) { return kvn::recordText(at(row).end_name); }},
        {"Direction",
         [at](int row) { return at(row).horizontalAngleFlag ? degrees(at(row).horizontal_angle) : QString(); }},
        {"Distance [m]",
         [at](int row) {
           return at(row).horizontal_distance > 0 ? number(at(row).horizontal_distance, 4) : QString();
         }},
    };
    content.points = [at](int row) { return std::vector<std::string>{at(row).start_name, at(row).end_name}; };
    content.line = [](int /*row*/) { return 0; };
  }
  return content;
}
