#ifndef ZRCOMMON_EXPORT_H
#define ZRCOMMON_EXPORT_H

/// Marks an exported name. The complete list of exported names is abi/zrcommon.map.
#define ZRCOMMON_API __attribute__((visibility("default")))

#endif  // ZRCOMMON_EXPORT_H
