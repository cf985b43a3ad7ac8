#include "records/NewId.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <random>

namespace kvn {
namespace {

/// Seeded by the system with 256 bits, so that neither two threads nor two processes run through the same numbers.
/// Asking the system for each identity costs more than reading the whole record.
std::mt19937_64 seeded() {
  std::random_device system;
  std::array<std::uint32_t, 8> words{};
  std::generate(words.begin(), words.end(), std::ref(system));
  std::seed_seq seed(words.begin(), words.end());
  return std::mt19937_64(seed);
}

char* putHex(char* out, std::uint64_t bits, int digits) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) *out++ = "0123456789abcdef"[(bits >> shift) & 0xFU];
  return out;
}

}  // namespace

std::string newId() {
  thread_local std::mt19937_64 random = seeded();
  // Version 4 in the third group, the variant of RFC 4122 in the fourth.
  std::uint64_t const high = (random() & ~std::uint64_t{0xF000}) | std::uint64_t{0x4000};
  std::uint64_t const low = (random() >> 2) | (std::uint64_t{1} << 63);
  std::array<char, 38> text{};
  char* out = text.data();
  *out++ = '{';
  out = putHex(out, high >> 32, 8);
  *out++ = '-';
  out = putHex(out, high >> 16, 4);
  *out++ = '-';
  out = putHex(out, high, 4);
  *out++ = '-';
  out = putHex(out, low >> 48, 4);
  *out++ = '-';
  out = putHex(out, low, 12);
  *out = '}';
  return std::string(text.data(), text.size());
}

}  // namespace kvn
