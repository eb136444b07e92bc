#ifndef ZRCOMMON_TOOLS_CODES_H
#define ZRCOMMON_TOOLS_CODES_H

#include <string>
#include <vector>

#include "tools/refusal.h"

/// Who gives a code: the same number means something else elsewhere.
enum class CodeOf {
  kEveryOperation,
  kProfile,
  kSettingsRead,
  kSettingsSaved,
  kReached,
  kNotReached,
  kLinks,
  kService,
  kFeature,
  kExitStatus,
};

struct CodeMeaning {
  CodeOf giver;
  unsigned int code;
  const char* words;
};

/// Every code of the library and of zrtool, in the order of their givers.
const std::vector<CodeMeaning>& codeMeanings();

/// What gives the code, such as "profile files".
const char* nameOf(CodeOf giver);

/// What the code means where it comes from this giver; what is no code of its own is errno's.
std::string inWords(CodeOf giver, unsigned int code);

/// "code 204: SUBJECT: there is no section of that name", and the reason of the system, if known.
Refusal refusal(CodeOf giver, unsigned int code, const std::string& subject, int systemError = 0);

#endif  // ZRCOMMON_TOOLS_CODES_H
