#include "datastruct/Random.h"

#include <cstdlib>

namespace TamLib {
namespace {

#if defined(_WIN32)

static_assert(RAND_MAX == kRandomMaximum, "the range that callers count on");

std::int32_t Next() {
    return std::rand();
}

void Seed(std::uint32_t seed) {
    std::srand(seed);
}

#else

// The linear congruential generator that the Windows run-time library has.
std::uint32_t state = 1;

std::int32_t Next() {
    state = state * 214013u + 2531011u;
    return static_cast<std::int32_t>(state >> 16 & 0x7FFFu);
}

void Seed(std::uint32_t seed) {
    state = seed;
}

#endif

}  // namespace

std::int32_t (*randomSource)() = Next;

std::int32_t Random() {
    return randomSource();
}

void SeedRandom(std::uint32_t seed) {
    Seed(seed);
}

}  // namespace TamLib
