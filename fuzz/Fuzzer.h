// What every fuzz target needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// The target: must come back from any input. What it finds wrong ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace harbor {

// Ends the process unless the claim holds; unlike assert, in every build.
inline void require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", claim);
  std::abort();
}

}  // namespace harbor
