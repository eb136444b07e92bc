#ifndef ZRCOMMON_EXAMPLES_INET_SCRIPT_H
#define ZRCOMMON_EXAMPLES_INET_SCRIPT_H

#include <istream>
#include <sstream>
#include <string>
#include <vector>

/// What the scripted internet library answers, one answer per line:
///   open N         what InetOpenFile returns (1)
///   header N       what GetHeader returns (0)
///   read N [TEXT]  what the next InetReadFile returns. The buffer is filled with TEXT over and
///                  over, up to N and to the size asked for. In TEXT \r \n \0 \\ stand for those
///                  bytes. After the last line every read returns 0.
///   present N [TEXT]  what IsInternetFilePresent returns for an address that contains TEXT (for
///                  every address, if there is none); the first line that fits counts, and
///                  without one the answer is 0
/// Blank lines and lines that begin with "#" say nothing.
class InetScript {
 public:
  struct Answer {
    int number;
    std::string text;
  };

  explicit InetScript(std::istream& file) {
    if (!file) errors_.push_back("the script cannot be read");
    for (std::string line; std::getline(file, line); ++lineNumber_) take(line);
  }

  int open = 1;
  int header = 0;
  std::vector<Answer> reads;
  std::vector<Answer> presences;

  /// What is wrong, such as "line 3: ..."; empty if nothing is.
  const std::vector<std::string>& errors() const { return errors_; }

 private:
  void refuse(const std::string& reason) {
    errors_.push_back("line " + std::to_string(lineNumber_) + ": " + reason);
  }

  void take(const std::string& line) {
    std::istringstream words(line);
    std::string what;
    if (!(words >> what) || what.front() == '#') return;
    int number = 0;
    if (!(words >> number) || (words.peek() != ' ' && words.peek() != EOF))
      return refuse('"' + what + "\" is followed by no whole number");
    std::string text;
    words.get();
    std::getline(words, text);
    answer(what, number, text);
  }

  void answer(const std::string& what, int number, const std::string& text) {
    if (what == "read") return reads.push_back({number, text.empty() ? "x" : unescaped(text)});
    if (what == "present") return presences.push_back({number, text});
    if (what != "open" && what != "header")
      return refuse('"' + what + "\" is not open, header, read or present");
    if (!text.empty()) return refuse('"' + what + "\" has one number and no text");
    (what == "open" ? open : header) = number;
  }

  std::string unescaped(const std::string& text) {
    static const std::string marks = "rn0\\";
    static const std::string meanings("\r\n\0\\", 4);
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const std::size_t mark = text[i] == '\\' ? marks.find(text.substr(i + 1, 1)) : marks.npos;
      const bool isKnown = mark < marks.size() && i + 1 < text.size();
      if (text[i] == '\\' && !isKnown) refuse("a backslash stands before r, n, 0 or \\");
      bytes += isKnown ? meanings[mark] : text[i];
      i += isKnown;
    }
    return bytes;
  }

  std::size_t lineNumber_ = 1;
  std::vector<std::string> errors_;
};

#endif  // ZRCOMMON_EXAMPLES_INET_SCRIPT_H
