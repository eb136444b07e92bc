#include "system/search/pattern.h"

#include <cstring>

#include "system/search/probe.h"

namespace zrcommon {

namespace {

constexpr std::size_t kTablePattern = 16;
// A table pays where the pattern is long or there is much to search: their product counts.
constexpr std::size_t kTablePays = std::size_t{1} << 18U;

// Where a search that stopped at @p from went on to find something.
std::size_t plus(std::size_t from, std::size_t found) {
  return found == std::string_view::npos ? found : from + found;
}

std::size_t libraryFind(std::string_view text, std::string_view bytes) {
  const void* const found = ::memmem(text.data(), text.size(), bytes.data(), bytes.size());
  return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text.data())
               : std::string_view::npos;
}

}  // namespace

Pattern::Pattern(std::string_view bytes, std::size_t toSearch) : bytes_(bytes) {
  if (bytes.size() >= kTablePattern && toSearch >= kTablePays / bytes.size()) table_.emplace(bytes);
}

// A long pattern in a short text is left to the C library, which prepares less.
std::size_t Pattern::find(std::string_view text) const {
  if (bytes_.empty() || bytes_.size() > text.size()) return std::string_view::npos;
  Progress progress;
  if (table_) progress = table_->find(text);
  const bool probes =
      bytes_.size() < kTablePattern ? bytes_.size() >= Probe::kLeastPattern : table_.has_value();
  if (probes && !progress.isDone) progress = Probe(bytes_, text.size()).find(text, progress.offset);
  if (progress.isDone) return progress.offset;
  return plus(progress.offset, libraryFind(text.substr(progress.offset), bytes_));
}

}  // namespace zrcommon
