#pragma once

// The folder that holds the Linux program's settings and records. One
// program at a time may use it: whoever claims it holds an exclusive lock on
// the folder itself until the claim is dropped, so two runs can never write
// over each other's records.

#include <filesystem>
#include <optional>
#include <string>
#include <variant>

namespace sodam {

// Why the settings store cannot be used, for the person at the terminal.
struct StoreFailure {
  enum class Kind {
    busy,      // another program holds the folder
    unusable,  // the folder or the database cannot be opened, read or written
  };
  Kind kind = Kind::unusable;
  std::filesystem::path path;
  std::string cause;

  std::string describe() const { return path.string() + ": " + cause; }
};

class DataDirectory {
 public:
  // $XDG_CONFIG_HOME/sodamjari when that is an absolute path, else
  // $HOME/.config/sodamjari; nothing without either.
  static std::optional<std::filesystem::path> standard(const char* xdgConfigHome, const char* home);
  static std::optional<std::filesystem::path> standard();

  // Creates the folder when it is missing and locks it. Fails when the path
  // is taken by a file, cannot be created or opened, or is locked already.
  static std::variant<DataDirectory, StoreFailure> claim(const std::filesystem::path& path);

  DataDirectory(DataDirectory&& other) noexcept;
  DataDirectory& operator=(DataDirectory&& other) noexcept;
  DataDirectory(const DataDirectory&) = delete;
  DataDirectory& operator=(const DataDirectory&) = delete;
  ~DataDirectory();

  const std::filesystem::path& path() const { return path_; }

 private:
  DataDirectory(std::filesystem::path path, int fd) : path_(std::move(path)), fd_(fd) {}

  std::filesystem::path path_;
  int fd_ = -1;
};

}  // namespace sodam
