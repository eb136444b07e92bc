#include "tools/profile_lines.h"

#include <map>

#include "profile/line.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kNameLength = 256;

struct IgnoringCase {
  bool operator()(std::string_view one, std::string_view other) const {
    const int order =
        ::strncasecmp(one.data(), other.data(), std::min(one.size(), other.size()));
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
    if (line.isHeader())
      enter(line);
    else if (line.isEntry())
      look(line);
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
    header.hidden = name ? Hidden::kNo : Hidden::kBrokenHeader;
    if (name) hideRepeated(header, sections_, *name, Hidden::kRepeatedSection);
    hiddenHere_ = header.hidden;
    because_ = header.because;
    keys_.clear();
  }

  void look(ProfileLine& entry) {
    entry.key = keyOf(entry.text);
    entry.value = valueOf(entry.text);
    entry.hidden = hiddenHere_;
    entry.because = because_;
    if (entry.hidden != Hidden::kNo) return;
    hideRepeated(entry, keys_, entry.key, Hidden::kRepeatedKey);
    if (entry.hidden == Hidden::kNo && !entry.value) entry.hidden = Hidden::kNoEquals;
  }

  void hideRepeated(ProfileLine& line, FirstLines& names, std::string_view name, Hidden reason) {
    const auto [first, isNew] = names.emplace(name, number_);
    line.because = first->second;
    if (!isNew) line.hidden = reason;
    if (name.size() > kNameLength) line.hidden = Hidden::kLongName;
  }

  std::size_t number_ = 1;
  bool isRest_ = false;
  std::string_view section_;
  Hidden hiddenHere_ = Hidden::kBeforeSections;
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

std::vector<ProfileLine> profileLines(std::string_view bytes) {
  std::vector<ProfileLine> lines;
  Walk walk;
  while (!bytes.empty()) {
    const std::size_t length = pieceLength(bytes);
    lines.push_back(walk.next(bytes.substr(0, length)));
    bytes.remove_prefix(length);
  }
  return lines;
}

const char* codeOf(Hidden reason) {
  switch (reason) {
    case Hidden::kBeforeSections:
      return "before-sections";
    case Hidden::kBrokenHeader:
      return "broken-header";
    case Hidden::kRepeatedSection:
      return "repeated-section";
    case Hidden::kRepeatedKey:
      return "repeated-key";
    case Hidden::kNoEquals:
      return "no-equals";
    case Hidden::kLongName:
      return "long-name";
    case Hidden::kNo:
      break;
  }
  return "";
}

std::string whyHidden(const ProfileLine& line) {
  const std::string because = "line " + std::to_string(line.because);
  switch (line.hidden) {
    case Hidden::kBeforeSections:
      return "no section has begun";
    case Hidden::kBrokenHeader:
      return "the header in " + because + " has no \"]\": it ends a section and begins none";
    case Hidden::kRepeatedSection:
      return "only the first section of this name is read, which begins in " + because;
    case Hidden::kRepeatedKey:
      return "only the first entry of this name is read, in " + because;
    case Hidden::kNoEquals:
      return "the line has no \"=\", so reading its key fails";
    case Hidden::kLongName:
      return "names of more than 256 characters cannot be asked for";
    case Hidden::kNo:
      break;
  }
  return "";
}
