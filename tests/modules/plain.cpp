extern "C" int answer() {
  return 42;
}
