#include "support/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace {

namespace fs = std::filesystem;

std::set<fs::path> entries() {
  std::set<fs::path> paths;
  for (const std::string& place : {kScratch, kInstallation, kServices, kFirstServices})
    for (const auto& entry : fs::directory_iterator(place)) paths.insert(entry.path());
  paths.insert(kModuleLog);
  paths.erase(kFirstServices.substr(0, kFirstServices.size() - 1));
  return paths;
}

std::string describe(const fs::path& path) {
  const std::string content = getFile(path);
  const auto lines = std::count(content.begin(), content.end(), '\n');
  char mode[8];
  std::snprintf(mode, sizeof mode, " %04o", modeOf(path));
  if (path == kModuleLog) return std::to_string(lines) + " lines" + mode;
  if (content.size() > 30) return std::to_string(content.size()) + " bytes" + mode;
  return "'" + content + "'" + mode;
}

}  // namespace

void clearPlaces() {
  for (const fs::path& path : entries()) fs::remove_all(path);
}

void putFile(const std::string& path, const std::string& content, unsigned int mode) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
  ASSERT_TRUE(getFile(path) == content) << path;
  ASSERT_EQ(0, ::chmod(path.c_str(), mode)) << path;
}

std::string getFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

unsigned int modeOf(const std::string& path) {
  struct stat status = {};
  ::stat(path.c_str(), &status);
  return status.st_mode & 07777;
}

Files filesInPlaces() {
  Files found;
  for (const fs::path& path : entries())
    if (fs::is_regular_file(path)) found[path.filename()] = describe(path);
  return found;
}

std::string changesSince(Files before) {
  std::string text;
  for (const auto& [name, content] : filesInPlaces()) {
    if (before[name] != content) text += " " + name + " " + content;
    before.erase(name);
  }
  for (const auto& [name, content] : before) text += " no " + name;
  return text;
}
