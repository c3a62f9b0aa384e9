// The mximage commands.
#include "image/ImageCommands.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <ostream>

#include "host/String.h"
#include "image/API32bppDIB.h"
#include "image/ConvertOptions.h"

namespace mx::image {

namespace {

constexpr const char* kUsage =
    "usage: mximage info FILE\n"
    "       mximage raw FILE OUT\n"
    "       mximage convert IN OUT [--adaptive] [--quality N] [transforms]\n"
    "       mximage bench-decode FILE N\n";

std::string extensionOf(const std::string& path) {
  size_t dot = path.find_last_of('.');
  size_t slash = path.find_last_of('/');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
  std::string ext = path.substr(dot + 1);
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
  return ext;
}

bool parseInt(const std::string& s, long& v) {
  if (s.empty()) return false;
  char* end = nullptr;
  v = std::strtol(s.c_str(), &end, 10);
  return end && *end == 0;
}

bool load(API32bppDIB& dib, const std::string& path, std::ostream& err) {
  if (dib.LoadPicture_File(host::FromUtf8(path))) return true;
  err << "mximage: cannot load " << path << ": not a picture this library reads, or not readable\n";
  return false;
}

// The transform step of convert: options that change the picture between loading and saving
// are applied here; any left over is a usage error.
bool applyTransforms(API32bppDIB& dib, const ConvertSettings& settings, std::ostream& err) {
  if (settings.transformArgs.empty()) return true;
  std::vector<std::string> rest = settings.transformArgs;
  ConvertOptions options;
  std::string error;
  if (!options.Parse(rest, error)) {
    err << "mximage: " << error << "\n";
    return false;
  }
  if (!rest.empty()) {
    err << "mximage: unknown option " << rest.front() << "\n";
    return false;
  }
  if (!options.Apply(dib, error)) {
    err << "mximage: " << error << "\n";
    return false;
  }
  return true;
}

}  // namespace

bool SaveByExtension(const API32bppDIB& dib, const std::string& path, const ConvertSettings& settings) {
  const std::string ext = extensionOf(path);
  const host::String name = host::FromUtf8(path);
  if (ext == "png") return dib.SaveToFile_PNG(name);
  if (ext == "bmp") return dib.SaveToFile_Bitmap(name);
  if (ext == "jpg" || ext == "jpeg") return dib.SaveToFile_JPG(name, settings.quality);
  if (ext == "gif") return dib.SaveToFile_GIF(name, settings.adaptivePalette);
  return false;
}

int RunImageCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  auto usage = [&] {
    err << kUsage;
    return 2;
  };
  if (args.empty()) return usage();
  const std::string& cmd = args[0];

  if (cmd == "info" && args.size() == 2) {
    API32bppDIB dib;
    if (!load(dib, args[1], err)) return 1;
    out << "width=" << dib.Width() << " height=" << dib.Height() << " type=" << static_cast<int>(dib.ImageType())
        << " alpha=" << static_cast<int>(dib.Alpha()) << "\n";
    return 0;
  }

  if (cmd == "raw" && args.size() == 3) {
    API32bppDIB dib;
    if (!load(dib, args[1], err)) return 1;
    std::ofstream f(args[2], std::ios::binary);
    const size_t size = static_cast<size_t>(dib.Width()) * dib.Height() * 4;
    if (!f || !f.write(reinterpret_cast<const char*>(dib.BitsPointer()), static_cast<std::streamsize>(size))) {
      err << "mximage: cannot write " << args[2] << "\n";
      return 1;
    }
    return 0;
  }

  if (cmd == "convert" && args.size() >= 3) {
    ConvertSettings settings;
    for (size_t i = 3; i < args.size(); ++i) {
      if (args[i] == "--adaptive") {
        settings.adaptivePalette = true;
      } else if (args[i] == "--quality") {
        long q = 0;
        if (i + 1 >= args.size() || !parseInt(args[i + 1], q) || q < 1 || q > 100) return usage();
        settings.quality = static_cast<int>(q);
        ++i;
      } else {
        settings.transformArgs.push_back(args[i]);
      }
    }
    const std::string ext = extensionOf(args[2]);
    if (ext != "png" && ext != "bmp" && ext != "jpg" && ext != "jpeg" && ext != "gif") {
      err << "mximage: cannot tell the format of " << args[2] << " (use .png, .bmp, .jpg or .gif)\n";
      return usage();
    }
    API32bppDIB dib;
    if (!load(dib, args[1], err)) return 1;
    if (!applyTransforms(dib, settings, err)) return 2;
    if (!SaveByExtension(dib, args[2], settings)) {
      err << "mximage: cannot write " << args[2] << "\n";
      return 1;
    }
    return 0;
  }

  if (cmd == "bench-decode" && args.size() == 3) {
    long n = 0;
    if (!parseInt(args[2], n) || n < 1) return usage();
    std::ifstream f(args[1], std::ios::binary);
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
    API32bppDIB dib;
    // Decoded from memory, so the figure is the decoder's and not the disk's.
    if (!dib.LoadPicture_Stream(bytes)) {
      err << "mximage: cannot load " << args[1] << "\n";
      return 1;
    }
    auto start = std::chrono::steady_clock::now();
    for (long i = 0; i < n; ++i) dib.LoadPicture_Stream(bytes);
    double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    char buf[64];
    std::snprintf(buf, sizeof buf, "ms_per_decode=%.3f", ms / static_cast<double>(n));
    out << buf << "\n";
    return 0;
  }
  return usage();
}

}  // namespace mx::image
