#include "adjust/start/Frame.h"

#include "adjust/CommonFunction.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/CommonAngle.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn::detail {
namespace {

// Sines of 6 degrees, 1 degree and 5 minutes: a place is the better, the sharper its loci cross.
constexpr double kSharpness[] = {0.1, 0.017, 0.0015};
constexpr int kRoot = 0;
// The frame is refined only after this many new points: fewer have not let errors grow.
constexpr std::size_t kFewPoints = 10;
constexpr double kMeeting = 1e4;  // multiplications in the time of a look at one point

}  // namespace

Frame::Frame(NumberedNetwork const& network, std::vector<int>& owner, int id, bool hasScale)
    : net(network), ownerOf(owner), self(id), scaled(hasScale) {}

double Frame::pointError() const { return scaled ? Locus::kPointErrors * net.distanceError(0.0) : 0.0; }

bool Frame::mayOrient(int station) const {
  int const owner = ownerOf[index(station)];
  return self == kRoot || owner < 0 || owner == self;
}

void Frame::place(int point, Place at) {
  if (!places.emplace(point, at).second) return;
  placed.push_back(point);
  tellOfPlace(point);
}

void Frame::orient(int station, double azimuth) {
  if (!mayOrient(station) || !circles.emplace(station, Circle{foldedAngle(azimuth), 0}).second) return;
  ownerOf[index(station)] = self;
  oriented.push_back(station);
  tellOfCircle(station);
}

void Frame::release() {
  for (int const station : oriented) {
    if (ownerOf[index(station)] == self) ownerOf[index(station)] = -1;
  }
}

void Frame::tellOfPlace(int point) {
  for (int const d : net.sightingsOf(point)) {
    int const station = net.direction(d).station;
    int const from = net.pointOf(station);
    int const targets = ++placedTargets[station];
    if (has(from)) {
      orientByTargets(station);
    } else if (isOriented(station) || targets >= 2) {
      addLocus(from);
    }
  }
  for (int const station : net.stationsAt(point)) {
    orientByTargets(station);
    if (!isOriented(station)) continue;
    for (int d = net.firstDirection(station); d < net.endDirection(station); ++d) addLocus(net.direction(d).target);
  }
  for (int const line : net.linesAt(point)) {
    int const other = net.otherEnd(line, point);
    if (!scaled && has(other)) scaleLine = line;
    if (scaled) addLocus(other);
  }
}

void Frame::tellOfCircle(int station) {
  int const from = net.pointOf(station);
  addLocus(from);
  for (int d = net.firstDirection(station); d < net.endDirection(station); ++d) {
    int const target = net.direction(d).target;
    if (has(from)) addLocus(target);
    for (int const partner : net.stationsAt(target)) {
      int const back = net.directionTo(partner, from);
      if (back < 0 || isOriented(partner) || !mayOrient(partner)) continue;
      double const azimuth = orientation(station) + net.direction(d).value + CommonFunction::m_PI;
      partners.emplace(partner, azimuth - net.direction(back).value);
    }
  }
}

void Frame::addLocus(int point) {
  if (has(point)) return;
  int const count = ++lociCount[point];
  if (count >= 2) ready[Sharp].emplace(count, -point);
}

/// Orients the station, and again when it has twice as many placed targets.
void Frame::orientByTargets(int station) {
  int const from = net.pointOf(station);
  auto const before = circles.find(station);
  if (!mayOrient(station) || (before != circles.end() && placedTargets[station] < 2 * before->second.targets)) return;
  std::vector<SeenAngle> seen;
  for (int d = net.firstDirection(station); d < net.endDirection(station); ++d) {
    int const target = net.direction(d).target;
    if (!has(target)) continue;
    Place const sight = at(target) - at(from);
    if (sight != Place()) seen.push_back({std::arg(sight) - net.direction(d).value, std::abs(sight)});
  }
  if (seen.empty()) return;
  double const azimuth = foldedAngle(commonAngle(seen));
  bool const isNew = before == circles.end();
  if (isNew) orient(station, azimuth);
  circles.at(station) = {azimuth, std::max(1, placedTargets[station])};
}

bool Frame::orientByPartner() {
  if (partners.empty()) return false;
  auto const [station, azimuth] = partners.front();
  partners.pop();
  orient(station, azimuth);
  return true;
}

/// From a distance between two placed points; not at once when it turns up, since that may be in the middle of what
/// another frame hands over in the present scale.
bool Frame::takeScale() {
  int const line = std::exchange(scaleLine, -1);
  if (scaled || line < 0) return false;
  double const length = std::abs(at(net.line(line).start) - at(net.line(line).end));
  double const factor = net.line(line).value / length;
  if (!std::isfinite(factor) || factor <= 0.0) return false;
  scaled = true;
  transform(factor, 0.0);
  for (int const point : placed) {
    for (int const l : net.linesAt(point)) addLocus(net.otherEnd(l, point));
  }
  return true;
}

void Frame::transform(Place factor, Place shift) {
  for (auto& entry : places) entry.second = factor * entry.second + shift;
  for (auto& entry : circles) entry.second.azimuth = foldedAngle(entry.second.azimuth + std::arg(factor));
}

void Frame::addRays(int point, std::vector<Locus>& loci) const {
  for (int const d : net.sightingsOf(point)) {
    NumberedNetwork::Direction const& sighting = net.direction(d);
    int const from = net.pointOf(sighting.station);
    if (!isOriented(sighting.station) || !has(from)) continue;
    loci.push_back(Locus::ray(at(from), orientation(sighting.station) + sighting.value, pointError()));
  }
}

void Frame::addArcs(int station, std::vector<Locus>& loci) const {
  NumberedNetwork::Direction const* previous = nullptr;
  for (int d = net.firstDirection(station); d < net.endDirection(station); ++d) {
    NumberedNetwork::Direction const& next = net.direction(d);
    if (!has(next.target)) continue;
    if (isOriented(station)) {
      double const back = orientation(station) + next.value + CommonFunction::m_PI;
      loci.push_back(Locus::ray(at(next.target), back, pointError()));
    } else if (previous != nullptr && previous->target != next.target) {
      loci.push_back(Locus::arc(at(previous->target), at(next.target), next.value - previous->value, pointError()));
    }
    previous = &next;
  }
}

std::vector<Locus> Frame::lociOf(int point) const {
  std::vector<Locus> loci;
  addRays(point, loci);
  for (int const station : net.stationsAt(point)) addArcs(station, loci);
  if (!scaled) return loci;
  for (int const line : net.linesAt(point)) {
    int const other = net.otherEnd(line, point);
    if (has(other)) loci.push_back(Locus::distance(at(other), net.line(line).value, pointError()));
  }
  return loci;
}

/// Looks at the point that waits with the most loci; false when none waits.
bool Frame::tryNext(Rigour rigour) {
  if (ready[rigour].empty()) return false;
  auto const [count, negated] = ready[rigour].top();
  ready[rigour].pop();
  int const point = -negated;
  if (has(point) || lociCount[point] != count) return true;
  Place const hint = hints == nullptr ? kNoPlace : (*hints)[index(point)];
  Meeting const meeting = meetingPlace(lociOf(point), kSharpness[rigour], hint);
  if (meeting.place) {
    place(point, *meeting.place);
    return true;
  }
  if (meeting.isAmbiguous && hasPlace(hint)) undecidedPoints.push_back(point);
  if (rigour != Weak) ready[rigour + 1].emplace(count, -point);
  return true;
}

void Frame::grow(Poll const& poll) {
  Effort effort(poll);
  if (anchors < 0) {
    anchors = static_cast<int>(placed.size());
    refinedAt = placed.size();
  }
  while (takeScale() || tryNext(Sharp) || orientByPartner() || tryNext(Fair) || tryNext(Weak)) {
    effort.spend(kMeeting);
    if (2 * placed.size() >= 3 * refinedAt + kFewPoints) refine(poll);
  }
  if (placed.size() > refinedAt + kFewPoints) refine(poll);
}

}  // namespace kvn::detail
