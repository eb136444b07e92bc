#ifndef ZRCOMMON_BENCH_EMPTY_H
#define ZRCOMMON_BENCH_EMPTY_H

/// Does nothing, in a shared object of its own: what any call of the library costs at least.
void emptyCall(void* object, unsigned int level, const char* format, ...);

#endif  // ZRCOMMON_BENCH_EMPTY_H
