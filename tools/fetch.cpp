#include <zrcommon/network.h>

#include <cstring>
#include <vector>

#include "tools/commands.h"
#include "tools/internet_library.h"
#include "tools/new_file.h"

namespace {

struct FetchArguments {
  std::string url;
  std::string output;
  unsigned int most = 64U << 20U;
};

// The library zeroes the buffer once it has read something, so this byte tells whether it has.
constexpr char kUnread = 1;

std::string whyNotFetched(const FetchArguments& arguments, const char* body) {
  const std::string problem = internetLibraryProblem();
  const std::string limit = "larger than " + std::to_string(arguments.most) + " bytes (--max)";
  if (!problem.empty()) return problem;
  if (*body == kUnread) return "the address could not be opened or read";
  return *body == '\0' ? "the body is empty, begins with a zero byte, or is " + limit
                       : "the body is " + limit;
}

// A part of a body takes the place of no file.
void deliver(const std::string& file, std::string_view body, bool isWhole, Output& out) {
  if (file.empty()) {
    out.result({{"body", body}});
    return out.print(body);
  }
  if (!isWhole) return;
  NewFile saved(file);
  saved.write(body);
  saved.commit();
}

void fetch(const FetchArguments& arguments, Output& out) {
  std::vector<char> body(std::size_t{arguments.most} + 1);
  body[0] = kUnread;
  unsigned int received = 0;
  unsigned int error = 0;
  if (!ZRSendDataAndGetResponse(arguments.url.c_str(), body.data(),
                                static_cast<unsigned int>(body.size()), &received, &error))
    throw Refusal("nothing was fetched from " + arguments.url + ": " +
                  whyNotFetched(arguments, body.data()) + "; see zrtool doctor");
  const std::string_view text(body.data(), std::strlen(body.data()));
  deliver(arguments.output, text, text.size() == received, out);
  if (text.size() != received)
    throw Refusal("the body holds zero bytes, which a text response cannot: only the first " +
                  std::to_string(text.size()) + " of " + std::to_string(received) +
                  " bytes were received");
}

}  // namespace

void addFetchCommand(CLI::App& app, Output& out) {
  auto* command = app.add_subcommand("fetch", "Fetch the body of a web resource");
  auto arguments = std::make_shared<FetchArguments>();
  command->add_option("URL", arguments->url, "Full address")->required();
  command->add_option("--output", arguments->output, "Write to this file, not to standard output")
      ->type_name("FILE");
  command->add_option("--max", arguments->most, "Largest body to accept, in bytes")
      ->capture_default_str()
      ->transform(numberFrom(1, 0xFFFFFFFE))
      ->type_name("BYTES");
  command->callback([arguments, &out] { fetch(*arguments, out); });
}
