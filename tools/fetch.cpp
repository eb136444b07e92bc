#include <zrcommon/network.h>

#include <cstring>
#include <vector>

#include "tools/commands.h"
#include "tools/new_file.h"

namespace {

struct FetchArguments {
  std::string url;
  std::string output;
  unsigned int most = 64U << 20U;
};

[[noreturn]] void refuseAsNotFetched(const FetchArguments& arguments) {
  throw Refusal("nothing was fetched from " + arguments.url +
                ": the address could not be opened, its body is empty, or it is larger than " +
                std::to_string(arguments.most) +
                " bytes (--max); \"zrtool doctor\" checks the installation");
}

void deliver(const std::string& file, std::string_view body, Output& out) {
  if (file.empty()) {
    out.result({{"body", body}});
    return out.print(body);
  }
  NewFile saved(file);
  saved.write(body);
  saved.commit();
}

void fetch(const FetchArguments& arguments, Output& out) {
  std::vector<char> body(std::size_t{arguments.most} + 1);
  unsigned int received = 0;
  unsigned int error = 0;
  if (!ZRSendDataAndGetResponse(arguments.url.c_str(), body.data(),
                                static_cast<unsigned int>(body.size()), &received, &error))
    refuseAsNotFetched(arguments);
  const std::size_t length = std::strlen(body.data());
  deliver(arguments.output, {body.data(), length}, out);
  if (length != received)
    throw Refusal(
        "the body holds zero bytes, which a text response cannot: " + std::to_string(length) +
        " of " + std::to_string(received) + " bytes were delivered");
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
      ->check(numberFrom(1, 0xFFFFFFFE))
      ->type_name("BYTES");
  command->callback([arguments, &out] { fetch(*arguments, out); });
}
