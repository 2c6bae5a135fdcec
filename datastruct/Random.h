// The library's one source of random numbers: the run-time's process-wide generator with numbers
// from 0 to 32767, in the same series on every system. It starts as seeded with 1. Sorting draws
// from it and never seeds it; who seeds it changes what everybody draws afterwards.
#pragma once

#include <cstdint>

namespace TamLib {

constexpr std::int32_t kRandomMaximum = 32767;

// The next number, 0 to 32767.
std::int32_t Random();

// Starts the series that belongs to `seed`.
void SeedRandom(std::uint32_t seed);

// Where Random() draws from, for tests that count or settle the numbers; nothing else changes it.
extern std::int32_t (*randomSource)();

}  // namespace TamLib
