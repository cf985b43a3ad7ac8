#include "adjust/start/BodySolver.h"

#include "adjust/CommonFunction.h"
#include "adjust/linalg/Index.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <set>
#include <utility>

namespace kvn::detail {
namespace {

constexpr int kBase = -1;
constexpr int kNowhere = -2;
// Starts for each unknown, and their least and greatest number in all.
constexpr int kStartsForEach = 30;
constexpr int kFewestStarts = 300;
constexpr int kMostStarts = 600;
// A solution counts as the only one when this many starts reached it and no other solution appeared.
constexpr int kSureHits = 5;
// The same when some observation has leverage 1, so that nothing checks it: several solutions are then likely.
constexpr int kManyHits = 40;
constexpr double kFullLeverage = 1.0 - 1e-6;
constexpr int kIterations = 60;
// Relative misfit (RMS residual / extent): below kFits, plus kErrors a-priori errors, a solution explains the
// observations; above kFitsRoughly it is discarded.
constexpr double kFits = 5e-5;
constexpr double kErrors = 5.0;
constexpr double kFitsRoughly = 0.03;
constexpr double kSamePlace = 1e-4;
// Solutions that are looked at for mirror images of their parts.
constexpr std::size_t kMostSolutions = 32;
// Of several solutions the one that lies nearest to the hints is taken if it is nearer than this share of the distance
// of every other one.
constexpr double kClearlyNearer = 0.8;
// Starts from the hints themselves, where there are some.
constexpr int kStartsAtHints = 4;
// How strongly a place at random draws, against what is observed.
constexpr double kPull = 1e-6;
constexpr int kLeastStarts = 24;
constexpr double kRankThreshold = 5e-4;

using Vector = Eigen::VectorXd;
using Matrix = Eigen::MatrixXd;

/// A point, as a body has it.
struct Spot {
  int body;  ///< kBase, or number of the body
  Place local;
};

/// A circle that belongs to a body, to the base, or to nobody.
struct Circle {
  int body;
  double azimuth;  ///< in the body
  int unknown;     ///< number of its own unknown
};

struct Sight {
  Spot from;
  Spot to;
  Circle circle;
  double value;
};
struct Length {
  Spot from;
  Spot to;
  double value;
};
struct Common {
  Spot first;
  Spot second;
};

}  // namespace

struct BodySolver::System {
  System(NumberedNetwork const& network, Frame const& root, std::vector<Body> list)
      : net(network), base(root), bodies(std::move(list)) {
    number();
    collectSights();
    collectLengths();
    collectCommons();
    measure();
  }

  void number() {
    for (Body const& body : bodies) {
      first.push_back(unknowns);
      unknowns += body.frame == nullptr ? 2 : (body.frame->hasScale() ? 3 : 4);
      int const self = static_cast<int>(first.size()) - 1;
      if (body.frame == nullptr) bodyOf[body.point].push_back(self);
      if (body.frame == nullptr) continue;
      for (int const point : body.frame->points()) bodyOf[point].push_back(self);
      for (int const station : body.frame->stations()) bodyOfStation.emplace(station, self);
    }
    endOfBodies = unknowns;
  }

  bool isIn(int body, int point) const {
    if (body == kBase) return base.has(point);
    Body const& b = bodies[index(body)];
    return b.frame == nullptr ? b.point == point : b.frame->has(point);
  }

  Spot spotIn(int body, int point) const {
    if (body == kBase) return {kBase, base.at(point)};
    Body const& b = bodies[index(body)];
    return {body, b.frame == nullptr ? Place() : b.frame->at(point)};
  }

  /// As the preferred body has it, else the base, else any body.
  Spot spotOf(int point, int preferred) const {
    if (preferred != kNowhere && isIn(preferred, point)) return spotIn(preferred, point);
    if (base.has(point)) return spotIn(kBase, point);
    auto const entry = bodyOf.find(point);
    return entry == bodyOf.end() ? Spot{kNowhere, {}} : spotIn(entry->second.front(), point);
  }

  /// The stations that see something of the bodies or stand in them.
  std::set<int> stationsConcerned() const {
    std::set<int> stations;
    for (auto const& [point, list] : bodyOf) {
      for (int const station : net.stationsAt(point)) stations.insert(station);
      for (int const d : net.sightingsOf(point)) stations.insert(net.direction(d).station);
    }
    return stations;
  }

  void collectSights() {
    for (int const station : stationsConcerned()) {
      int const point = net.pointOf(station);
      auto const owner = bodyOfStation.find(station);
      Circle circle{kNowhere, 0.0, -1};
      bool const ofBase = base.isOriented(station) && (base.has(point) || owner == bodyOfStation.end());
      if (ofBase) {
        circle = {kBase, base.orientation(station), -1};
      } else if (owner != bodyOfStation.end()) {
        circle = {owner->second, bodies[index(owner->second)].frame->orientation(station), -1};
      }
      collectSightsOf(station, circle);
    }
  }

  void collectSightsOf(int station, Circle circle) {
    std::vector<Sight> seen;
    for (int d = net.firstDirection(station); d < net.endDirection(station); ++d) {
      Sight const sight{spotOf(net.pointOf(station), circle.body), spotOf(net.direction(d).target, circle.body), circle,
                        net.direction(d).value};
      if (sight.from.body == kNowhere || sight.to.body == kNowhere) continue;
      if (sight.from.body == circle.body && sight.to.body == circle.body) continue;
      seen.push_back(sight);
    }
    if (circle.body == kNowhere) {
      if (seen.size() < 2) return;
      for (Sight& sight : seen) sight.circle.unknown = unknowns;
      ++unknowns;
    }
    sights.insert(sights.end(), seen.begin(), seen.end());
  }

  void collectLengths() {
    std::set<int> lines;
    for (auto const& [point, list] : bodyOf) lines.insert(net.linesAt(point).begin(), net.linesAt(point).end());
    for (int const l : lines) {
      Spot const from = spotOf(net.line(l).start, kNowhere);
      if (from.body == kNowhere) continue;
      Spot const to = spotOf(net.line(l).end, from.body);
      if (to.body == kNowhere || to.body == from.body) continue;
      if (isIn(to.body, net.line(l).start)) continue;
      lengths.push_back({from, to, net.line(l).value});
    }
  }

  void collectCommons() {
    for (auto const& [point, list] : bodyOf) {
      Spot const primary = base.has(point) ? spotIn(kBase, point) : spotIn(list.front(), point);
      for (int const body : list) {
        if (body != primary.body) commons.push_back({primary, spotIn(body, point)});
      }
    }
  }

  void measure() {
    std::vector<Place> around;
    for (Sight const& s : sights) addBase(s.from, around), addBase(s.to, around);
    for (Length const& l : lengths) addBase(l.from, around), addBase(l.to, around);
    for (Common const& c : commons) addBase(c.first, around);
    Place sum;
    for (Place const place : around) sum += place;
    middle = around.empty() ? Place() : sum / static_cast<double>(around.size());
    for (Place const place : around) size = std::max(size, std::abs(place - middle));
    for (Length const& l : lengths) size = std::max(size, l.value);
    if (size == 0.0) size = 1.0;
    fits = kFits + kErrors * (net.directionError + net.distanceError(size) / size);
  }

  static void addBase(Spot const& spot, std::vector<Place>& list) {
    if (spot.body == kBase) list.push_back(spot.local);
  }

  int rows() const { return static_cast<int>(sights.size() + lengths.size() + 2 * commons.size()); }

  Pose pose(int body, Vector const& x) const {
    int const at = first[index(body)];
    Body const& b = bodies[index(body)];
    Place const shift(x[at], x[at + 1]);
    if (b.frame == nullptr) return {1.0, shift};
    return {polar(b.frame->hasScale() ? 1.0 : std::exp(x[at + 3]), x[at + 2]), shift};
  }

  Place placeOf(Spot const& spot, Vector const& x) const {
    if (spot.body == kBase) return spot.local;
    Pose const p = pose(spot.body, x);
    return p.factor * spot.local + p.shift;
  }

  /// Adds the derivative of the product of `along` and the place of the spot to a row.
  void differentiate(Spot const& spot, Place along, Vector const& x, Matrix& j, Eigen::Index row) const {
    if (spot.body == kBase) return;
    int const at = first[index(spot.body)];
    auto const component = [along](Place v) { return along.real() * v.real() + along.imag() * v.imag(); };
    j(row, at) += along.real();
    j(row, at + 1) += along.imag();
    Body const& b = bodies[index(spot.body)];
    if (b.frame == nullptr) return;
    Place const arm = pose(spot.body, x).factor * spot.local;
    j(row, at + 2) += component(arm * Place(0.0, 1.0));
    if (!b.frame->hasScale()) j(row, at + 3) += component(arm);
  }

  /// Residuals and their derivatives, all in metres: directions over the size of the whole.
  void evaluate(Vector const& x, Vector& r, Matrix* j) const {
    Eigen::Index row = 0;
    if (j != nullptr) j->setZero();
    for (Sight const& s : sights) evaluateSight(s, x, r, j, row++);
    for (Length const& l : lengths) {
      Place const line = placeOf(l.to, x) - placeOf(l.from, x);
      double const length = std::max(std::abs(line), 1e-9);
      r[row] = length - l.value;
      if (j != nullptr)
        differentiate(l.to, line / length, x, *j, row), differentiate(l.from, -line / length, x, *j, row);
      ++row;
    }
    for (Common const& c : commons) {
      Place const gap = placeOf(c.second, x) - placeOf(c.first, x);
      for (Place const axis : {Place(1.0, 0.0), Place(0.0, 1.0)}) {
        r[row] = axis.real() * gap.real() + axis.imag() * gap.imag();
        if (j != nullptr) differentiate(c.second, axis, x, *j, row), differentiate(c.first, -axis, x, *j, row);
        ++row;
      }
    }
  }

  void evaluateSight(Sight const& s, Vector const& x, Vector& r, Matrix* j, Eigen::Index row) const {
    Place const line = placeOf(s.to, x) - placeOf(s.from, x);
    double const length = std::max(std::abs(line), 1e-9 * size);
    r[row] = foldedAngle(std::arg(line) - circleOf(s, x) - s.value) * size;
    if (j == nullptr) return;
    Place const across = line * Place(0.0, 1.0) / (length * length) * size;
    differentiate(s.to, across, x, *j, row);
    differentiate(s.from, -across, x, *j, row);
    if (s.circle.unknown >= 0) (*j)(row, s.circle.unknown) -= size;
    if (s.circle.body >= 0) (*j)(row, first[index(s.circle.body)] + 2) -= size;
  }

  /// Turns and orientations at random; then the places and sizes that suit them best, which is a linear problem but for
  /// the distances, and are drawn toward places at random where it leaves them open.
  Vector start(std::mt19937& random) const {
    auto const uniform = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    Vector x(unknowns);
    for (int i = 0; i < unknowns; ++i) x[i] = 2.0 * CommonFunction::m_PI * uniform();
    for (std::size_t b = 0; b < bodies.size(); ++b) {
      double const away = 1.5 * size * std::sqrt(uniform());
      Place const at = middle + polar(away, 2.0 * CommonFunction::m_PI * uniform());
      x[first[b]] = at.real();
      x[first[b] + 1] = at.imag();
      if (!hasSize(b)) continue;
      double extent = 0.0;
      for (int const point : bodies[b].frame->points()) extent = std::max(extent, std::abs(bodies[b].frame->at(point)));
      x[first[b] + 3] = size / std::max(extent, 1e-9) * (0.2 + uniform());
    }
    settle(x);
    return x;
  }

  bool hasSize(std::size_t body) const { return bodies[body].frame != nullptr && !bodies[body].frame->hasScale(); }

  /// Adds the product of `along` and the place of the spot to a linear equation, its turn being given.
  void addPlace(Spot const& spot, Place along, Vector const& x, Vector& row, double& value) const {
    auto const component = [along](Place v) { return along.real() * v.real() + along.imag() * v.imag(); };
    if (spot.body == kBase) {
      value -= component(spot.local - middle);
      return;
    }
    int const at = first[index(spot.body)];
    row[at] += along.real();
    row[at + 1] += along.imag();
    if (bodies[index(spot.body)].frame == nullptr) return;
    Place const arm = spot.local * polar(1.0, x[at + 2]);
    if (hasSize(index(spot.body)))
      row[at + 3] += component(arm);
    else
      value -= component(arm);
  }

  double circleOf(Sight const& s, Vector const& x) const {
    if (s.circle.unknown >= 0) return x[s.circle.unknown];
    return s.circle.azimuth + (s.circle.body >= 0 ? x[first[index(s.circle.body)] + 2] : 0.0);
  }

  /// Places and sizes by least squares; x comes with sizes and leaves with their logarithms.
  void settle(Vector& x) const {
    Vector open = Vector::Zero(unknowns);
    for (std::size_t b = 0; b < bodies.size(); ++b) {
      open[first[b]] = open[first[b] + 1] = 1.0;
      x[first[b]] -= middle.real();
      x[first[b] + 1] -= middle.imag();
      if (hasSize(b)) open[first[b] + 3] = 1.0;
    }
    Matrix normal = Matrix::Zero(unknowns, unknowns);
    Vector right = Vector::Zero(unknowns);
    Vector row(unknowns);
    auto const add = [&](Spot const& from, Spot const& to, Place along) {
      double value = 0.0;
      row.setZero();
      addPlace(to, along, x, row, value);
      addPlace(from, -along, x, row, value);
      normal += row * row.transpose();
      right += value * row;
    };
    for (Sight const& s : sights) add(s.from, s.to, polar(1.0, circleOf(s, x) + s.value) * Place(0.0, 1.0));
    for (Common const& c : commons) add(c.first, c.second, 1.0), add(c.first, c.second, Place(0.0, 1.0));
    for (int i = 0; i < unknowns; ++i) {
      double const pull = open[i] > 0.0 ? kPull * std::max(normal(i, i), 1.0) : 1.0;
      if (open[i] == 0.0) normal.row(i).setZero(), normal.col(i).setZero(), right[i] = 0.0;
      normal(i, i) += pull;
      right[i] += pull * x[i];
    }
    x = normal.ldlt().solve(right);
    for (std::size_t b = 0; b < bodies.size(); ++b) {
      x[first[b]] += middle.real();
      x[first[b] + 1] += middle.imag();
      if (!hasSize(b)) continue;
      double& ratio = x[first[b] + 3];
      if (ratio < 0.0) x[first[b] + 2] += CommonFunction::m_PI;
      ratio = std::log(std::max(std::abs(ratio), 1e-9));
    }
  }

  /// Makes the unknowns comparable: the two coordinates of a body by one number, so that a place which is held in one
  /// direction alone is seen to be.
  void scaleColumns(Matrix& j) const {
    auto const scale = [&j](int column, int count) {
      double const norm = j.middleCols(column, count).colwise().norm().maxCoeff();
      if (norm > 0.0) j.middleCols(column, count) /= norm;
    };
    int end = 0;
    for (std::size_t b = 0; b < bodies.size(); ++b) {
      scale(first[b], 2);
      end = b + 1 < bodies.size() ? first[b + 1] : endOfBodies;
      for (int c = first[b] + 2; c < end; ++c) scale(c, 1);
    }
    for (int c = end; c < unknowns; ++c) scale(c, 1);
  }

  enum class Hold { Loose, Firm, Twice };

  /// How the observations hold the unknowns at these values: Twice when they still do without any one of them.
  /// To be asked only at a solution: away from one the Jacobian can have more rank than the observations justify
  /// (bodies that share a point would seem held by what turns all of them about it).
  Hold holdAt(Vector const& x) const {
    Vector r(rows());
    Matrix j(rows(), unknowns);
    evaluate(x, r, &j);
    scaleColumns(j);
    Eigen::ColPivHouseholderQR<Matrix> qr(j);
    qr.setThreshold(kRankThreshold);
    if (qr.rank() < unknowns) return Hold::Loose;
    Matrix const q = qr.householderQ() * Matrix::Identity(rows(), unknowns);
    return q.rowwise().squaredNorm().maxCoeff() > kFullLeverage ? Hold::Firm : Hold::Twice;
  }

  /// Root mean square of the residuals at the end of the iteration.
  double iterate(Vector& x) const {
    Vector r(rows());
    Vector trial(rows());
    Matrix j(rows(), unknowns);
    double damping = 1e-2;
    evaluate(x, r, &j);
    for (int i = 0; i < kIterations; ++i) {
      Matrix normal = j.transpose() * j;
      Vector const scale = normal.diagonal();
      normal.diagonal() += damping * scale + Vector::Constant(unknowns, 1e-12 * scale.maxCoeff());
      Vector const step = normal.ldlt().solve(-j.transpose() * r);
      evaluate(x + step, trial, nullptr);
      if (trial.squaredNorm() < r.squaredNorm()) {
        x += step;
        bool const settled = trial.norm() > (1.0 - 1e-9) * r.norm() || trial.norm() < 1e-9 * size;
        evaluate(x, r, &j);
        damping = std::max(1e-9, 0.2 * damping);
        if (settled) break;
      } else {
        damping *= 5.0;
        if (damping > 1e8) break;
      }
    }
    return r.norm() / std::sqrt(static_cast<double>(rows()));
  }

  /// What is observed between a single point and the other bodies, these being in their places.
  std::vector<Locus> lociOf(int body, Vector const& x) const {
    double const error = Locus::kPointErrors * net.distanceError(0.0);
    std::vector<Locus> loci;
    Sight const* previous = nullptr;
    for (Sight const& s : sights) {
      if (s.to.body == body) loci.push_back(Locus::ray(placeOf(s.from, x), circleOf(s, x) + s.value, error));
      if (s.from.body != body) continue;
      if (s.circle.unknown < 0) {
        loci.push_back(Locus::ray(placeOf(s.to, x), circleOf(s, x) + s.value + CommonFunction::m_PI, error));
      } else if (previous != nullptr && previous->circle.unknown == s.circle.unknown) {
        loci.push_back(Locus::arc(placeOf(previous->to, x), placeOf(s.to, x), s.value - previous->value, error));
      }
      previous = &s;
    }
    for (Length const& l : lengths) {
      if (l.from.body == body) loci.push_back(Locus::distance(placeOf(l.to, x), l.value, error));
      if (l.to.body == body) loci.push_back(Locus::distance(placeOf(l.from, x), l.value, error));
    }
    return loci;
  }

  /// Whether a single point could be elsewhere while the others stay: the iteration need not have come there.
  bool isAmbiguousAt(Vector const& x) const {
    for (int b = 0; b < static_cast<int>(bodies.size()); ++b) {
      if (bodies[index(b)].frame == nullptr && meetingPlace(lociOf(b, x), 0.0).isAmbiguous) return true;
    }
    return false;
  }

  bool isAt(Spot const& spot, Spot const& other) const { return spot.body == other.body && spot.local == other.local; }

  /// The places between which something is observed, each once, and the pairs of them.
  void collectTies(std::vector<Spot>& spots, std::vector<std::pair<Spot, Spot>>& ties) const {
    for (Sight const& s : sights) ties.emplace_back(s.from, s.to);
    for (Length const& l : lengths) ties.emplace_back(l.from, l.to);
    for (Common const& c : commons) ties.emplace_back(c.first, c.second);
    for (auto const& [from, to] : ties) {
      for (Spot const& spot : {from, to}) {
        if (std::none_of(spots.begin(), spots.end(), [&](Spot const& other) { return isAt(spot, other); }))
          spots.push_back(spot);
      }
    }
  }

  /// The bodies that hang on two places alone, in parts that have no tie with each other, the base or the bodies of the
  /// two: each part could lie on the other side of the line through them as far as distances tell.
  std::vector<std::vector<int>> partsOn(Spot const& p, Spot const& q,
                                        std::vector<std::pair<Spot, Spot>> const& ties) const {
    std::vector<int> part(bodies.size() + 1);  // the last is the base
    for (std::size_t b = 0; b < part.size(); ++b) part[b] = static_cast<int>(b);
    auto const of = [&](int body) { return part[body == kBase ? bodies.size() : index(body)]; };
    for (auto const& [from, to] : ties) {
      if (isAt(from, p) || isAt(from, q) || isAt(to, p) || isAt(to, q) || of(from.body) == of(to.body)) continue;
      std::replace(part.begin(), part.end(), of(from.body), of(to.body));
    }
    std::map<int, std::vector<int>> parts;
    for (std::size_t b = 0; b < bodies.size(); ++b) parts[part[b]].push_back(static_cast<int>(b));
    std::vector<std::vector<int>> hanging;
    for (auto& [number, list] : parts) {
      if (number != of(kBase) && number != of(p.body) && number != of(q.body)) hanging.push_back(std::move(list));
    }
    return hanging;
  }

  Vector mirrored(Vector x, std::vector<int> const& part, Place a, Place along) const {
    for (int const b : part) {
      int const at = first[index(b)];
      Place const place = a + along * std::conj((Place(x[at], x[at + 1]) - a) / along);
      x[at] = place.real();
      x[at + 1] = place.imag();
      if (bodies[index(b)].frame != nullptr) x[at + 2] = 2.0 * std::arg(along) - x[at + 2];
    }
    return x;
  }

  /// Where parts lie that hang on two places, or all bodies on places that lie about on a line, when they are turned
  /// over it: the iteration need not have come there.
  std::vector<Vector> mirrorImages(Vector const& x) const {
    std::vector<Spot> spots;
    std::vector<std::pair<Spot, Spot>> ties;
    collectTies(spots, ties);
    std::vector<Vector> images;
    std::vector<Place> around;
    for (std::size_t i = 0; i < spots.size(); ++i) {
      addBase(spots[i], around);
      for (std::size_t k = 0; k < i; ++k) {
        Place const a = placeOf(spots[k], x);
        Place const along = placeOf(spots[i], x) - a;
        if (std::abs(along) < kSamePlace * size) continue;
        for (auto const& part : partsOn(spots[k], spots[i], ties))
          images.push_back(mirrored(x, part, a, along / std::abs(along)));
      }
    }
    if (around.size() < 3) return images;
    Place sum, squares;
    for (Place const at : around) sum += at;
    sum /= static_cast<double>(around.size());
    for (Place const at : around) squares += (at - sum) * (at - sum);
    std::vector<int> all(bodies.size());
    for (std::size_t b = 0; b < all.size(); ++b) all[b] = static_cast<int>(b);
    images.push_back(mirrored(x, all, sum, polar(1.0, 0.5 * std::arg(squares))));
    return images;
  }

  bool hasHintsForAll(std::vector<Place> const& hints) const {
    return std::all_of(bodyOf.begin(), bodyOf.end(),
                       [&](auto const& entry) { return hasPlace(hints[index(entry.first)]); });
  }

  /// A start with the single points where their hints are.
  Vector startAt(std::vector<Place> const& hints, std::mt19937& random) const {
    Vector x = start(random);
    for (std::size_t b = 0; b < bodies.size(); ++b) {
      if (bodies[b].frame != nullptr || !hasPlace(hints[index(bodies[b].point)])) continue;
      x[first[b]] = hints[index(bodies[b].point)].real();
      x[first[b] + 1] = hints[index(bodies[b].point)].imag();
    }
    return x;
  }

  /// How far all points with hints lie from them: the root of the sum of squares.
  double fromHints(Vector const& x, std::vector<Place> const& hints) const {
    double sum = 0.0;
    for (auto const& [point, list] : bodyOf) {
      if (hasPlace(hints[index(point)]))
        sum += std::norm(placeOf(spotIn(list.front(), point), x) - hints[index(point)]);
    }
    return std::sqrt(sum);
  }

  bool isSame(Vector const& a, Vector const& b) const {
    for (std::size_t i = 0; i < bodies.size(); ++i) {
      Pose const p = pose(static_cast<int>(i), a);
      Pose const q = pose(static_cast<int>(i), b);
      if (std::abs(p.shift - q.shift) > kSamePlace * size) return false;
      if (bodies[i].frame == nullptr) continue;
      for (int const point : bodies[i].frame->points()) {
        Place const local = bodies[i].frame->at(point);
        if (std::abs((p.factor - q.factor) * local + p.shift - q.shift) > kSamePlace * size) return false;
      }
    }
    return true;
  }

  NumberedNetwork const& net;
  Frame const& base;
  std::vector<Body> bodies;
  std::vector<int> first;  // unknown of each body
  int unknowns = 0;
  int endOfBodies = 0;                     // where the orientations of stations between them begin
  std::map<int, std::vector<int>> bodyOf;  // of a point
  std::unordered_map<int, int> bodyOfStation;
  std::vector<Sight> sights;
  std::vector<Length> lengths;
  std::vector<Common> commons;
  Place middle;
  double size = 0.0;
  double fits = 0.0;  // misfit, over the size, up to which values agree with the observations
};

BodySolver::BodySolver(NumberedNetwork const& network, Frame const& base, std::vector<Body> bodies)
    : system(std::make_unique<System>(network, base, std::move(bodies))) {}

BodySolver::~BodySolver() = default;

int BodySolver::size() const { return static_cast<int>(system->bodyOf.size()); }

struct BodySolver::Solution {
  double misfit;  ///< over the size of the whole
  Vector values;
  int hits;
  int wanted;  ///< hits
};

/// All solutions found, the best first; nothing if the observations leave one of them loose.
bool BodySolver::search(Poll const& poll, std::vector<Solution>& solutions) {
  std::mt19937 random(1);
  auto const better = [](Solution const& a, Solution const& b) { return a.misfit < b.misfit; };
  int const most = std::clamp(kStartsForEach * system->unknowns, kFewestStarts, kMostStarts);
  for (int i = 0; i < most; ++i) {
    if (poll) poll();
    spent += std::pow(system->unknowns, 3);
    bool const isAtHints = hints != nullptr && i < kStartsAtHints;
    Vector x = isAtHints ? system->startAt(*hints, random) : system->start(random);
    double const misfit = system->iterate(x) / system->size;
    if (!(misfit < kFitsRoughly)) continue;
    auto const same = std::find_if(solutions.begin(), solutions.end(),
                                   [&](Solution const& other) { return system->isSame(other.values, x); });
    if (same == solutions.end()) {
      System::Hold const hold = misfit < system->fits ? system->holdAt(x) : System::Hold::Firm;
      if (hold == System::Hold::Loose) return false;
      solutions.push_back({misfit, x, 1, hold == System::Hold::Twice ? kSureHits : kManyHits});
    } else {
      ++same->hits;
      if (misfit < same->misfit) same->misfit = misfit, same->values = x;
    }
    std::sort(solutions.begin(), solutions.end(), better);
    if (solutions.size() > 1 && solutions[1].misfit < system->fits) return true;
    if (i >= kLeastStarts && solutions.front().hits >= solutions.front().wanted &&
        solutions.front().misfit < system->fits)
      break;
  }
  return true;
}

/// Puts the mirror images that agree with all observations behind the solutions that do.
void BodySolver::addMirrorImages(std::vector<Solution>& solutions) {
  solutions.erase(
      std::find_if(solutions.begin(), solutions.end(), [this](Solution const& s) { return s.misfit >= system->fits; }),
      solutions.end());
  for (std::size_t i = 0; i < solutions.size(); ++i) {
    for (Vector& image : system->mirrorImages(Vector(solutions[i].values))) {
      if (solutions.size() >= kMostSolutions) return;
      spent += std::pow(system->unknowns, 3);
      double const misfit = system->iterate(image) / system->size;
      bool const isKnown = std::any_of(solutions.begin(), solutions.end(),
                                       [&](Solution const& other) { return system->isSame(other.values, image); });
      if (misfit < system->fits && !isKnown) solutions.push_back({misfit, image, 0, 0});
    }
  }
}

/// The solution that the hints decide for; nothing where they do not, nor where every point has one: the iteration of
/// the whole network then starts from the hints, which is better than any choice among the solutions that were found.
Vector const* BodySolver::chosen(std::vector<Solution> const& solutions) const {
  bool const mayChoose = hints != nullptr && solutions.size() < kMostSolutions && !system->hasHintsForAll(*hints);
  if (!mayChoose) return nullptr;
  Solution const* nearest = nullptr;
  double near = 0.0;
  bool isClear = false;
  for (Solution const& solution : solutions) {
    double const away = system->fromHints(solution.values, *hints);
    if (nearest == nullptr || away < near) {
      isClear = nearest == nullptr || away < kClearlyNearer * near;
      nearest = &solution;
      near = away;
    } else if (near >= kClearlyNearer * away) {
      isClear = false;
    }
  }
  return isClear ? &nearest->values : nullptr;
}

BodySolver::Outcome BodySolver::solve(Poll const& poll) {
  std::mt19937 random(1);
  if (system->rows() < system->unknowns || system->holdAt(system->start(random)) == System::Hold::Loose)
    return Outcome::Undetermined;
  std::vector<Solution> solutions;
  if (!search(poll, solutions)) return Outcome::Undetermined;
  if (solutions.empty() || solutions.front().misfit >= system->fits) return Outcome::NotFound;
  bool const isSure = solutions.front().hits >= solutions.front().wanted;
  addMirrorImages(solutions);
  Vector const* values = &solutions.front().values;
  if (solutions.size() > 1) {
    values = chosen(solutions);
    if (values == nullptr) return Outcome::Ambiguous;
  } else if (!isSure) {
    return Outcome::NotFound;
  } else if (system->isAmbiguousAt(*values)) {
    return Outcome::Ambiguous;
  }
  for (std::size_t b = 0; b < system->bodies.size(); ++b) {
    found.push_back(system->pose(static_cast<int>(b), *values));
  }
  return Outcome::Solved;
}

}  // namespace kvn::detail
