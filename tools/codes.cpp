#include "tools/codes.h"

#include <cstring>

const std::vector<CodeMeaning>& codeMeanings() {
  using Of = CodeOf;
  static const std::vector<CodeMeaning> meanings = {
      {Of::kEveryOperation, 0, "success"},
      {Of::kProfile, 102,
       "the file cannot be opened for reading, or its temporary copy cannot be created"},
      {Of::kProfile, 201, "the entry has no \"=\", or no value to read a number from"},
      {Of::kProfile, 202, "the section has no entry of that key"},
      {Of::kProfile, 203, "the key is empty"},
      {Of::kProfile, 204, "there is no section of that name"},
      {Of::kProfile, 205, "the section name is empty"},
      {Of::kProfile, 206, "the value is empty"},
      {Of::kSettingsRead, 0, "an argument is null"},
      {Of::kSettingsRead, 1, "success"},
      {Of::kSettingsRead, 2, "there is no such file, or its path has 256 characters or more"},
      {Of::kSettingsRead, 3, "the file cannot be opened for reading"},
      {Of::kSettingsRead, 4, "the file does not hold the 788 bytes of a settings record"},
      {Of::kSettingsSaved, 0, "an argument is null"},
      {Of::kSettingsSaved, 1, "success"},
      {Of::kSettingsSaved, 2,
       "the file can neither be opened nor created, or its path has 256 characters or more"},
      {Of::kSettingsSaved, 3, "the record could not be written whole, and the file was deleted"},
      {Of::kReached, 0, "the internet is reachable"},
      {Of::kNotReached, 0,
       "entry 12, \"Connection Check\", of the server directory is missing, empty or too long, so "
       "nothing was asked"},
      {Of::kNotReached, 105, "neither msg32.htm nor msg32.bin was reached"},
      {Of::kNotReached, 140, "msg32.htm was not reached, though msg32.bin beside it was"},
      {Of::kLinks, 101, "no netlink socket could be opened and bound to the process id"},
      {Of::kService, 120,
       "there is no such init script in /etc/init.d/rc.d or /etc/init.d, or none can have that "
       "name"},
      {Of::kService, 121, "the init script exists, but the action is none of 1 to 4"},
      {Of::kFeature, 0, "the file is shorter than 11 bytes"},
      {Of::kFeature, 2, "the file is missing or cannot be opened"},
      {Of::kExitStatus, 0, "done"},
      {Of::kExitStatus, 1, "refused or failed"},
      {Of::kExitStatus, 2, "bad usage"},
  };
  return meanings;
}

const char* nameOf(CodeOf giver) {
  switch (giver) {
    case CodeOf::kEveryOperation:
      return "every error argument";
    case CodeOf::kProfile:
      return "profile files";
    case CodeOf::kSettingsRead:
      return "internet settings, result of ReadInetOptions";
    case CodeOf::kSettingsSaved:
      return "internet settings, result of SaveInetOptions";
    case CodeOf::kReached:
      return "connectivity check, result 1";
    case CodeOf::kNotReached:
      return "connectivity check, result 0";
    case CodeOf::kLinks:
      return "links and hardware addresses";
    case CodeOf::kService:
      return "services";
    case CodeOf::kFeature:
      return "feature record, result 0";
    case CodeOf::kExitStatus:
      return "exit status of zrtool";
  }
  return "";
}

std::string inWords(CodeOf giver, unsigned int code) {
  for (const CodeMeaning& meaning : codeMeanings())
    if (meaning.giver == giver && meaning.code == code) return meaning.words;
  return std::strerror(static_cast<int>(code));
}

Refusal refusal(CodeOf giver, unsigned int code, const std::string& subject, int systemError) {
  return {"code " + std::to_string(code) + ": " + subject + ": " + inWords(giver, code), code,
          systemError};
}
