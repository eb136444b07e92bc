#include "tools/profile_lint.h"

#include <cctype>

#include "profile/line.h"
#include "tools/profile_lines.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kWritableLength = 256;

bool startsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
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

bool isHexadecimal(std::string_view value) {
  if (startsWith(value, "-") || startsWith(value, "+")) value.remove_prefix(1);
  return value.size() > 2 && (startsWith(value, "0x") || startsWith(value, "0X")) &&
         value.find_first_not_of("0123456789abcdefABCDEF", 2) == value.npos;
}

// With a byte order mark, or with every other byte zero in the first characters.
bool isUtf16(std::string_view profile) {
  if (startsWith(profile, "\xFF\xFE") || startsWith(profile, "\xFE\xFF")) return true;
  return profile.size() >= 4 && (profile[0] == '\0') != (profile[1] == '\0') &&
         (profile[0] == '\0') == (profile[2] == '\0') &&
         (profile[1] == '\0') == (profile[3] == '\0');
}

bool endsLinesInCr(std::string_view profile) {
  return contains(profile, "\r") && !contains(profile, "\n");
}

std::string kindOf(const ProfileLine& line) {
  if (line.text.empty()) return "a blank line";
  if (line.isHeader()) return "a header";
  return line.isEntry() ? "an entry" : "a comment";
}

class Linter {
 public:
  void look(const ProfileLine& line) {
    line_ = line.number;
    if (line.isRest)
      error("long-line", "the rest of a line of more than 1023 characters is read as " +
                             kindOf(line) + " of its own");
    lookAtBytes(line);
    lookWhetherHidden(line);
    if (line.isHeader())
      lookAtHeader(line);
    else if (line.value && !isHeaderHidden_)
      lookAtEntry(line);
  }

  void error(const char* code, const std::string& message) {
    findings_.push_back({line_, Severity::kError, code, message});
  }

  std::vector<Finding> findings() const { return findings_; }

 private:
  void warn(const char* code, const std::string& message) {
    findings_.push_back({line_, Severity::kWarning, code, message});
  }

  void lookAtBytes(const ProfileLine& line) {
    if (line_ == 1 && !line.isRest && startsWith(line.bytes, "\xEF\xBB\xBF"))
      error("byte-order-mark",
            "the byte order mark belongs to the line: a header or comment there is none");
    if (contains(line.bytes, std::string_view("\0", 1)))
      error("zero-byte", "the rest of the line is hidden by a zero byte, and lost in a change");
    if (line.bytes.back() == '\n')
      lookAtEnding(line.bytes.size() > 1 && line.bytes[line.bytes.size() - 2] == '\r');
  }

  void lookAtEnding(bool isCrLf) {
    if (!isFirstCrLf_) isFirstCrLf_ = isCrLf;
    if (*isFirstCrLf_ == isCrLf || endingsAreMixed_) return;
    endingsAreMixed_ = true;
    findings_.push_back({line_, Severity::kNote, "mixed-line-ends",
                         isCrLf ? "the line ends in CR LF, the lines before it in LF"
                                : "the line ends in LF, the lines before it in CR LF"});
  }

  // What is under a bad header is told once, there.
  void lookWhetherHidden(const ProfileLine& line) {
    const bool isTold = line.isEntry() && isHeaderHidden_;
    if (line.isHeader()) isHeaderHidden_ = line.hidden != nullptr;
    if (line.hidden && !isTold) error(line.hidden->code, line.whyHidden());
  }

  void lookAtHeader(const ProfileLine& header) {
    const auto end = header.text.find(']');
    if (end == header.text.npos) return;
    if (header.section.empty()) error("empty-section", "the section has no name to ask for");
    const std::string_view rest = trimmed(header.text.substr(end + 1));
    if (rest.empty() || isComment(rest)) return;
    if (contains(rest, "="))
      error("entry-after-header", "an entry on the line of a header is ignored");
    else
      warn("text-after-header", "what follows the \"]\" is ignored");
  }

  void lookAtEntry(const ProfileLine& entry) {
    const std::string_view value = *entry.value;
    if (entry.key.empty()) error("no-key", "the entry has no key to ask for");
    if (contains(value, "\"") || startsWith(value, "'"))
      warn("quotes", "the quotes are part of the value");
    if (looksCommented(value)) warn("comment-in-value", "the comment is part of the value");
    if (isHexadecimal(value)) warn("hexadecimal", "read as a number, the value is 0");
    if (!value.empty() && value.back() == '\\')
      warn("backslash", "a backslash at the end does not continue the line");
    if (value.size() > kWritableLength)
      warn("long-value", "a value of more than 256 characters can be read, but not written");
  }

  std::vector<Finding> findings_;
  std::size_t line_ = 1;
  std::optional<bool> isFirstCrLf_;
  bool endingsAreMixed_ = false;
  bool isHeaderHidden_ = false;
};

}  // namespace

const std::vector<std::string>& severityNames() {
  static const std::vector<std::string> names = {"note", "warning", "error"};
  return names;
}

std::vector<Finding> lintProfile(std::string_view profile) {
  Linter linter;
  if (isUtf16(profile)) {
    linter.error("utf-16", "the file is UTF-16: the reader finds nothing in it");
  } else if (endsLinesInCr(profile)) {
    linter.error("cr-only", "lines that end in CR alone are one line to the reader");
  } else {
    for (const ProfileLine& line : profileLines(profile)) linter.look(line);
  }
  return linter.findings();
}
