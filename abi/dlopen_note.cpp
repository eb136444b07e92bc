#include <cstddef>
#include <cstdint>

// A note for packaging tools that names the modules which the object opens at run time, since its
// dynamic section does not list them. The description is JSON, in the format that Linux
// distributions share.

namespace {

constexpr std::size_t kPadded = 4;

constexpr char kOwner[kPadded] = "FDO";
constexpr char kDescription[] =
    R"([{"feature":"internet","description":"Fetches and checks through the internet library",)"
    R"("priority":"recommended","soname":["libinet.so"]}])";

struct DlopenNote {
  std::uint32_t ownerBytes = sizeof kOwner;
  std::uint32_t descriptionBytes = sizeof kDescription;
  std::uint32_t type = 0x407c0c0a;
  char owner[sizeof kOwner] = {};
  char description[(sizeof kDescription + kPadded - 1) / kPadded * kPadded] = {};
};

constexpr DlopenNote makeNote() {
  DlopenNote note;
  for (std::size_t i = 0; i < sizeof kOwner; ++i) note.owner[i] = kOwner[i];
  for (std::size_t i = 0; i < sizeof kDescription; ++i) note.description[i] = kDescription[i];
  return note;
}

[[gnu::used, gnu::section(".note.dlopen"), gnu::aligned(kPadded)]] constexpr DlopenNote kNote =
    makeNote();

}  // namespace
