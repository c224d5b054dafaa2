#include "linux/file_defaults.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/json.h"

namespace sodam {

namespace {

using nlohmann::json;

constexpr std::string_view base64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Appends the base64 text of the bytes. Twelve bits at a time through a
// table of character pairs: a month of posture records is megabytes.
void appendBase64(std::string& out, const Bytes& bytes) {
  static const std::array<char, 8192> pairs = [] {
    std::array<char, 8192> table{};
    for (std::size_t i = 0; i < 4096; ++i) {
      table[2 * i] = base64Alphabet[i >> 6];
      table[2 * i + 1] = base64Alphabet[i & 63];
    }
    return table;
  }();
  std::size_t start = out.size();
  out.resize(start + (bytes.size() + 2) / 3 * 4, '=');
  char* to = out.data() + start;
  const std::uint8_t* from = bytes.data();
  std::size_t whole = bytes.size() / 3 * 3;
  for (std::size_t i = 0; i < whole; i += 3, to += 4) {
    std::uint32_t group = (from[i] << 16) | (from[i + 1] << 8) | from[i + 2];
    std::memcpy(to, &pairs[2 * (group >> 12)], 2);
    std::memcpy(to + 2, &pairs[2 * (group & 4095)], 2);
  }
  std::size_t rest = bytes.size() - whole;
  if (rest > 0) {
    std::uint32_t group = from[whole] << 16;
    if (rest == 2) group |= from[whole + 1] << 8;
    to[0] = base64Alphabet[group >> 18];
    to[1] = base64Alphabet[(group >> 12) & 63];
    if (rest == 2) to[2] = base64Alphabet[(group >> 6) & 63];
  }
}

std::optional<Bytes> fromBase64(std::string_view text) {
  static const std::array<std::int8_t, 256> values = [] {
    std::array<std::int8_t, 256> table{};
    table.fill(-1);
    for (std::size_t i = 0; i < base64Alphabet.size(); ++i) {
      table[static_cast<std::uint8_t>(base64Alphabet[i])] = static_cast<std::int8_t>(i);
    }
    return table;
  }();
  if (text.size() % 4 != 0) return std::nullopt;
  std::size_t padding = 0;
  while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=')
    ++padding;
  Bytes out;
  out.reserve(text.size() / 4 * 3);
  std::uint32_t group = 0;
  int filled = 0;
  for (std::size_t i = 0; i < text.size() - padding; ++i) {
    std::int8_t value = values[static_cast<std::uint8_t>(text[i])];
    if (value < 0) return std::nullopt;
    group = (group << 6) | static_cast<std::uint32_t>(value);
    if (++filled == 4) {
      out.push_back(static_cast<std::uint8_t>(group >> 16));
      out.push_back(static_cast<std::uint8_t>(group >> 8));
      out.push_back(static_cast<std::uint8_t>(group));
      group = 0;
      filled = 0;
    }
  }
  if (filled == 2) out.push_back(static_cast<std::uint8_t>(group >> 4));
  if (filled == 3) {
    out.push_back(static_cast<std::uint8_t>(group >> 10));
    out.push_back(static_cast<std::uint8_t>(group >> 2));
  }
  if (filled == 1) return std::nullopt;
  return out;
}

std::string dumped(const json& value) {
  // Replacing bad UTF-8 keeps dump from throwing; the strings we store are text.
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

// The JSON text a value is stored as; nothing when JSON cannot hold it.
std::optional<std::string> fragmentOf(const DefaultsValue& value) {
  struct Encoder {
    std::optional<std::string> operator()(bool v) const { return v ? "true" : "false"; }
    std::optional<std::string> operator()(std::int64_t v) const { return std::to_string(v); }
    std::optional<std::string> operator()(double v) const {
      if (!std::isfinite(v)) return std::nullopt;
      return dumped(json(v));
    }
    std::optional<std::string> operator()(const std::string& v) const { return dumped(json(v)); }
    std::optional<std::string> operator()(const std::vector<std::string>& v) const {
      return dumped(json(v));
    }
    std::optional<std::string> operator()(Date v) const {
      if (!std::isfinite(v.sinceReference)) return std::nullopt;
      return "{\"date\":" + dumped(json(v.sinceReference)) + "}";
    }
    std::optional<std::string> operator()(const Bytes& v) const {
      std::string text;
      text.reserve(12 + (v.size() + 2) / 3 * 4);
      text += "{\"data\":\"";
      appendBase64(text, v);
      text += "\"}";
      return text;
    }
    std::optional<std::string> operator()(const IntDictionary& v) const {
      json object = json::object();
      for (const auto& [name, number] : v)
        object[name] = number;
      return "{\"dictionary\":" + dumped(object) + "}";
    }
  };
  return std::visit(Encoder{}, value);
}

std::optional<DefaultsValue> taggedValue(const json& object) {
  if (object.size() != 1) return std::nullopt;
  auto only = object.begin();
  const std::string& tag = only.key();
  const json& inner = only.value();
  if (tag == "date") {
    if (auto seconds = jsonAs<double>(inner)) return Date{*seconds};
  } else if (tag == "data") {
    if (!inner.is_string()) return std::nullopt;
    if (auto bytes = fromBase64(inner.get_ref<const std::string&>())) return std::move(*bytes);
  } else if (tag == "dictionary" && inner.is_object()) {
    IntDictionary dictionary;
    for (const auto& [name, number] : inner.items()) {
      auto whole = jsonAs<std::int64_t>(number);
      if (!whole || !number.is_number_integer()) return std::nullopt;
      dictionary.emplace(name, *whole);
    }
    return dictionary;
  }
  return std::nullopt;
}

std::optional<DefaultsValue> valueOf(std::string_view fragment) {
  // Data written by this store skips the general parser: a month of records
  // is megabytes of base64.
  constexpr std::string_view dataOpen = "{\"data\":\"";
  if (fragment.starts_with(dataOpen) && fragment.ends_with("\"}")) {
    auto inner = fragment.substr(dataOpen.size(), fragment.size() - dataOpen.size() - 2);
    if (auto bytes = fromBase64(inner)) return std::move(*bytes);
  }
  auto parsed = parseJson(fragment);
  if (!parsed) return std::nullopt;
  const json& v = *parsed;
  if (v.is_boolean()) return v.get<bool>();
  if (v.is_number_integer() || v.is_number_unsigned()) {
    if (auto whole = jsonAs<std::int64_t>(v)) return *whole;
    return std::nullopt;
  }
  if (v.is_number_float()) return v.get<double>();
  if (v.is_string()) return v.get<std::string>();
  if (v.is_array()) {
    std::vector<std::string> strings;
    for (const auto& element : v) {
      if (!element.is_string()) return std::nullopt;
      strings.push_back(element.get<std::string>());
    }
    return strings;
  }
  if (v.is_object()) return taggedValue(v);
  return std::nullopt;
}

bool writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Holds the lock file's exclusive lock for one scope.
class FileLock {
 public:
  explicit FileLock(int fd) : fd_(fd) {
    if (fd_ < 0) return;
    while (::flock(fd_, LOCK_EX) != 0 && errno == EINTR) {
    }
  }
  ~FileLock() {
    if (fd_ >= 0) ::flock(fd_, LOCK_UN);
  }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

 private:
  int fd_;
};

std::optional<std::string> readFile(const std::filesystem::path& path, bool& missing) {
  missing = false;
  int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    missing = errno == ENOENT;
    return std::nullopt;
  }
  std::string text;
  std::array<char, 1 << 16> buffer;
  for (;;) {
    ssize_t count = ::read(fd, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      ::close(fd);
      return std::nullopt;
    }
    if (count == 0) break;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  ::close(fd);
  return text;
}

}  // namespace

// What the document looked like when this object last read or wrote it; a
// rename by another program changes the inode, an edit in place the times.
struct FileDefaults::Identity {
  bool exists = false;
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  timespec modified{};
  timespec changed{};

  static Identity of(const std::filesystem::path& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return {};
    return {true, info.st_dev, info.st_ino, info.st_size, info.st_mtim, info.st_ctim};
  }
  bool operator==(const Identity& other) const {
    auto same = [](timespec a, timespec b) {
      return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
    };
    return exists == other.exists && device == other.device && inode == other.inode &&
           size == other.size && same(modified, other.modified) && same(changed, other.changed);
  }
};

FileDefaults::FileDefaults(std::filesystem::path directory, WriteFunction write)
    : directory_(std::move(directory)),
      write_(write ? std::move(write) : WriteFunction(writeAll)),
      seen_(std::make_unique<Identity>()) {
  std::error_code ignored;
  std::filesystem::create_directories(directory_, ignored);
  lockFd_ = ::open((directory_ / "settings.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  FileLock lock(lockFd_);
  switch (readIfChanged()) {
    case ReadResult::read:
      loadState_ = LoadState::loaded;
      break;
    case ReadResult::damaged:
      loadState_ = LoadState::damaged;
      damagedInPlace_ = true;
      keepAside();
      break;
    case ReadResult::missing:
    case ReadResult::unchanged:
      loadState_ = LoadState::missing;
      break;
  }
}

FileDefaults::~FileDefaults() {
  if (lockFd_ >= 0) ::close(lockFd_);
}

std::optional<std::filesystem::path> FileDefaults::defaultDirectory(const char* xdgConfigHome,
                                                                    const char* home) {
  // The base directory rules ignore a relative XDG_CONFIG_HOME.
  if (xdgConfigHome && *xdgConfigHome == '/') {
    return std::filesystem::path(xdgConfigHome) / "sodamjari";
  }
  if (home && *home) return std::filesystem::path(home) / ".config" / "sodamjari";
  return std::nullopt;
}

std::optional<std::filesystem::path> FileDefaults::defaultDirectory() {
  return defaultDirectory(std::getenv("XDG_CONFIG_HOME"), std::getenv("HOME"));
}

std::optional<DefaultsValue> FileDefaults::object(std::string_view key) const {
  std::lock_guard guard(mutex_);
  readIfChanged();
  auto found = fragments_.find(key);
  if (found == fragments_.end()) return std::nullopt;
  return valueOf(*found->second);
}

void FileDefaults::set(std::string_view key, DefaultsValue value) {
  // A value JSON cannot hold clears the key, as a failed encoding does.
  auto fragment = fragmentOf(value);
  change(key, fragment ? std::make_shared<const std::string>(std::move(*fragment)) : nullptr);
}

void FileDefaults::remove(std::string_view key) {
  change(key, nullptr);
}

FileDefaults::LoadState FileDefaults::loadState() const {
  std::lock_guard guard(mutex_);
  return loadState_;
}

bool FileDefaults::lastWriteSucceeded() const {
  std::lock_guard guard(mutex_);
  return lastWriteSucceeded_;
}

std::optional<std::filesystem::path> FileDefaults::keptAside() const {
  std::lock_guard guard(mutex_);
  return keptAside_;
}

void FileDefaults::change(std::string_view key, Fragment fragment) {
  std::lock_guard guard(mutex_);
  pending_.insert_or_assign(std::string(key), std::move(fragment));
  applyPending();
  FileLock lock(lockFd_);
  if (readIfChanged() == ReadResult::damaged) damagedInPlace_ = true;
  // A damaged document is never overwritten before it was kept.
  bool ok = (!damagedInPlace_ || keepAside()) && writeDocument();
  if (ok) {
    pending_.clear();
    *seen_ = Identity::of(path());
  }
  lastWriteSucceeded_ = ok;
}

void FileDefaults::applyPending() const {
  for (const auto& [key, fragment] : pending_) {
    if (fragment) {
      fragments_.insert_or_assign(key, fragment);
    } else if (auto found = fragments_.find(key); found != fragments_.end()) {
      fragments_.erase(found);
    }
  }
}

FileDefaults::ReadResult FileDefaults::readIfChanged() const {
  Identity now = Identity::of(path());
  if (now == *seen_) return ReadResult::unchanged;
  bool missing = false;
  auto text = readFile(path(), missing);
  if (missing) {
    fragments_.clear();
    applyPending();
    *seen_ = now;
    return ReadResult::missing;
  }
  auto document = text ? parseJson(*text) : std::nullopt;
  if (!document || !document->is_object()) return ReadResult::damaged;
  Fragments read;
  for (const auto& [key, value] : document->items()) {
    read.emplace(key, std::make_shared<const std::string>(dumped(value)));
  }
  fragments_ = std::move(read);
  applyPending();
  *seen_ = now;
  return ReadResult::read;
}

bool FileDefaults::keepAside() {
  for (int number = 1; number < 1000; ++number) {
    auto target = directory_ / (std::string(fileName) + ".damaged-" + std::to_string(number));
    std::error_code error;
    if (std::filesystem::exists(target, error)) continue;
    std::filesystem::rename(path(), target, error);
    if (error) return false;
    keptAside_ = target;
    damagedInPlace_ = false;
    *seen_ = Identity{};
    return true;
  }
  return false;
}

bool FileDefaults::writeDocument() {
  std::string temporary = (directory_ / (std::string(fileName) + ".XXXXXX")).string();
  int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
  if (fd < 0) return false;
  bool written = writeTemporary(fd) && ::fdatasync(fd) == 0;
  written = ::close(fd) == 0 && written;
  if (written && ::rename(temporary.c_str(), path().c_str()) == 0) return true;
  ::unlink(temporary.c_str());
  return false;
}

bool FileDefaults::writeTemporary(int fd) const {
  // Small pieces are gathered; a large value goes out from where it lies
  // rather than being copied into one document string first.
  constexpr std::size_t direct = 1 << 16;
  std::string pending = "{";
  bool first = true;
  for (const auto& [key, fragment] : fragments_) {
    pending += first ? "\n  " : ",\n  ";
    first = false;
    pending += dumped(json(key));
    pending += ": ";
    if (fragment->size() < direct) {
      pending += *fragment;
      continue;
    }
    if (!write_(fd, pending) || !write_(fd, *fragment)) return false;
    pending.clear();
  }
  pending += first ? "}\n" : "\n}\n";
  return write_(fd, pending);
}

}  // namespace sodam
