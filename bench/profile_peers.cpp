#include "bench/profile_peers.h"

#include <cstdlib>
#include <cstring>

#include "bench/contest.h"

#ifdef ZR_BENCH_GLIB
#include <glib.h>
#endif
#ifdef ZR_BENCH_INIH
#include <ini.h>
#endif
#ifdef ZR_BENCH_SIMPLEINI
#define SI_NO_CONVERSION
#include <SimpleIni.h>
#endif

namespace {

void must(bool ok) {
  if (!ok) std::abort();
}

#ifdef ZR_BENCH_GLIB
GKeyFile* loadGlib(const char* path) {
  GKeyFile* const file = g_key_file_new();
  must(g_key_file_load_from_file(file, path, G_KEY_FILE_KEEP_COMMENTS, nullptr));
  return file;
}

void readGlib(const char* path, const char* section, const char* key) {
  GKeyFile* const file = loadGlib(path);
  gchar* const value = g_key_file_get_value(file, section, key, nullptr);
  must(value != nullptr);
  g_free(value);
  g_key_file_free(file);
}

void changeGlib(const std::string& path, const char* section) {
  GKeyFile* const file = loadGlib(path.c_str());
  g_key_file_set_value(file, section, "setting19", "changed");
  gsize length = 0;
  gchar* const text = g_key_file_to_data(file, &length, nullptr);
  replaceFile(path, text, length);
  g_free(text);
  g_key_file_free(file);
}
#endif

#ifdef ZR_BENCH_INIH
struct InihSearch {
  const char* section;
  const char* key;
  char value[1025];
};

void readInih(const char* path, const char* section, const char* key) {
  InihSearch search = {section, key, ""};
  const auto visit = [](void* user, const char* in, const char* name, const char* value) {
    auto* wanted = static_cast<InihSearch*>(user);
    if (std::strcmp(in, wanted->section) == 0 && std::strcmp(name, wanted->key) == 0)
      std::strncpy(wanted->value, value, sizeof wanted->value - 1);
    return 1;
  };
  must(ini_parse(path, visit, &search) == 0 && search.value[0]);
}
#endif

#ifdef ZR_BENCH_SIMPLEINI
void readSimpleIni(const char* path, const char* section, const char* key) {
  CSimpleIniA ini;
  must(ini.LoadFile(path) == SI_OK && ini.GetValue(section, key));
}

void changeSimpleIni(const std::string& path, const char* section) {
  CSimpleIniA ini;
  must(ini.LoadFile(path.c_str()) == SI_OK);
  ini.SetValue(section, "setting19", "changed");
  std::string text;
  ini.Save(text);
  replaceFile(path, text.data(), text.size());
}
#endif

using Read = void (*)(const char* path, const char* section, const char* key);

const std::pair<const char*, Read> kReaders[] = {
#ifdef ZR_BENCH_GLIB
    {"GKeyFile", readGlib},
#endif
#ifdef ZR_BENCH_INIH
    {"inih", readInih},
#endif
#ifdef ZR_BENCH_SIMPLEINI
    {"SimpleIni", readSimpleIni},
#endif
    {nullptr, nullptr}};

using Change = void (*)(const std::string& path, const char* section);

const std::pair<const char*, Change> kChangers[] = {
#ifdef ZR_BENCH_GLIB
    {"GKeyFile", changeGlib},
#endif
#ifdef ZR_BENCH_SIMPLEINI
    {"SimpleIni", changeSimpleIni},
#endif
    {nullptr, nullptr}};

}  // namespace

void enterReadingPeers(const std::string& operation, const std::string& size,
                       const ProfileSample& sample, const std::string& only) {
  for (const auto& [name, read] : kReaders) {
    if (!name || (!only.empty() && only != name)) continue;
    enter(operation, size, name, [&sample, read = read] {
      read(sample.path.c_str(), sample.lastSection.c_str(), sample.lastKey.c_str());
    });
  }
}

void enterChangingPeers(const std::string& operation, const std::string& size,
                        const ProfileSample& sample) {
  for (const auto& [name, change] : kChangers) {
    if (!name) continue;
    enter(operation, size, name,
          [&sample, change = change] { change(sample.path, sample.middleSection.c_str()); });
  }
}
