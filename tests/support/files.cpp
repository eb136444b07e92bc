#include "support/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace {

namespace fs = std::filesystem;

std::set<fs::path> files() {
  std::set<fs::path> paths;
  for (const std::string& place : {kScratch, kInstallation, kServices, kFirstServices})
    for (const auto& entry : fs::directory_iterator(place))
      if (entry.path() != kFirstServices.substr(0, kFirstServices.size() - 1))
        paths.insert(entry.path());
  if (isThere(kModuleLog)) paths.insert(kModuleLog);
  return paths;
}

std::string describe(const fs::path& path) {
  const std::string content = getFile(path);
  const auto lines = std::count(content.begin(), content.end(), '\n');
  char mode[8];
  std::snprintf(mode, sizeof mode, "%04o", modeOf(path));
  const std::string shown = path == kModuleLog    ? std::to_string(lines) + " lines"
                            : content.size() > 30 ? std::to_string(content.size()) + " bytes"
                                                  : "'" + content + "'";
  return shown + " " + mode;
}

}  // namespace

void clearPlaces() {
  for (const fs::path& path : files()) fs::remove_all(path);
}

ScratchDirectory::ScratchDirectory() : path_(kScratch + "XXXXXX") {
  EXPECT_NE(nullptr, ::mkdtemp(path_.data()));
}

void putFile(const std::string& path, const std::string& content, unsigned int mode) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << content;
  file.close();
  ASSERT_TRUE(file) << path;
  ASSERT_EQ(0, ::chmod(path.c_str(), mode)) << path;
}

std::string getFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool isThere(const std::string& path) {
  return fs::exists(path);
}

unsigned int modeOf(const std::string& path) {
  struct stat status = {};
  ::stat(path.c_str(), &status);
  return status.st_mode & 07777;
}

Files filesInPlaces() {
  Files found;
  for (const fs::path& path : files())
    if (fs::is_regular_file(path)) found[path.filename()] = describe(path);
  return found;
}

std::string changesSince(const Files& before) {
  const Files after = filesInPlaces();
  std::string text;
  for (const auto& [name, description] : after) {
    const auto old = before.find(name);
    if (old == before.end() || old->second != description) text += " " + name + " " + description;
  }
  for (const auto& [name, description] : before)
    if (after.count(name) == 0) text += " no " + name;
  return text;
}
