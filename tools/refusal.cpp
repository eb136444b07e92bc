#include "tools/refusal.h"

#include <cstring>

namespace {

std::string withReason(const std::string& message, int systemError) {
  if (systemError == 0) return message;
  return message + ": " + std::strerror(systemError) + " (" + errorName(systemError) + ')';
}

}  // namespace

Refusal::Refusal(const std::string& message, std::optional<unsigned int> code, int systemError)
    : std::runtime_error(withReason(message, systemError)),
      code_(code),
      systemError_(systemError) {}

Refusal systemRefusal(const std::string& subject, int systemError) {
  return {subject, std::nullopt, systemError};
}

std::string errorName(int systemError) {
  const char* const name = ::strerrorname_np(systemError);
  return name ? name : "";
}
