#pragma once

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace sodam::testing {

// A fresh folder for one test, removed with everything in it afterwards.
// Open to every user, so that a child that gave up root may work in it.
struct TempDir {
  std::filesystem::path path;

  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "sodam-test-XXXXXX").string();
    path = ::mkdtemp(pattern.data());
    std::filesystem::permissions(path, std::filesystem::perms::all);
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  std::filesystem::path operator/(const std::string& name) const { return path / name; }
};

inline std::string readFile(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

inline void writeFile(const std::filesystem::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary) << text;
}

// The names in a folder, sorted.
inline std::vector<std::string> filesIn(const std::filesystem::path& dir) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace sodam::testing
