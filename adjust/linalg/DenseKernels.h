// The dense matrix product that the eliminations are built on.
#pragma once

#include <cstddef>

namespace kvn::detail {

/// A matrix in foreign storage: element (i, j) stands at data[i * rowStride + j * columnStride]. Columns one below the
/// other have a row stride of 1; exchanging the two strides reads the transpose.
struct ConstView {
  double const* data;
  std::ptrdiff_t rowStride;
  std::ptrdiff_t columnStride;
};

enum class Region {
  All,
  Lower,  ///< only the elements (i, j) with i >= j are needed; of the others some are written too, with anything
};

/// A product takes its operands in pieces of so many columns of B and of A.
constexpr std::size_t kProductColumns = 1020;
constexpr std::size_t kProductDepth = 256;

/// C += alpha A B for A of m x k, B of k x n and C of m x n, which must not overlap A or B.
///
/// With an alpha of 1 or -1 every element of C is c + a1 b1 + a2 b2 + ... added up in this order, whatever the sizes
/// and the strides: each addition is rounded once where the processor multiplies and adds in one instruction, product
/// and sum each for themselves elsewhere. So equal rows of A on equal rows of C stay equal to the last bit, and an
/// elimination that finds an exact zero element by element finds it in blocks as well. With another alpha the sum of
/// the products (of 256 at a time) is multiplied by it first.
///
/// Allocates nothing but two buffers per thread (at most 2.3 MB), which are kept for the next call.
///
/// @param c                element (i, j) stands at c[i + j * columnStrideOfC].
/// @param columnStrideOfC  at least m.
void addProduct(std::size_t m, std::size_t n, std::size_t k, double alpha, ConstView a, ConstView b, double* c,
                std::size_t columnStrideOfC, Region region = Region::All);

/// Whether products use the processor's vector instructions (AVX2 and FMA) from now on; on from the start where the
/// processor has them, and without effect elsewhere. For comparing the two ways; they differ in rounding.
///
/// @return whether they were in use before.
bool useVectorInstructions(bool wanted);
/// The same of those with 512 bits (AVX-512) in the place of 256; they give the same to the last bit.
bool useLongVectorInstructions(bool wanted);

}  // namespace kvn::detail
