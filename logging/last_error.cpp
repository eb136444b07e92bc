#include <cerrno>

#include "zrcommon/logging.h"

unsigned int GetLastError() {
  return static_cast<unsigned int>(errno);
}
