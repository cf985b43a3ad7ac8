// SparseCholesky: symmetric positive definite systems in which each unknown meets few others.
#pragma once

#include "adjust/linalg/BlockGraph.h"
#include "adjust/linalg/DenseFactor.h"
#include "adjust/linalg/FrontTree.h"
#include "adjust/linalg/Index.h"
#include "adjust/linalg/SparseVector.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace kvn::sparse {

/// N = L L' by dense fronts (multifrontal method), and of the inverse of N those elements that stand where N has some.
/// The order of elimination and the place of every element are found once; values may then come again and again:
/// `clear`, `add`, `factor`, then `solve` and `invert`.
class SparseCholesky {
 public:
  /// @param blockSizes  unknowns of each block: block 0 has the unknowns 0 to blockSizes[0] - 1, and so on. All
  ///                    elements within a block may hold values.
  /// @param cliques     blocks whose unknowns meet.
  /// @param blockOrder  order of elimination; nothing for one of its own. One that was found for more cliques, or for
  ///                    blocks of other sizes, serves as well.
  SparseCholesky(std::vector<int> const& blockSizes, std::vector<Clique> const& cliques,
                 std::vector<int> const& blockOrder = {}, Poll const& poll = {});

  SparseCholesky(SparseCholesky const& other);
  SparseCholesky(SparseCholesky&&) = default;
  SparseCholesky& operator=(SparseCholesky const&) = delete;
  SparseCholesky& operator=(SparseCholesky&&) = default;
  ~SparseCholesky() = default;

  /// The same elements of N, not factored, in a system that also has those of the pairs of unknowns. Its order of
  /// elimination is found anew, which takes as long as a factorisation.
  SparseCholesky withPairs(std::vector<Clique> pairs, Poll const& poll = {}) const;

  int unknowns() const { return static_cast<int>(placeOf.size()); }

  /// All elements become 0.
  void clear();
  /// Adds to the element (i, j), and with it to (j, i). An element that no clique brings together is passed over.
  void add(int i, int j, double value);
  /// Adds p a' a: an observation with the weight p that depends on `count` different unknowns `at`.
  void addEquation(double const* a, int const* at, int count, double p);

  /// Bounds that every pivot must be above, besides 0.
  struct Bounds {
    double least = 0.0;
    double shareOfDiagonal = 0.0;  ///< of the element from which elimination took the pivot
  };

  /// False when a pivot is not above its bounds.
  bool factor(Bounds const& bounds, Poll const& poll = {});
  bool factor() { return factor(Bounds()); }
  /// Of each unknown, the pivot and the diagonal element from which elimination took it. After `factor`.
  std::vector<double> pivots() const;
  double diagonal(int unknown) const;

  /// Gives the memory of the factor back. N and the elements of the inverse stay; `factor` brings it again.
  void forgetFactor() { l.reset(); }
  bool hasFactor() const { return l != nullptr; }

  /// Solves N x = b in place. After `factor`.
  void solve(std::vector<double>& x, Poll const& poll = {}) const;
  /// Elements b_i' N^-1 b_j, row by row, of a few vectors that have few elements: only the fronts on their ways to the
  /// root are passed. After `factor`.
  /// @param work  zeros, one for each unknown, or nothing before the first call; left as zeros.
  std::vector<double> products(std::vector<SparseVector> const& b, std::vector<double>& work,
                               Poll const& poll = {}) const;
  /// Random vectors of the (numerical) null space of N; determined unknowns are 0 in them. Free are the pivots
  /// below `weakness` times their diagonal element or, where that is small itself, times 1: one observation along an
  /// unknown. To be called after `factor` with a ridge far below that.
  std::vector<std::vector<double>> freeVectors(double weakness, int count) const;

  /// Calculates the elements of the inverse, from the last front to the first (Takahashi's recursion). After `factor`.
  void invert(Poll const& poll = {});
  /// The same in the room of the elements of N, which are lost.
  void invertInPlace(Poll const& poll = {});
  /// Whether the elements of N are there. Else `restart` begins them anew, all 0, and leaves those of the inverse.
  bool hasElements() const { return !values.empty(); }
  void restart() { values.assign(groups.back().values, 0.0); }
  /// Element (i, j) of the inverse after `invert`, before it that of N; 0 where no clique brings i and j together.
  double inverse(int i, int j) const;
  /// Whether cliques bring each two of the unknowns together.
  bool holdsAll(int const* at, int count) const;
  /// a Q a' with the inverse Q, of unknowns that cliques bring together.
  double cofactor(double const* a, int const* at, int count) const;

  /// The elements of the inverse of unknowns that cliques bring together, row by row into q[count * count].
  void block(int const* at, int count, double* q) const;

  /// Stored elements of the factor, explicit zeros included.
  std::size_t factorSize() const { return tree.factorStarts.back(); }

 private:
  std::vector<double> const& elements() const { return inverseValues.empty() ? values : inverseValues; }

  struct FrontColumns {
    double* data;
    std::size_t width;
    std::size_t height;
    int const* rows;

    /// Elements i of column k, from the diagonal on: column(k)[i] with i >= k.
    double const* column(std::size_t k) const { return data + k * height - triangleSize(k); }
  };
  struct Slot {
    std::size_t at;
    bool exists;
  };
  SparseCholesky(std::vector<int> const& blockSizes, JoinedGraph const& joined, std::vector<int> const& blockOrder,
                 Poll const& poll);
  void buildColumns(BlockGraph const& graph, std::vector<int> const& blockSizes, std::vector<int> const& groupOf,
                    Effort& effort);
  void findLeast(Bounds const& bounds, Effort& effort);
  Slot slot(int i, int j) const { return slotAt(placeOf[detail::index(i)], placeOf[detail::index(j)]); }
  Slot slotAt(int row, int column) const;
  template <typename Visit>
  void visitPairs(int const* at, int count, Visit visit) const;
  template <typename Visit>
  void visitColumn(int place, Visit visit) const;
  FrontColumns frontColumns(int f) const;
  void rememberPlaces(int f);
  std::vector<std::vector<int>> childrenOfFronts() const;
  void addUpdate(int child, double const* update, FrontColumns const& parent, double* parentUpdate) const;
  void substituteForward(std::vector<double>& y, Effort& effort) const;
  void eliminateFront(int f, std::vector<double>& y, Effort& effort) const;
  std::vector<int> frontsReached(std::vector<SparseVector> const& b) const;
  void substituteBackward(std::vector<double>& y, Effort& effort) const;
  std::size_t waitingForInverse() const;
  void gatherInverse(int child, double const* z, std::size_t height, double* childRows) const;
  void invertFront(FrontColumns const& front, double* z, double* inverseTriangle, Effort& effort);

  FrontTree tree;
  std::vector<int> placeOf;  // of each unknown in the order of elimination
  // Groups of unknowns with the same neighbours, in the order of elimination. A column of a group has elements for all
  // unknowns of the group and of those of its neighbours that come later.
  struct Group {
    int first;           // place
    int height;          // of its columns
    std::size_t values;  // its elements stand from here on
    std::size_t later;   // and its neighbours from here on in `laterNeighbours`
  };
  struct LaterNeighbour {
    int first;  // place
    int row;    // of that in a column
  };
  std::vector<int> groupAt;                     // of each place
  std::vector<Group> groups;                    // and one behind the last
  std::vector<LaterNeighbour> laterNeighbours;  // of each group ascending
  std::vector<double> values;
  std::vector<double> inverseValues;
  std::unique_ptr<double[]> l;
  std::vector<double> least;  // pivots, by place
  std::vector<int> local;     // of each place, its row in the front at hand
};

}  // namespace kvn::sparse
