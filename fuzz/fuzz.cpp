// Runs one of the properties with input from the fuzzer: ZR_FUZZ_TARGET=profile
// build/fuzz/fuzz/fuzz
#include <gtest/gtest.h>

#include <cstdlib>

#include "properties.h"

namespace {

const char* const kTarget = std::getenv("ZR_FUZZ_TARGET");

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  // A property that does not hold throws, which ends the fuzzer with the input as its finding.
  GTEST_FLAG_SET(throw_on_failure, true);
  Input input(std::string(data, data + size));
  kProperties.at(kTarget ? kTarget : "")(input);
  return 0;
}
