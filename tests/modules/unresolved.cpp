extern "C" int nobody_defines_this();
extern "C" int answer() {
  return nobody_defines_this();
}
