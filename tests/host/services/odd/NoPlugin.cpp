// A library with one of a plug-in's exports.
extern "C" int MCDllInit();
int MCDllInit() {
  return 0;
}
