#include "tools/input.h"

namespace {

std::string readAll(int descriptor, const std::string& name) {
  std::string content;
  char piece[65536];
  for (ssize_t count = 0; (count = ::read(descriptor, piece, sizeof piece)) != 0;) {
    if (count < 0) throw systemRefusal(name);
    content.append(piece, static_cast<std::size_t>(count));
  }
  return content;
}

}  // namespace

InputFile::InputFile(const std::string& path)
    : path_(path), file_(zrcommon::openFile(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY)) {
  if (!file_ || ::fstat(file_.get(), &status_) != 0) throw systemRefusal(path);
  if (S_ISDIR(status_.st_mode)) throw systemRefusal(path, EISDIR);
  if (!S_ISREG(status_.st_mode)) throw Refusal(path + " is not a regular file");
}

std::string InputFile::content() const {
  return readAll(file_.get(), path_);
}

std::string standardInput() {
  return readAll(STDIN_FILENO, "standard input");
}
