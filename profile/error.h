#ifndef ZRCOMMON_PROFILE_ERROR_H
#define ZRCOMMON_PROFILE_ERROR_H

namespace zrcommon {

/// What the error argument of the profile functions receives.
enum ProfileError : unsigned int {
  kSuccess = 0,
  kCannotOpen = 102,
  kNoValue = 201,
  kNoKey = 202,
  kEmptyKey = 203,
  kNoSection = 204,
  kEmptySection = 205,
  kEmptyValue = 206,
};

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_ERROR_H
