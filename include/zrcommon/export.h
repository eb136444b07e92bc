#ifndef ZRCOMMON_EXPORT_H
#define ZRCOMMON_EXPORT_H

/// Marks what components link against. abi/zrcommon.map is the list of the names themselves.
#define ZRCOMMON_API __attribute__((visibility("default")))

#endif  // ZRCOMMON_EXPORT_H
