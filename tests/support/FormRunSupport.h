#pragma once
// For tests that run a form as mxrun runs it: the script file it plays, and the events it prints
// ("EVENT control.Name args" lines).
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace mx::test {

// Writes `text` to the file `name` in the test's temporary folder; returns its path.
inline std::string WriteTempFile(const std::string& name, const std::string& text) {
  const std::string path = ::testing::TempDir() + name;
  std::ofstream(path) << text;
  return path;
}

// The events of one control in the order printed, without the "EVENT name." prefix.
inline std::vector<std::string> EventsOf(const std::string& text, const std::string& control) {
  std::vector<std::string> out;
  std::istringstream in(text);
  std::string line;
  const std::string prefix = "EVENT " + control + ".";
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.rfind(prefix, 0) == 0) out.push_back(line.substr(prefix.size()));
  }
  return out;
}

}  // namespace mx::test
