#include "reduction/detail/RoundOrder.h"

#include "adjust/NameIndex.h"
#include "reduction/detail/Circle.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kvn::detail {
namespace {

using utils::foldedAngle;

// How often each sight may be looked over in vain, on average; a book of closed sweeps takes two or three.
constexpr std::size_t kMostLooks = 16;

struct Sight {
  std::size_t row;
  std::size_t target;
  int face;
};

/// Which faces of which targets have been read; forgets all of them in no time.
class FacesRead {
 public:
  explicit FacesRead(std::size_t targets) : stamps(2 * targets, 0) {}

  void forget() { ++stamp; }
  void add(Sight const& sight) { stamps[2 * sight.target + static_cast<std::size_t>(sight.face)] = stamp; }
  bool has(Sight const& sight) const { return has(sight.target, sight.face); }
  bool has(std::size_t target, int face) const { return stamps[2 * target + static_cast<std::size_t>(face)] == stamp; }
  bool hasBoth(std::size_t target) const { return has(target, 0) && has(target, 1); }
  bool hasAny(std::size_t target) const { return has(target, 0) || has(target, 1); }

 private:
  std::vector<std::size_t> stamps;
  std::size_t stamp = 1;
};

/// Divides the sights on one position of the circle into rounds.
class RoundDivision {
 public:
  RoundDivision(std::vector<Sight> const& ofCircle, std::size_t targets)
      : sights(ofCircle), read(targets), readAhead(targets) {}

  /// The sights that begin a round, without the first one.
  std::vector<std::size_t> run() {
    std::vector<std::size_t> starts;
    begin(0);
    while (at < sights.size()) {
      std::size_t const visitEnd = endOfVisit(at);
      std::size_t const again = firstReadAgain(visitEnd);
      if (again == visitEnd) {
        pass(visitEnd);
        continue;
      }
      std::size_t start = startOfRound(again, visitEnd);
      if (start == again && isRepetitionAtEnd(again, visitEnd)) start = visitEnd;
      for (std::size_t i = at; i < start; ++i) read.add(sights[i]);
      std::size_t const end = look(start);
      if (isRound()) {
        starts.push_back(start);
        begin(start);
        while (at < end) pass(endOfVisit(at));
        continue;
      }
      // Sights without any order are not looked over again and again.
      spent += end - start;
      do {
        pass(endOfVisit(at));
      } while (spent > kMostLooks * sights.size() && at < end);
    }
    return starts;
  }

 private:
  void begin(std::size_t sight) {
    at = first = last = beforeLast = sight;
    firstSize = endOfVisit(sight) - sight;
    read.forget();
  }

  /// Takes the visit into the round.
  void pass(std::size_t visitEnd) {
    for (std::size_t i = at; i < visitEnd; ++i) read.add(sights[i]);
    beforeLast = last;
    last = at;
    at = visitEnd;
  }

  std::size_t endOfVisit(std::size_t from) const {
    std::size_t end = from;
    while (end < sights.size() && sights[end].target == sights[from].target) ++end;
    return end;
  }

  std::size_t firstReadAgain(std::size_t visitEnd) const {
    std::size_t i = at;
    while (i < visitEnd && !read.has(sights[i])) ++i;
    return i;
  }

  /// Whether a round begins behind the visit with the first target, as this one did, and reads all of it in its turn.
  bool isRepetitionAtEnd(std::size_t again, std::size_t visitEnd) {
    if (visitEnd == sights.size() || sights[at].target == sights[first].target) return false;
    if (sights[visitEnd].target != sights[first].target || !read.has(sights[visitEnd])) return false;
    spent += look(visitEnd) - visitEnd;
    return isRound() &&
           std::all_of(place(again), place(visitEnd), [this](Sight const& sight) { return readAhead.has(sight); });
  }

  /// The sight that would begin a round, since `again` of the visit has been read in this one.
  std::size_t startOfRound(std::size_t again, std::size_t visitEnd) const {
    if (sights[at].target == sights[first].target) return std::max(again, visitEnd - std::min(visitEnd, firstSize));
    bool const runsBack = again == at && at - last > firstSize && sights[at].target == sights[beforeLast].target;
    return runsBack && isRepetition(at - firstSize) ? at - firstSize : again;
  }

  /// Whether what stands from here on in the last visit has been read earlier in it.
  bool isRepetition(std::size_t from) const {
    bool isRead[2] = {false, false};
    for (std::size_t i = last; i < from; ++i) isRead[sights[i].face] = true;
    return std::all_of(place(from), place(at), [&isRead](Sight const& sight) { return isRead[sight.face]; });
  }

  /// Looks ahead from a sight over the visits that read nothing twice; where the first one that does begins.
  std::size_t look(std::size_t start) {
    readAhead.forget();
    targetsAhead.clear();
    for (std::size_t from = start, end = start; from < sights.size(); from = end) {
      end = endOfVisit(from);
      if (std::any_of(place(from), place(end), [this](Sight const& sight) { return readAhead.has(sight); }))
        return from;
      if (!readAhead.hasAny(sights[from].target)) targetsAhead.push_back(sights[from].target);
      for (std::size_t i = from; i < end; ++i) readAhead.add(sights[i]);
    }
    return sights.size();
  }

  /// Whether what lies ahead is a round of its own.
  bool isRound() const {
    std::size_t parted = 0;
    std::size_t complete = 0;
    for (std::size_t const target : targetsAhead) {
      if (!read.hasAny(target)) continue;
      if (read.hasBoth(target)) {
        ++complete;
      } else if (!readAhead.hasBoth(target) && !readAhead.has(target, read.has(target, 0) ? 0 : 1)) {
        ++parted;
      }
    }
    return targetsAhead.size() > 1 && (parted == 0 || parted < complete);
  }

  std::vector<Sight>::const_iterator place(std::size_t sight) const {
    return sights.begin() + static_cast<std::ptrdiff_t>(sight);
  }

  std::vector<Sight> const& sights;
  FacesRead read;  // in the round
  FacesRead readAhead;
  std::vector<std::size_t> targetsAhead;
  // Sights: the next one, and those that begin the visits of the round that are its first, its last and the one before.
  std::size_t at = 0;
  std::size_t first = 0;
  std::size_t last = 0;
  std::size_t beforeLast = 0;
  std::size_t firstSize = 0;  // of the first visit
  std::size_t spent = 0;      // sights that were looked over in vain
};

/// One position of the circle.
class Circle {
 public:
  bool isEmpty() const { return sights.empty(); }

  /// Whether its first target reads another value here.
  bool isTurnedBy(TraverseDataInfo const& row) const {
    return !isEmpty() && names.find(row.name) == 0 && !isNear(reading(row, faceOf(row)), 0);
  }

  void add(TraverseDataInfo const& row, std::size_t i, RoundPlace& place) {
    place.face = faceOf(row);
    double const value = reading(row, place.face);
    auto const target = static_cast<std::size_t>(names.numberOf(row.name));
    if (target == firstReadings.size()) firstReadings.push_back(value);
    place.fits = isNear(value, target);
    sights.push_back({i, target, place.face});
  }

  void divide(std::vector<RoundPlace>& places) const {
    for (std::size_t const begin : RoundDivision(sights, firstReadings.size()).run()) {
      places[sights[begin].row].beginsRound = true;
    }
  }

 private:
  static double reading(TraverseDataInfo const& row, int face) {
    return utils::onCircle(row.horizontal_angle - face * utils::kPi);
  }

  bool isNear(double value, std::size_t target) const {
    return std::abs(foldedAngle(value - firstReadings[target])) <= kSameReading;
  }

  /// Without a vertical reading the horizontal one tells, against the target's first one.
  int faceOf(TraverseDataInfo const& row) const {
    if (hasVertical(row)) return isSecondFace(row.vertical_angle) ? 1 : 0;
    int const target = names.find(row.name);
    if (target < 0) return 0;
    double const turn = foldedAngle(row.horizontal_angle - firstReadings[static_cast<std::size_t>(target)]);
    return std::abs(turn) > utils::kPi / 2 ? 1 : 0;
  }

  NameIndex names;
  std::vector<double> firstReadings;  // by target, on the first face
  std::vector<Sight> sights;
};

}  // namespace

std::vector<RoundPlace> roundPlaces(std::vector<TraverseDataInfo> const& rows) {
  std::vector<RoundPlace> places(rows.size());
  Circle circle;
  bool hasStation = false;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    TraverseDataInfo const& row = rows[i];
    bool const isStation = row.pointType == TraversePointType::StationPoint;
    bool const isReading = row.pointType == TraversePointType::PrismPoint && row.angleMark != 0.0;
    hasStation = hasStation || isStation;
    if (!hasStation || !(isStation || isReading)) continue;
    places[i].beginsRound = places[i].isTurned = isReading && circle.isTurnedBy(row);
    if (isStation || places[i].isTurned) {
      circle.divide(places);
      circle = Circle();
    }
    if (isReading) circle.add(row, i, places[i]);
  }
  circle.divide(places);
  return places;
}

}  // namespace kvn::detail
