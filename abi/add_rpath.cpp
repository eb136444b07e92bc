// Adds a DT_RPATH entry equal to DT_RUNPATH to a shared object. It takes the place of one of the
// spare DT_NULL entries that GNU ld leaves at the end of the dynamic section.
#include <elf.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

using Image = std::vector<char>;

template <typename Record>
Record* at(Image& image, std::size_t offset, std::size_t count = 1) {
  if (offset > image.size() || count > (image.size() - offset) / sizeof(Record)) return nullptr;
  return reinterpret_cast<Record*>(image.data() + offset);
}

struct Dynamic {
  Elf64_Dyn* entries = nullptr;
  std::size_t count = 0;
};

Dynamic findDynamic(Image& image) {
  const auto* header = at<Elf64_Ehdr>(image, 0);
  if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0) return {};
  const auto* segments = at<Elf64_Phdr>(image, header->e_phoff, header->e_phnum);
  for (int i = 0; segments && i < header->e_phnum; ++i) {
    if (segments[i].p_type != PT_DYNAMIC) continue;
    const std::size_t count = segments[i].p_filesz / sizeof(Elf64_Dyn);
    return {at<Elf64_Dyn>(image, segments[i].p_offset, count), count};
  }
  return {};
}

const char* addRpath(Image& image) {
  const Dynamic dynamic = findDynamic(image);
  if (!dynamic.entries) return "not an ELF object with a dynamic section";
  const Elf64_Dyn* runpath = nullptr;
  for (std::size_t i = 0; i < dynamic.count; ++i) {
    Elf64_Dyn& entry = dynamic.entries[i];
    if (entry.d_tag == DT_RPATH) return nullptr;
    if (entry.d_tag == DT_RUNPATH) runpath = &entry;
    if (entry.d_tag != DT_NULL) continue;
    if (!runpath) return "no RUNPATH to copy";
    if (i + 1 == dynamic.count) return "no spare entry in the dynamic section";
    entry.d_tag = DT_RPATH;
    entry.d_un.d_val = runpath->d_un.d_val;
    return nullptr;
  }
  return "the dynamic section has no end";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    (void)std::fputs("usage: add_rpath SHARED_OBJECT\n", stderr);
    return 2;
  }
  std::fstream file(argv[1], std::ios::in | std::ios::out | std::ios::binary);
  Image image{std::istreambuf_iterator<char>(file), {}};
  if (const char* problem = addRpath(image)) {
    (void)std::fprintf(stderr, "add_rpath: %s: %s\n", argv[1], problem);
    return 1;
  }
  file.clear();
  file.seekp(0);
  file.write(image.data(), static_cast<std::streamsize>(image.size()));
  return file.good() ? 0 : 1;
}
