#include "tools/profile_lines.h"

#include <map>

#include "profile/line.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kNameLength = 256;

constexpr Hidden kBeforeSections = {"before-sections", "no section has begun"};
constexpr Hidden kBrokenHeader = {
    "broken-header", "a header without \"]\" ends a section and begins none, in line "};
constexpr Hidden kRepeatedSection = {"repeated-section",
                                     "only the first section of this name is read, from line "};
constexpr Hidden kRepeatedKey = {"repeated-key",
                                 "only the first entry of this name is read, in line "};
constexpr Hidden kNoEquals = {"no-equals", "an entry without \"=\" has no value"};
constexpr Hidden kLongName = {"long-name", "names of more than 256 characters cannot be asked for"};

struct IgnoringCase {
  bool operator()(std::string_view one, std::string_view other) const {
    const int order = ::strncasecmp(one.data(), other.data(), std::min(one.size(), other.size()));
    return order != 0 ? order < 0 : one.size() < other.size();
  }
};

class Walk {
 public:
  ProfileLine next(std::string_view bytes) {
    ProfileLine line;
    line.number = number_;
    line.isRest = isRest_;
    line.bytes = bytes;
    line.text = textOf(bytes);
    if (line.isHeader()) enter(line);
    if (line.isEntry()) look(line);
    line.section = section_;
    isRest_ = bytes.back() != '\n';
    if (!isRest_) ++number_;
    return line;
  }

 private:
  using FirstLines = std::map<std::string_view, std::size_t, IgnoringCase>;

  void enter(ProfileLine& header) {
    const auto name = sectionOf(header.text);
    section_ = name.value_or("");
    header.because = number_;
    if (name)
      hideRepeated(header, sections_, *name, kRepeatedSection);
    else
      header.hidden = &kBrokenHeader;
    hiddenHere_ = header.hidden;
    because_ = header.because;
    keys_.clear();
  }

  void look(ProfileLine& entry) {
    entry.key = keyOf(entry.text);
    entry.value = valueOf(entry.text);
    entry.hidden = hiddenHere_;
    entry.because = because_;
    if (!entry.hidden) hideRepeated(entry, keys_, entry.key, kRepeatedKey);
    if (!entry.hidden && !entry.value) entry.hidden = &kNoEquals;
  }

  void hideRepeated(ProfileLine& line, FirstLines& names, std::string_view name,
                    const Hidden& reason) {
    const auto [first, isNew] = names.emplace(name, number_);
    line.because = first->second;
    if (!isNew) line.hidden = &reason;
    if (name.size() > kNameLength) line.hidden = &kLongName;
  }

  std::size_t number_ = 1;
  bool isRest_ = false;
  std::string_view section_;
  const Hidden* hiddenHere_ = &kBeforeSections;
  std::size_t because_ = 0;
  FirstLines sections_;
  FirstLines keys_;
};

}  // namespace

bool ProfileLine::isHeader() const {
  return zrcommon::isHeader(text);
}

bool ProfileLine::isEntry() const {
  return !text.empty() && !isHeader() && !isComment(text);
}

std::string ProfileLine::whyHidden() const {
  if (!hidden) return "";
  const std::string_view why = hidden->why;
  return std::string(why) + (why.back() == ' ' ? std::to_string(because) : "");
}

std::vector<ProfileLine> profileLines(std::string_view bytes) {
  std::vector<ProfileLine> lines;
  Walk walk;
  while (!bytes.empty()) {
    const std::size_t length = chunkLength(bytes);
    lines.push_back(walk.next(bytes.substr(0, length)));
    bytes.remove_prefix(length);
  }
  return lines;
}
