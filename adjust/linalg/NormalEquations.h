// NormalEquations: what an adjustment asks of its normal matrix, whether the matrix is kept in full or sparse.
#pragma once

#include "adjust/linalg/BlockGraph.h"
#include "adjust/linalg/PackedInverse.h"
#include "adjust/linalg/Poll.h"
#include "adjust/linalg/SparseVector.h"

#include <memory>
#include <utility>
#include <vector>

namespace kvn::detail {

/// N x = w, and elements of the inverse Q of N. `clear`, then add, `factor`, `solution`, and in the end `invert` and
/// `inverse`; all that may be repeated with other values.
class NormalEquations {
 public:
  /// When a system counts as singular.
  struct Soundness {
    PivotRule rule;
    /// A diagonal element of N times that of Q says how much of its pivot elimination took away: refused from here on.
    double lostPivot;
  };

  /// Unknowns that always come together, in the order of their numbers, and those blocks that meet.
  struct Pattern {
    std::vector<int> blockSizes;
    std::vector<sparse::Clique> cliques;
    std::vector<int> blockOrder = {};  ///< of elimination; nothing when none is known yet
  };

  virtual ~NormalEquations();
  virtual std::unique_ptr<NormalEquations> clone() const = 0;

  virtual void clear() = 0;
  /// Adds to the element (i, j) of N, and with it to (j, i). Blocks of i and j must meet.
  virtual void add(int i, int j, double value) = 0;
  /// Adds to the element i of w.
  void addRight(int i, double value) { right[static_cast<std::size_t>(i)] += value; }
  /// Adds the error equation v = a x + l with the weight p: `count` unknowns, whose numbers stand in `at`.
  virtual void addEquation(double const* a, int const* at, int count, double p, double l);
  /// The same for blocks that need not meet. A sparse system grows by their elements when it is factored next, and
  /// keeps them when it is cleared.
  virtual void addAnyEquation(double const* a, int const* at, int count, double p, double l) {
    addEquation(a, at, count, p, l);
  }

  /// False for a singular system.
  virtual bool factor(Poll const& poll) = 0;
  /// x, after `factor`.
  std::vector<double> solution(Poll const& poll = {}) const { return solved(right, poll); }
  /// Q b, after `factor`.
  virtual std::vector<double> solved(std::vector<double> b, Poll const& poll = {}) const = 0;
  /// Elements b_i' Q b_j, row by row, of a few vectors that have few elements: far less than to solve for each. After
  /// `factor`. `work` is nothing before the first call.
  virtual std::vector<double> products(std::vector<sparse::SparseVector> const& b, std::vector<double>& work,
                                       Poll const& poll) const = 0;
  /// Gives back what only `solved` and `products` need, which is most of the memory, until `needFactor` brings it
  /// again: that takes a factorisation where something was given back.
  virtual void forgetFactor() {}
  virtual void needFactor(Poll const& /*poll*/) {}
  /// Lets the next `invert` take the room of the elements of N, which are lost then.
  virtual void releaseElements() {}
  /// Where they are lost, and the factor has been given back, begins them anew, all 0: they are to be added again
  /// before `needFactor`. The inverse stays. @return whether it did.
  virtual bool restartElements() { return false; }
  /// Makes `inverse` known. False for a system that turns out to be singular.
  virtual bool invert(Poll const& poll) = 0;
  /// Element (i, j) of Q; 0 where the blocks of i and j do not meet.
  virtual double inverse(int i, int j) const = 0;
  /// Variance factor a Q a' of a function of `count` unknowns, whose numbers stand in `at` and whose blocks meet.
  virtual double cofactor(double const* a, int const* at, int count) const;
  /// The same for blocks that need not meet: a system is solved where they do not. Of N and not of Q as long as nothing
  /// has been factored.
  virtual double anyCofactor(double const* a, int const* at, int count) const { return cofactor(a, at, count); }
  /// The elements of Q of `count` unknowns whose blocks meet, row by row into q[count * count].
  virtual void block(int const* at, int count, double* q) const;

 protected:
  NormalEquations(NormalEquations const&) = default;
  explicit NormalEquations(std::size_t unknowns) : right(unknowns, 0.0) {}
  std::vector<double> right;
};

/// A system, or none, that is copied with its owner.
class OwnedNormals {
 public:
  OwnedNormals() = default;
  OwnedNormals(std::unique_ptr<NormalEquations> owned) : system(std::move(owned)) {}
  OwnedNormals(OwnedNormals const& other) : system(other.system ? other.system->clone() : nullptr) {}
  OwnedNormals(OwnedNormals&&) = default;
  OwnedNormals& operator=(OwnedNormals other) {
    system = std::move(other.system);
    return *this;
  }
  ~OwnedNormals() = default;

  explicit operator bool() const { return system != nullptr; }
  NormalEquations* operator->() const { return system.get(); }
  void reset() { system.reset(); }

 private:
  std::unique_ptr<NormalEquations> system;
};

/// The full matrix as a packed triangle: for small systems.
std::unique_ptr<NormalEquations> fullNormals(int unknowns, NormalEquations::Soundness soundness);
/// Only the elements that are not 0.
std::unique_ptr<NormalEquations> sparseNormals(NormalEquations::Pattern const& pattern,
                                               NormalEquations::Soundness soundness, Poll const& poll = {});

}  // namespace kvn::detail
