#include "properties.h"

#include "support/test.h"

TEST(Properties, HoldForRandomInput) {
  const ScratchDirectory scratch;
  std::filesystem::current_path(scratch.path());
  std::mt19937 random(20240229);
  for (const auto& [name, property] : kProperties)
    for (int round = 0; round < 400 && !HasFailure(); ++round) {
      S bytes(2000, '\0');
      for (char& byte : bytes) byte = static_cast<char>(random());
      Input input(bytes);
      SCOPED_TRACE(name + ", round " + std::to_string(round));
      property(input);
    }
  std::filesystem::current_path("/");
}
