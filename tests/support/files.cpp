#include "support/files.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/sandbox.h"

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
  return ::access(path.c_str(), F_OK) == 0;
}

unsigned int modeOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(0, ::stat(path.c_str(), &status)) << path;
  return status.st_mode & 07777;
}

ScratchDirectory::ScratchDirectory() : path_(std::string(kScratch) + "/XXXXXX") {
  EXPECT_NE(nullptr, ::mkdtemp(path_.data()));
}

ScratchDirectory::~ScratchDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

TinyFileSystem::TinyFileSystem(unsigned int bytes) {
  const std::string size = "size=" + std::to_string(bytes);
  EXPECT_EQ(0, ::mount("tmpfs", directory_.path().c_str(), "tmpfs", 0, size.c_str()));
}

TinyFileSystem::~TinyFileSystem() {
  ::umount2(directory_.path().c_str(), MNT_DETACH);
}
