#include "adjust/linalg/SparseCholesky.h"

#include "adjust/linalg/Index.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <set>
#include <utility>

namespace kvn::sparse {
namespace {

using detail::index;
using detail::Region;

// Multiplications in the time of moving an element between memory and a front.
constexpr double kOverhead = 10.0;

/// Not filled: what is calculated first is written first.
std::unique_ptr<double[]> room(std::size_t size) {
  return std::unique_ptr<double[]>(new double[std::max<std::size_t>(size, 1)]);
}

/// The columns of a matrix by columns, `stride` elements apart, from the diagonal on and one behind the other. `to` may
/// be the place of the matrix or stand before it.
void pack(double const* matrix, std::size_t stride, std::size_t rows, std::size_t columns, double* to) {
  for (std::size_t k = 0; k < columns; ++k) {
    double const* const column = matrix + k * stride;
    if (column + k != to) std::copy(column + k, column + rows, to);
    to += rows - k;
  }
}

/// A symmetric matrix whose lower triangle is packed, with both triangles.
void unpackSymmetric(double const* packed, std::size_t rows, double* matrix, std::size_t stride) {
  for (std::size_t k = 0; k < rows; ++k) {
    double* const column = matrix + k * stride;
    std::copy(packed, packed + (rows - k), column + k);
    packed += rows - k;
    for (std::size_t i = k + 1; i < rows; ++i) matrix[i * stride + k] = column[i];
  }
}

/// Each where its first block stands.
std::vector<int> groupsInOrder(JoinedGraph const& joined, std::vector<int> const& blockOrder) {
  std::vector<bool> isIn(joined.graph.sizes.size(), false);
  std::vector<int> groups;
  groups.reserve(isIn.size());
  for (int const block : blockOrder) {
    int const group = joined.groupOf[index(block)];
    if (isIn[index(group)]) continue;
    isIn[index(group)] = true;
    groups.push_back(group);
  }
  return groups;
}

}  // namespace

SparseCholesky::SparseCholesky(std::vector<int> const& blockSizes, std::vector<Clique> const& cliques,
                               std::vector<int> const& blockOrder, Poll const& poll)
    : SparseCholesky(blockSizes, joinTwins(graphOf(blockSizes, cliques, poll), poll), blockOrder, poll) {}

SparseCholesky::SparseCholesky(std::vector<int> const& blockSizes, JoinedGraph const& joined,
                               std::vector<int> const& blockOrder, Poll const& poll)
    : tree(joined.graph,
           blockOrder.empty() ? eliminationOrder(joined.graph, {}, poll) : groupsInOrder(joined, blockOrder), poll) {
  Effort effort(poll);
  buildColumns(joined.graph, blockSizes, joined.groupOf, effort);
  local.assign(placeOf.size(), -1);
  least.assign(placeOf.size(), 0.0);
}

// ---- Places.

void SparseCholesky::buildColumns(BlockGraph const& graph, std::vector<int> const& blockSizes,
                                  std::vector<int> const& groupOf, Effort& effort) {
  std::vector<int> rankOf(tree.blockOrder.size());
  groups.reserve(tree.blockOrder.size() + 1);
  for (std::size_t rank = 0; rank < tree.blockOrder.size(); ++rank) {
    int const group = tree.blockOrder[rank];
    rankOf[index(group)] = static_cast<int>(rank);
    groups.push_back({static_cast<int>(groupAt.size()), 0, 0, 0});
    groupAt.insert(groupAt.end(), index(graph.sizes[index(group)]), static_cast<int>(rank));
  }
  groups.push_back({static_cast<int>(groupAt.size()), 0, 0, 0});

  placeOf.reserve(groupAt.size());
  std::vector<int> next;
  next.reserve(groups.size());
  for (Group const& group : groups) next.push_back(group.first);
  for (std::size_t b = 0; b < blockSizes.size(); ++b) {
    int& place = next[index(rankOf[index(groupOf[b])])];
    for (int i = 0; i < blockSizes[b]; ++i) placeOf.push_back(place++);
  }

  laterNeighbours.reserve(graph.neighbours.size() / 2);
  std::vector<int> later;  // ranks
  for (std::size_t rank = 0; rank < tree.blockOrder.size(); ++rank) {
    effort.step();
    int const group = tree.blockOrder[rank];
    later.clear();
    for (std::size_t p = graph.starts[index(group)]; p < graph.starts[index(group) + 1]; ++p) {
      int const other = rankOf[index(graph.neighbours[p])];
      if (other > static_cast<int>(rank)) later.push_back(other);
    }
    std::sort(later.begin(), later.end());
    int const width = groups[rank + 1].first - groups[rank].first;
    int& height = groups[rank].height;
    height = width;
    for (int const other : later) {
      laterNeighbours.push_back({groups[index(other)].first, height});
      height += groups[index(other) + 1].first - groups[index(other)].first;
    }
    groups[rank + 1].later = laterNeighbours.size();
    groups[rank + 1].values = groups[rank].values + index(width) * index(height);
  }
  values.assign(groups.back().values, 0.0);
}

/// Of the unknowns at two places.
SparseCholesky::Slot SparseCholesky::slotAt(int row, int column) const {
  if (row < column) std::swap(row, column);
  std::size_t const number = index(groupAt[index(column)]);
  Group const& group = groups[number];
  Group const& next = groups[number + 1];
  std::size_t const start = group.values + index(column - group.first) * index(group.height);
  if (row < next.first) return {start + index(row - group.first), true};
  auto const begin = laterNeighbours.begin() + static_cast<std::ptrdiff_t>(group.later);
  auto const end = laterNeighbours.begin() + static_cast<std::ptrdiff_t>(next.later);
  auto const isBefore = [row](LaterNeighbour const& other) { return other.first <= row; };
  constexpr std::ptrdiff_t kFew = 16;  // looked at one by one: mostly they are, and a search would go astray
  auto const behind =
      end - begin <= kFew ? std::find_if_not(begin, end, isBefore) : std::partition_point(begin, end, isBefore);
  if (behind == begin) return {0, false};
  LaterNeighbour const& found = *(behind - 1);
  int const at = found.row + row - found.first;
  return {start + index(at), at < (behind == end ? group.height : behind->row)};
}

SparseCholesky::SparseCholesky(SparseCholesky const& other)
    : tree(other.tree),
      placeOf(other.placeOf),
      groupAt(other.groupAt),
      groups(other.groups),
      laterNeighbours(other.laterNeighbours),
      values(other.values),
      inverseValues(other.inverseValues),
      least(other.least),
      local(other.local) {
  if (!other.l) return;
  l = room(factorSize());
  std::copy(other.l.get(), other.l.get() + factorSize(), l.get());
}

void SparseCholesky::clear() {
  if (values.empty()) values.swap(inverseValues);
  values.assign(groups.back().values, 0.0);
  inverseValues.clear();
}

void SparseCholesky::add(int i, int j, double value) {
  Slot const element = slot(i, j);
  if (element.exists) values[element.at] += value;
}

/// Calls visit(r, c, index of the element (at[r], at[c])) for each pair of unknowns once, c up to r, if it has an
/// element. Unknowns that stand side by side in one group, as x and y of a point do, are looked up together.
template <typename Visit>
void SparseCholesky::visitPairs(int const* at, int count, Visit visit) const {
  struct Run {
    int begin;
    int end;
    int place;
    int group;
  };
  constexpr std::size_t kFew = 8;
  Run few[kFew];
  std::vector<Run> many;
  if (index(count) > kFew) many.resize(index(count));
  Run* const runs = many.empty() ? few : many.data();
  int last = -1;
  for (int i = 0; i < count; ++i) {
    int const place = placeOf[index(at[i])];
    int const group = groupAt[index(place)];
    bool const goesOn = last >= 0 && runs[last].group == group && place == runs[last].place + i - runs[last].begin;
    if (!goesOn) runs[++last] = {i, i, place, group};
    runs[last].end = i + 1;
  }
  for (Run const* r = runs; r <= runs + last; ++r) {
    for (Run const* c = runs; c <= r; ++c) {
      Slot const first = slotAt(r->place, c->place);
      if (!first.exists) continue;
      bool const isBelow = r->place >= c->place;
      std::size_t const height = index(groups[index(isBelow ? c->group : r->group)].height);
      std::size_t const rowStep = isBelow ? 1 : height;
      std::size_t const columnStep = isBelow ? height : 1;
      for (int i = r->begin; i < r->end; ++i) {
        for (int j = c->begin; j < c->end && j <= i; ++j) {
          visit(i, j, first.at + index(i - r->begin) * rowStep + index(j - c->begin) * columnStep);
        }
      }
    }
  }
}

void SparseCholesky::addEquation(double const* a, int const* at, int count, double p) {
  visitPairs(at, count, [&](int r, int c, std::size_t element) { values[element] += p * a[r] * a[c]; });
}

double SparseCholesky::diagonal(int unknown) const { return values[slot(unknown, unknown).at]; }

/// Calls visit(row, index of its value) for the elements of N in one column, on and below the diagonal.
template <typename Visit>
void SparseCholesky::visitColumn(int place, Visit visit) const {
  std::size_t const number = index(groupAt[index(place)]);
  Group const& group = groups[number];
  Group const& next = groups[number + 1];
  std::size_t at = group.values + index(place - group.first) * index(group.height + 1);
  for (int row = place; row < next.first; ++row) visit(row, at++);
  for (std::size_t p = group.later; p < next.later; ++p) {
    LaterNeighbour const& other = laterNeighbours[p];
    int const end = p + 1 < next.later ? laterNeighbours[p + 1].row : group.height;
    for (int i = 0; i < end - other.row; ++i) visit(other.first + i, at++);
  }
}

SparseCholesky SparseCholesky::withPairs(std::vector<Clique> pairs, Poll const& poll) const {
  std::vector<int> unknownAt(placeOf.size());
  for (int i = 0; i < unknowns(); ++i) unknownAt[index(placeOf[index(i)])] = i;
  for (int place = 0; place < unknowns(); ++place) {
    int const column = unknownAt[index(place)];
    visitColumn(place, [&](int row, std::size_t) { pairs.push_back({column, unknownAt[index(row)], -1}); });
  }
  // Each unknown is a block of its own: those with the same neighbours are joined again.
  SparseCholesky larger(std::vector<int>(placeOf.size(), 1), pairs, {}, poll);
  for (int place = 0; place < unknowns(); ++place) {
    int const column = unknownAt[index(place)];
    visitColumn(place, [&](int row, std::size_t at) { larger.add(column, unknownAt[index(row)], values[at]); });
  }
  return larger;
}

SparseCholesky::FrontColumns SparseCholesky::frontColumns(int f) const {
  std::size_t const width = index(tree.columns(f));
  return {l.get() + tree.factorStarts[index(f)], width, width + index(tree.rowCount(f)), tree.rowsOf(f)};
}

void SparseCholesky::rememberPlaces(int f) {
  int row = 0;
  for (int place = tree.firstColumns[index(f)]; place < tree.firstColumns[index(f) + 1]; ++place) {
    local[index(place)] = row++;
  }
  int const* const rows = tree.rowsOf(f);
  for (int i = 0; i < tree.rowCount(f); ++i) local[index(rows[i])] = row++;
}

// ---- The factor.

void SparseCholesky::findLeast(Bounds const& bounds, Effort& effort) {
  for (std::size_t i = 0; i < placeOf.size(); ++i) {
    effort.step();
    double const element = diagonal(static_cast<int>(i));
    least[index(placeOf[i])] = std::max(bounds.least, element * bounds.shareOfDiagonal);
  }
}

/// Adds what the elimination of a child left, the lower triangle of a matrix of its rows.
void SparseCholesky::addUpdate(int child, double const* update, FrontColumns const& parent,
                               double* parentUpdate) const {
  std::size_t const size = index(tree.rowCount(child));
  std::size_t const below = parent.height - parent.width;
  int const* const rows = tree.rowsOf(child);
  for (std::size_t j = 0; j < size; ++j) {
    std::size_t const column = index(local[index(rows[j])]);
    double const* source = update;
    update += size - j;
    if (column < parent.width) {
      double* const target = parent.data + column * parent.height;
      for (std::size_t i = j; i < size; ++i) target[local[index(rows[i])]] += *source++;
    } else {
      double* const target = parentUpdate + (column - parent.width) * below;
      for (std::size_t i = j; i < size; ++i) target[index(local[index(rows[i])]) - parent.width] += *source++;
    }
  }
}

std::vector<std::vector<int>> SparseCholesky::childrenOfFronts() const {
  std::vector<std::vector<int>> children(index(tree.fronts()));
  for (int f = 0; f < tree.fronts(); ++f) {
    if (tree.parents[index(f)] >= 0) children[index(tree.parents[index(f)])].push_back(f);
  }
  return children;
}

// A front is worked on as a full matrix in its place in the factor, where the next ones will stand, and then packed;
// the last ones, which have no such room behind them, elsewhere.
bool SparseCholesky::factor(Bounds const& bounds, Poll const& poll) {
  if (!l) l = room(factorSize());
  Effort effort(poll);
  findLeast(bounds, effort);
  auto const memory = room(tree.updateStackSize);
  double* const stack = memory.get();
  std::size_t top = 0;
  std::vector<std::vector<int>> const children = childrenOfFronts();
  std::unique_ptr<double[]> last;
  for (int f = 0; f < tree.fronts(); ++f) {
    FrontColumns front = frontColumns(f);
    std::size_t const below = front.height - front.width;
    if (tree.factorStarts[index(f)] + front.width * front.height > factorSize()) {
      last = room(front.width * front.height);
      front.data = last.get();
    }
    int const first = tree.firstColumns[index(f)];
    rememberPlaces(f);
    effort.spend(kOverhead * static_cast<double>(front.height * front.height));
    std::fill(front.data, front.data + front.width * front.height, 0.0);
    for (std::size_t k = 0; k < front.width; ++k) {
      double* const column = front.data + k * front.height;
      visitColumn(first + static_cast<int>(k),
                  [&](int row, std::size_t at) { column[local[index(row)]] = values[at]; });
    }
    double* const update = stack + top;
    for (std::size_t j = 0; j < below; ++j) std::fill(update + j * below + j, update + (j + 1) * below, 0.0);
    std::size_t bottom = top;
    for (auto child = children[index(f)].rbegin(); child != children[index(f)].rend(); ++child) {
      bottom -= triangleSize(index(tree.rowCount(*child)));
      addUpdate(*child, stack + bottom, front, update);
    }
    if (factorColumns(effort, front.data, front.height, front.height, front.width, least.data() + first) < front.width)
      return false;
    double const* const lower = front.data + front.width;
    addProduct(effort, below, below, front.width, -1.0, byColumns(lower, front.height), transposed(lower, front.height),
               update, below, Region::Lower);
    pack(front.data, front.height, front.height, front.width, frontColumns(f).data);
    // The update takes the room of those that went into it.
    pack(update, below, below, below, stack + bottom);
    top = bottom + triangleSize(below);
  }
  return true;
}

std::vector<double> SparseCholesky::pivots() const {
  std::vector<double> byPlace(placeOf.size());
  for (int f = 0; f < tree.fronts(); ++f) {
    FrontColumns const front = frontColumns(f);
    for (std::size_t k = 0; k < front.width; ++k) {
      double const root = front.column(k)[k];
      byPlace[index(tree.firstColumns[index(f)]) + k] = root * root;
    }
  }
  std::vector<double> result;
  result.reserve(placeOf.size());
  for (int const place : placeOf) result.push_back(byPlace[index(place)]);
  return result;
}

// ---- Solutions.

void SparseCholesky::solve(std::vector<double>& x, Poll const& poll) const {
  Effort effort(poll);
  std::vector<double> y(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) y[index(placeOf[i])] = x[i];
  substituteForward(y, effort);
  substituteBackward(y, effort);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = y[index(placeOf[i])];
}

/// N v = L D L' v = 0 where L' v is 0 at every pivot of D that is one, and anything at the others.
std::vector<std::vector<double>> SparseCholesky::freeVectors(double weakness, int count) const {
  std::vector<double> const pivot = pivots();
  std::mt19937 random(1);
  std::vector<std::vector<double>> vectors(index(count), std::vector<double>(pivot.size()));
  std::vector<double> y;
  Poll const poll;
  Effort effort(poll);
  for (std::vector<double>& v : vectors) {
    y.assign(pivot.size(), 0.0);
    for (std::size_t k = 0; k < pivot.size(); ++k) {
      double const number = static_cast<double>(random()) / 2147483648.0 - 1.0;
      if (pivot[k] > weakness * std::max(diagonal(static_cast<int>(k)), 1.0)) continue;
      y[index(placeOf[k])] = number * std::sqrt(pivot[k]);
    }
    substituteBackward(y, effort);
    for (std::size_t k = 0; k < pivot.size(); ++k) v[k] = y[index(placeOf[k])];
  }
  return vectors;
}

void SparseCholesky::substituteForward(std::vector<double>& y, Effort& effort) const {
  for (int f = 0; f < tree.fronts(); ++f) eliminateFront(f, y, effort);
}

void SparseCholesky::eliminateFront(int f, std::vector<double>& y, Effort& effort) const {
  FrontColumns const front = frontColumns(f);
  effort.spend(kOverhead * static_cast<double>(front.width * front.height));
  double* const own = y.data() + tree.firstColumns[index(f)];
  for (std::size_t k = 0; k < front.width; ++k) {
    double const* const column = front.column(k);
    own[k] /= column[k];
    for (std::size_t i = k + 1; i < front.width; ++i) own[i] -= column[i] * own[k];
    for (std::size_t i = front.width; i < front.height; ++i) {
      y[index(front.rows[i - front.width])] -= column[i] * own[k];
    }
  }
}

/// The fronts of the unknowns and all above them, in the order of elimination.
std::vector<int> SparseCholesky::frontsReached(std::vector<SparseVector> const& b) const {
  std::set<int> reached;
  for (SparseVector const& vector : b) {
    for (auto const& [unknown, element] : vector) {
      auto const next = std::upper_bound(tree.firstColumns.begin(), tree.firstColumns.end(), placeOf[index(unknown)]);
      int f = static_cast<int>(next - tree.firstColumns.begin()) - 1;
      while (f >= 0 && reached.insert(f).second) f = tree.parents[index(f)];
    }
  }
  return {reached.begin(), reached.end()};
}

/// b_i' N^-1 b_j = (L^-1 b_i)' (L^-1 b_j).
std::vector<double> SparseCholesky::products(std::vector<SparseVector> const& b, std::vector<double>& work,
                                             Poll const& poll) const {
  Effort effort(poll);
  work.resize(placeOf.size(), 0.0);
  std::vector<int> const fronts = frontsReached(b);
  std::vector<std::vector<double>> reduced(b.size());
  for (std::size_t i = 0; i < b.size(); ++i) {
    for (auto const& [unknown, element] : b[i]) work[index(placeOf[index(unknown)])] += element;
    for (int const f : fronts) {
      eliminateFront(f, work, effort);
      auto const begin = work.begin() + tree.firstColumns[index(f)];
      auto const end = work.begin() + tree.firstColumns[index(f) + 1];
      reduced[i].insert(reduced[i].end(), begin, end);
      std::fill(begin, end, 0.0);
    }
  }
  std::vector<double> result;
  for (std::vector<double> const& row : reduced) {
    for (std::vector<double> const& column : reduced) {
      result.push_back(std::inner_product(row.begin(), row.end(), column.begin(), 0.0));
    }
  }
  return result;
}

void SparseCholesky::substituteBackward(std::vector<double>& y, Effort& effort) const {
  for (int f = tree.fronts() - 1; f >= 0; --f) {
    FrontColumns const front = frontColumns(f);
    effort.spend(kOverhead * static_cast<double>(front.width * front.height));
    double* const own = y.data() + tree.firstColumns[index(f)];
    for (std::size_t k = front.width; k-- > 0;) {
      double const* const column = front.column(k);
      double sum = own[k];
      for (std::size_t i = k + 1; i < front.width; ++i) sum -= column[i] * own[i];
      for (std::size_t i = front.width; i < front.height; ++i) {
        sum -= column[i] * y[index(front.rows[i - front.width])];
      }
      own[k] = sum / column[k];
    }
  }
}

// ---- The inverse.

void SparseCholesky::invertInPlace(Poll const& poll) {
  inverseValues = std::move(values);
  values = {};
  invert(poll);
}

// Z, the inverse, on the rows R below the columns C of a front is known from its parent. From L' Z = L^-1 follow, with
// Y = L_RC L_CC^-1, first Z_RC = -Z_RR Y and then Z_CC = (L_CC L_CC')^-1 - Y' Z_RC. A front that is done leaves each
// child its Z_RR, on a stack: the last child comes next.
void SparseCholesky::invert(Poll const& poll) {
  Effort effort(poll);
  inverseValues.resize(groups.back().values);
  std::vector<std::vector<int>> const children = childrenOfFronts();
  std::size_t largest = 0;
  for (int f = 0; f < tree.fronts(); ++f) largest = std::max(largest, frontColumns(f).height);
  auto const ofFront = room(largest * largest);
  std::size_t const most = waitingForInverse();
  auto const waiting = room(most);
  double* const z = ofFront.get();
  double* const stack = waiting.get();
  std::size_t top = 0;
  std::vector<double> triangle;
  for (int f = tree.fronts() - 1; f >= 0; --f) {
    FrontColumns const front = frontColumns(f);
    std::size_t const below = front.height - front.width;
    effort.spend(kOverhead * static_cast<double>(front.height * front.height));
    top -= triangleSize(below);
    unpackSymmetric(stack + top, below, z + front.width * front.height + front.width, front.height);
    // The first fronts, the largest, find room on the stack, which is empty then.
    bool const hasRoom = top + front.width * front.width <= most;
    if (!hasRoom) triangle.resize(std::max(triangle.size(), front.width * front.width));
    invertFront(front, z, hasRoom ? stack + top : triangle.data(), effort);
    rememberPlaces(f);
    for (std::size_t k = 0; k < front.width; ++k) {
      double const* const column = z + k * front.height;
      visitColumn(tree.firstColumns[index(f)] + static_cast<int>(k),
                  [&](int row, std::size_t at) { inverseValues[at] = column[local[index(row)]]; });
    }
    for (int const child : children[index(f)]) {
      gatherInverse(child, z, front.height, stack + top);
      top += triangleSize(index(tree.rowCount(child)));
    }
  }
}

/// Elements that the fronts of which the parents are done have of the inverse, at most.
std::size_t SparseCholesky::waitingForInverse() const {
  std::size_t most = 0;
  std::size_t now = 0;
  std::vector<std::size_t> left(index(tree.fronts()), 0);
  for (int f = 0; f < tree.fronts(); ++f) {
    if (tree.parents[index(f)] >= 0) left[index(tree.parents[index(f)])] += triangleSize(index(tree.rowCount(f)));
  }
  for (int f = tree.fronts() - 1; f >= 0; --f) {
    now += left[index(f)];
    now -= triangleSize(index(tree.rowCount(f)));  // 0 of a root
    most = std::max(most, now);
  }
  return most;
}

/// Z on the rows of a child, out of that of its parent, the places of whose rows are remembered.
void SparseCholesky::gatherInverse(int child, double const* z, std::size_t height, double* childRows) const {
  std::size_t const size = index(tree.rowCount(child));
  int const* const rows = tree.rowsOf(child);
  for (std::size_t j = 0; j < size; ++j) {
    double const* const column = z + index(local[index(rows[j])]) * height;
    for (std::size_t i = j; i < size; ++i) *childRows++ = column[local[index(rows[i])]];
  }
}

/// @param z                a full matrix by columns, in which Z_RR stands.
/// @param inverseTriangle  room for L_CC^-1.
void SparseCholesky::invertFront(FrontColumns const& front, double* z, double* inverseTriangle, Effort& effort) {
  std::size_t const width = front.width;
  std::size_t const height = front.height;
  std::size_t const below = height - width;
  // The columns of the factor stand where those of Z come.
  for (std::size_t k = 0; k < width; ++k) {
    double const* const column = front.column(k);
    std::copy(column + k, column + height, z + k * height + k);
  }
  invertTriangle(effort, z, height, width, inverseTriangle, width);
  // Y', above Z_RR.
  double* const ratio = z + width * height;
  for (std::size_t i = 0; i < below; ++i) std::fill(ratio + i * height, ratio + i * height + width, 0.0);
  addProduct(effort, width, below, width, 1.0, transposed(inverseTriangle, width), transposed(z + width, height), ratio,
             height);
  for (std::size_t k = 0; k < width; ++k) std::fill(z + k * height, z + (k + 1) * height, 0.0);
  addProduct(effort, below, width, below, -1.0, byColumns(ratio + width, height), transposed(ratio, height), z + width,
             height);
  addProduct(effort, width, width, width, 1.0, transposed(inverseTriangle, width), byColumns(inverseTriangle, width), z,
             height, Region::Lower);
  addProduct(effort, width, width, below, -1.0, byColumns(ratio, height), byColumns(z + width, height), z, height,
             Region::Lower);
}

double SparseCholesky::inverse(int i, int j) const {
  Slot const place = slot(i, j);
  return place.exists ? elements()[place.at] : 0.0;
}

bool SparseCholesky::holdsAll(int const* at, int count) const {
  for (int r = 0; r < count; ++r) {
    for (int c = 0; c < r; ++c) {
      if (!slot(at[r], at[c]).exists) return false;
    }
  }
  return true;
}

double SparseCholesky::cofactor(double const* a, int const* at, int count) const {
  std::vector<double> const& known = elements();
  double q = 0.0;
  visitPairs(at, count,
             [&](int r, int c, std::size_t element) { q += (r == c ? 1.0 : 2.0) * a[r] * a[c] * known[element]; });
  return q;
}

void SparseCholesky::block(int const* at, int count, double* q) const {
  std::vector<double> const& known = elements();
  visitPairs(at, count,
             [&](int r, int c, std::size_t element) { q[r * count + c] = q[c * count + r] = known[element]; });
}

}  // namespace kvn::sparse
