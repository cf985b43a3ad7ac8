// Dense steps on the front of a sparse factor. All matrices stand by columns, `stride` elements apart.
#pragma once

#include "adjust/linalg/DenseKernels.h"
#include "adjust/linalg/Poll.h"

#include <cstddef>

namespace kvn::sparse {

using detail::Effort;

inline detail::ConstView byColumns(double const* data, std::size_t stride) {
  return {data, 1, static_cast<std::ptrdiff_t>(stride)};
}
inline detail::ConstView transposed(double const* data, std::size_t stride) {
  return {data, static_cast<std::ptrdiff_t>(stride), 1};
}

/// `detail::addProduct` in pieces between which the poll is called. Of a lower triangle m is at least n.
void addProduct(Effort& effort, std::size_t m, std::size_t n, std::size_t k, double alpha, detail::ConstView a,
                detail::ConstView b, double* c, std::size_t stride, detail::Region region = detail::Region::All);

/// Cholesky factor of the first `columns` columns of a front with `rows` rows, in place, lower triangle. A pivot is
/// sound where it is finite, above 0 and above `least[column]`.
///
/// @return the number of sound columns before the first one that is not.
std::size_t factorColumns(Effort& effort, double* front, std::size_t stride, std::size_t rows, std::size_t columns,
                          double const* least);

/// `inverse` = that of the lower triangle; its upper triangle becomes 0.
void invertTriangle(Effort& effort, double const* triangle, std::size_t stride, std::size_t size, double* inverse,
                    std::size_t inverseStride);

}  // namespace kvn::sparse
