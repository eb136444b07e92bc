#include "system/pattern.h"

#include <cstring>

namespace {

constexpr std::size_t kTablePattern = 16;
constexpr std::size_t kTableText = 8192;

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
  if (bytes.size() >= Probe::kLeastPattern) probe_.emplace(bytes);
  if (bytes.size() >= kTablePattern && toSearch >= kTableText) table_.emplace(bytes);
}

std::size_t Pattern::find(std::string_view text) const {
  if (bytes_.empty() || bytes_.size() > text.size()) return std::string_view::npos;
  Progress progress;
  if (table_) progress = table_->find(text);
  if (probe_ && !progress.isDone) progress = probe_->find(text, progress.offset);
  if (progress.isDone) return progress.offset;
  return plus(progress.offset, libraryFind(text.substr(progress.offset), bytes_));
}
