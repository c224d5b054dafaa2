#pragma once

// The settings of the Linux program: one JSON document, settings.json, in a
// folder of its own. Any thread may call it; one mutex guards the object and
// a lock file (flock) guards the document against other programs.
//
// Every write takes the lock, re-reads the document when another program
// replaced it since this object last saw it, applies the change and replaces
// the document atomically (a temporary file in the same folder, written,
// synced, renamed over the old one). A document that cannot be read reads as
// defaults and is renamed aside ("settings.json.damaged-1", "-2", ...) before
// anything is written.
//
// Each value is stored in the JSON form of its kind: bool, integer and
// double as JSON literals, a string, a string array; a date as
// {"date": seconds since 2001-01-01}, data as {"data": "<base64>"} and an
// integer dictionary as {"dictionary": {...}}. A member of any other shape is
// kept as it is and reads as absent.

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/defaults.h"

namespace sodam {

class FileDefaults final : public Defaults {
 public:
  enum class LoadState { loaded, missing, damaged };
  // Writes all bytes to an open file, false when it could not; replaced in
  // tests to fail a write half way.
  using WriteFunction = std::function<bool(int fd, std::string_view bytes)>;

  static constexpr const char* fileName = "settings.json";

  explicit FileDefaults(std::filesystem::path directory, WriteFunction write = {});
  ~FileDefaults() override;
  FileDefaults(const FileDefaults&) = delete;
  FileDefaults& operator=(const FileDefaults&) = delete;

  // $XDG_CONFIG_HOME/sodamjari when that is an absolute path, else
  // $HOME/.config/sodamjari; nothing without either.
  static std::optional<std::filesystem::path> defaultDirectory(const char* xdgConfigHome,
                                                               const char* home);
  static std::optional<std::filesystem::path> defaultDirectory();

  std::optional<DefaultsValue> object(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

  LoadState loadState() const;
  // False after a write that did not reach the file; the value then lives
  // in memory and goes out with the next write.
  bool lastWriteSucceeded() const;
  // Where the damaged document was put, when there was one.
  std::optional<std::filesystem::path> keptAside() const;
  std::filesystem::path path() const { return directory_ / fileName; }

 private:
  struct Identity;
  // Each key's JSON text; shared, as a month of records is megabytes.
  using Fragment = std::shared_ptr<const std::string>;
  using Fragments = std::map<std::string, Fragment, std::less<>>;
  enum class ReadResult { read, missing, damaged, unchanged };

  void change(std::string_view key, Fragment fragment);
  ReadResult readIfChanged() const;
  bool keepAside();
  bool writeDocument();
  bool writeTemporary(int fd) const;
  void applyPending() const;

  std::filesystem::path directory_;
  WriteFunction write_;
  int lockFd_ = -1;
  LoadState loadState_ = LoadState::missing;
  bool damagedInPlace_ = false;
  bool lastWriteSucceeded_ = true;
  std::optional<std::filesystem::path> keptAside_;

  mutable std::mutex mutex_;
  // The document as this object knows it.
  mutable Fragments fragments_;
  // Changes not yet in the file (null: removed); re-applied over a re-read.
  Fragments pending_;
  mutable std::unique_ptr<Identity> seen_;
};

}  // namespace sodam
