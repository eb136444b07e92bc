#include <zrcommon/network.h>

#include <cstring>
#include <fstream>
#include <iostream>
#include <vector>

#include "tools/commands.h"
#include "tools/progress.h"

namespace {

struct FetchArguments {
  std::string url;
  std::string output;
  unsigned int most = 64U << 20U;
};

void write(std::ostream& out, const std::string& name, const char* body, std::size_t length) {
  out.write(body, static_cast<std::streamsize>(length));
  if (!out.flush()) throw Refusal(name + " could not be written");
}

bool receive(const std::string& url, std::vector<char>& body, unsigned int& received) {
  const Progress progress("fetching");
  unsigned int error = 0;
  return ZRSendDataAndGetResponse(url.c_str(), body.data(), static_cast<unsigned int>(body.size()),
                                  &received, &error) == 1;
}

void fetch(const FetchArguments& arguments) {
  std::vector<char> body(std::size_t{arguments.most} + 1);
  unsigned int received = 0;
  if (!receive(arguments.url, body, received))
    throw Refusal("nothing was fetched from " + arguments.url +
                  ": the address could not be opened, its body is empty, or it is larger than " +
                  std::to_string(arguments.most) +
                  " bytes (--max); \"zrtool doctor\" checks the installation");
  const std::size_t length = std::strlen(body.data());
  if (arguments.output.empty()) {
    write(std::cout, "standard output", body.data(), length);
  } else {
    std::ofstream file(arguments.output, std::ios::binary);
    write(file, arguments.output, body.data(), length);
  }
  if (length != received)
    throw Refusal(
        "the body holds zero bytes, which a text response cannot: " + std::to_string(length) +
        " of " + std::to_string(received) + " bytes were delivered");
}

}  // namespace

void addFetchCommand(CLI::App& app) {
  auto* command = app.add_subcommand("fetch", "Fetch the body of a web resource");
  auto arguments = std::make_shared<FetchArguments>();
  command->add_option("URL", arguments->url, "Full address")->required();
  command->add_option("--output", arguments->output, "Write to this file, not to standard output")
      ->type_name("FILE");
  command->add_option("--max", arguments->most, "Largest body to accept, in bytes")
      ->capture_default_str()
      ->check(CLI::Range(1U, 0xFFFFFFFEU))
      ->type_name("BYTES");
  command->callback([arguments] { fetch(*arguments); });
}
