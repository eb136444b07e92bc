#ifndef ZRCOMMON_TESTS_PLAIN_PROFILE_H
#define ZRCOMMON_TESTS_PLAIN_PROFILE_H

#include <strings.h>
#include <zrcommon/profile.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

/// What the profile functions do, put as plainly as it can be: with fgets() and the line helpers.
class PlainProfile {
 public:
  PlainProfile(const std::string& path, std::string section, std::string key)
      : file_(std::fopen(path.c_str(), "r")), section_(std::move(section)), key_(std::move(key)) {}
  ~PlainProfile() { std::fclose(file_); }
  PlainProfile(const PlainProfile&) = delete;
  PlainProfile& operator=(const PlainProfile&) = delete;

  /// The error code and, where it is 0, the value.
  std::string read() {
    while (next() && !isSection()) continue;
    if (!text_) return "204 ";
    while (next() && *text_ != '[') {
      if (!isEntry()) continue;
      char* const equals = std::strchr(text_, '=');
      return equals ? std::string("0 ") + Trim(equals + 1) : "201 ";
    }
    return "202 ";
  }

  /// The file that results, written to @p path.
  /// @return where in the old file the rest begins, which is copied as it is
  long write(const std::string& value, const std::string& path) {
    copy_ = std::fopen(path.c_str(), "w");
    bool found = false;
    while (!found && next()) {
      found = isSection();
      put(text_);
    }
    if (!found) put("[" + section_ + "]");
    while (next() && *text_ != '[' && !isEntry()) put(text_);
    put(key_ + "=" + value);
    if (text_ && *text_ == '[') put(text_);
    const long rest = std::ftell(file_);
    while (std::fgets(line_, 1024, file_)) std::fwrite(line_, 1, std::strlen(line_), copy_);
    std::fclose(copy_);
    return rest;
  }

 private:
  char* next() { return text_ = Trim(std::fgets(line_, 1024, file_)); }

  bool isSection() {
    const char* const name = *text_ == '[' ? GetSectionName(std::strcpy(scratch_, text_)) : nullptr;
    return name && ::strcasecmp(name, section_.c_str()) == 0;
  }

  bool isEntry() {
    return *text_ != '#' && *text_ != ';' &&
           CompareKey(std::strcpy(scratch_, text_), key_.c_str()) == 0;
  }

  void put(const std::string& text) { WriteToFile(std::strcpy(scratch_, text.c_str()), copy_); }

  std::FILE* file_;
  std::FILE* copy_ = nullptr;
  std::string section_, key_;
  char line_[1025], scratch_[1025];
  char* text_ = nullptr;
};

#endif  // ZRCOMMON_TESTS_PLAIN_PROFILE_H
