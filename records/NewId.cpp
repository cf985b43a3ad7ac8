#include "records/NewId.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <random>
#if !defined(_WIN32)
#include <pthread.h>
#endif

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

std::atomic<unsigned> forks{0};

#if !defined(_WIN32)
void countFork() { ++forks; }
[[maybe_unused]] bool const isCounted = pthread_atfork(nullptr, nullptr, countFork) == 0;
#endif

/// The generator of this thread. A process that was forked off has its state, and would go on with the same numbers.
std::mt19937_64& generator() {
  thread_local std::mt19937_64 random = seeded();
  thread_local unsigned seededAfter = forks;
  if (seededAfter != forks) {
    random = seeded();
    seededAfter = forks;
  }
  return random;
}

char* putHex(char* out, std::uint64_t bits, int digits) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) *out++ = "0123456789abcdef"[(bits >> shift) & 0xFU];
  return out;
}

}  // namespace

std::string newId() {
  std::mt19937_64& random = generator();
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
