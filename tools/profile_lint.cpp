#include <strings.h>

#include <cctype>
#include <map>

#include "profile/error.h"
#include "profile/line.h"
#include "profile/profile_file.h"
#include "tools/codes.h"
#include "tools/profile.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kNameLength = 256;
constexpr std::size_t kShownLength = 40;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct IgnoringCase {
  bool operator()(const std::string& one, const std::string& other) const {
    return ::strcasecmp(one.c_str(), other.c_str()) < 0;
  }
};
using FirstLines = std::map<std::string, std::size_t, IgnoringCase>;

// Short enough for a line, and without what a terminal might obey.
std::string quoted(std::string_view text) {
  std::string shown(text.substr(0, kShownLength));
  for (char& each : shown) each = std::iscntrl(static_cast<unsigned char>(each)) ? '?' : each;
  return '"' + shown + (text.size() > kShownLength ? "...\"" : "\"");
}

std::string inLine(std::size_t line) {
  return "line " + std::to_string(line);
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != text.npos;
}

bool looksCommented(std::string_view value) {
  for (std::size_t at = 0; at < value.size(); ++at) {
    if (isComment(value.substr(at)) && (at == 0 || isBlank(value[at - 1]))) return true;
  }
  return false;
}

std::string kindOf(std::string_view text) {
  if (text.empty()) return "a blank line";
  if (isComment(text)) return "a comment";
  if (isHeader(text)) return sectionOf(text) ? "the header " + quoted(text) : "a broken header";
  return valueOf(text) ? "an entry with the key " + quoted(keyOf(text)) : "an entry without \"=\"";
}

class Linter {
 public:
  void look(std::string_view piece) {
    const std::string_view text = textOf(piece);
    lookAtBytes(piece);
    if (isRest_) remark("the rest of the long line is read as " + kindOf(text));
    if (isHeader(text))
      lookAtHeader(text);
    else if (!text.empty() && !isComment(text))
      lookAtEntry(text);
    isRest_ = piece.back() != '\n';
    if (!isRest_) ++line_;
  }

  std::vector<Remark> remarks() const { return remarks_; }

 private:
  enum class Place { kBeforeSections, kSection, kUnreadSection };

  void remark(const std::string& text) { remarks_.push_back({line_, text}); }

  void lookAtBytes(std::string_view piece) {
    if (line_ == 1 && !isRest_ && piece.substr(0, kByteOrderMark.size()) == kByteOrderMark)
      remark("a byte order mark belongs to the line and hides a header or comment behind it");
    if (contains(piece, std::string_view("\0", 1)))
      remark("a zero byte hides the rest of the line, and changes to the file lose it");
    if (piece.back() == '\n')
      lookAtEnding(piece.size() > 1 && piece[piece.size() - 2] == '\r');
    else if (piece.size() == kChunkLength)
      remark("the line is cut at 1023 characters");
  }

  void lookAtEnding(bool isCrLf) {
    if (!firstEnding_) firstEnding_ = isCrLf;
    if (*firstEnding_ == isCrLf || endingsAreMixed_) return;
    endingsAreMixed_ = true;
    remark(isCrLf ? "ends in CR LF, the lines before it in LF"
                  : "ends in LF, the lines before it in CR LF");
  }

  void lookAtHeader(std::string_view header) {
    const auto name = sectionOf(header);
    place_ = Place::kUnreadSection;
    if (!name)
      return remark("a header without \"]\" starts no section, but ends the one before it");
    lookAtName(*name);
    const auto [first, isNew] = sections_.emplace(*name, line_);
    if (!isNew)
      return remark("section " + quoted(*name) + " is read only where it comes first, in " +
                    inLine(first->second));
    place_ = Place::kSection;
    keys_.clear();
  }

  void lookAtEntry(std::string_view entry) {
    if (place_ == Place::kBeforeSections) return remark("is never read: no section has begun");
    if (place_ == Place::kUnreadSection) return;
    const std::string_view key = keyOf(entry);
    lookAtName(key);
    const auto [first, isNew] = keys_.emplace(key, line_);
    if (!isNew)
      return remark("key " + quoted(key) + " is read only where it comes first, in " +
                    inLine(first->second));
    if (const auto value = valueOf(entry))
      lookAtValue(*value);
    else
      remark("has no \"=\", so reading " + quoted(key) + " fails");
  }

  void lookAtName(std::string_view name) {
    if (name.size() > kNameLength) remark("a name of more than 256 characters cannot be asked for");
  }

  void lookAtValue(std::string_view value) {
    if (contains(value, "\"") || value.substr(0, 1) == "'")
      remark("the quotes are part of the value");
    if (looksCommented(value)) remark("what looks like a comment is part of the value");
  }

  std::vector<Remark> remarks_;
  std::size_t line_ = 1;
  bool isRest_ = false;
  Place place_ = Place::kBeforeSections;
  FirstLines sections_;
  FirstLines keys_;
  std::optional<bool> firstEnding_;
  bool endingsAreMixed_ = false;
};

}  // namespace

std::vector<Remark> lintProfile(const std::string& path) {
  ProfileFile profile(path.c_str());
  if (!profile) throw refusal(CodeOf::kProfile, kCannotOpen, path);
  Linter linter;
  for (auto bytes = profile.chunks(); !bytes.empty(); bytes = profile.chunks()) {
    for (Chunks chunks(bytes); chunks.next();) linter.look(chunks.chunk());
    profile.skip(bytes.size());
  }
  return linter.remarks();
}
