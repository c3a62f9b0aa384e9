#include "image/ZlibBinding.h"

#include <dlfcn.h>

#include <cstdlib>
#include <cstring>

namespace mx::image::zlib {

namespace {

using UncompressFn = int (*)(unsigned char*, unsigned long*, const unsigned char*, unsigned long);
using Crc32Fn = unsigned long (*)(unsigned long, const unsigned char*, unsigned int);

constexpr const char* kLibraryName = "libz.so.1";

bool disabledByEnvironment() {
  const char* v = std::getenv("MX_NO_ZLIB");
  return v && std::strcmp(v, "1") == 0;
}

// The handle stays open for the thread's life: the functions are used on every PNG load.
struct Binding {
  bool looked = false;
  void* library = nullptr;
  UncompressFn uncompress = nullptr;
  Crc32Fn crc32 = nullptr;
};

Binding& binding() {
  thread_local Binding b;
  if (!b.looked) {
    b.looked = true;
    b.library = dlopen(kLibraryName, RTLD_NOW | RTLD_LOCAL);
    if (b.library) {
      b.uncompress = reinterpret_cast<UncompressFn>(dlsym(b.library, "uncompress"));
      b.crc32 = reinterpret_cast<Crc32Fn>(dlsym(b.library, "crc32"));
    }
  }
  return b;
}

}  // namespace

bool Available() { return !disabledByEnvironment() && binding().uncompress != nullptr; }

int Uncompress(uint8_t* dest, size_t& destLen, const uint8_t* source, size_t sourceLen) {
  if (!Available()) return Z_UNAVAILABLE;
  unsigned long outLen = destLen;
  int rc = binding().uncompress(dest, &outLen, source, static_cast<unsigned long>(sourceLen));
  destLen = outLen;
  return rc;
}

uint32_t Crc32(uint32_t crc, const uint8_t* data, size_t length) {
  if (disabledByEnvironment() || !binding().crc32) return 0;
  // zlib takes an unsigned int length; chunk lengths are below 2^31, but feed in slices anyway.
  unsigned long c = crc;
  while (length > 0) {
    unsigned int part = length > 0x40000000u ? 0x40000000u : static_cast<unsigned int>(length);
    c = binding().crc32(c, data, part);
    data += part;
    length -= part;
  }
  return static_cast<uint32_t>(c);
}

bool ProbeCrc32() {
  if (disabledByEnvironment()) return false;
  void* lib = dlopen(kLibraryName, RTLD_NOW | RTLD_LOCAL);
  if (!lib) return false;
  bool found = dlsym(lib, "crc32") != nullptr;
  dlclose(lib);
  return found;
}

}  // namespace mx::image::zlib
