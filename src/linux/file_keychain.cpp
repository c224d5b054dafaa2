#include "linux/file_keychain.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "support/json.h"

namespace sodam {

nlohmann::json FileKeychain::load() const {
  std::ifstream in(path_);
  std::stringstream text;
  text << in.rdbuf();
  auto items = parseJson(text.str());
  return items && items->is_object() ? *items : nlohmann::json::object();
}

void FileKeychain::save(const nlohmann::json& items) const {
  std::error_code ignored;
  std::filesystem::create_directories(path_.parent_path(), ignored);
  const std::string temporary = path_.string() + ".new";
  const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (fd < 0) return;
  ::fchmod(fd, 0600);  // a file left by an older run keeps no wider mode
  const std::string text = items.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  const bool written = ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  const bool closed = ::close(fd) == 0;
  if (written && closed)
    std::filesystem::rename(temporary, path_, ignored);
  else
    std::filesystem::remove(temporary, ignored);
}

std::optional<std::string> FileKeychain::read(const std::string& account) {
  return jsonRequired<std::string>(load(), account.c_str());
}

void FileKeychain::write(const std::string& account, const std::string& bytes) {
  auto items = load();
  items[account] = bytes;
  save(items);
}

void FileKeychain::remove(const std::string& account) {
  auto items = load();
  if (items.erase(account) > 0) save(items);
}

}  // namespace sodam
