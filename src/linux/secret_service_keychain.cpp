#include "linux/secret_service_keychain.h"

#include <dlfcn.h>

#include <cstdlib>

namespace sodam {

namespace {

// The library's schema layout (SecretSchema with its attribute table).
struct SchemaAttribute {
  const char* name;
  int type;  // 0: string
};
struct Schema {
  const char* name;
  int flags;
  SchemaAttribute attributes[32];
  int reserved;
  void* reserved1[7];
};
struct GErrorShape {
  unsigned domain;
  int code;
  char* message;
};

const Schema schema = {Keychain::service, 0, {{"service", 0}, {"account", 0}}, 0, {}};

using Store = int (*)(const Schema*, const char*, const char*, const char*, void*, GErrorShape**,
                      ...);
using Lookup = char* (*)(const Schema*, void*, GErrorShape**, ...);
using Clear = int (*)(const Schema*, void*, GErrorShape**, ...);
using FreeText = void (*)(char*);
using FreeError = void (*)(GErrorShape*);

}  // namespace

struct SecretServiceKeychain::Library {
  void* handle = nullptr;
  Store store = nullptr;
  Lookup lookup = nullptr;
  Clear clear = nullptr;
  FreeText freeText = nullptr;
  FreeError freeError = nullptr;

  ~Library() {
    if (handle) ::dlclose(handle);
  }
  bool load() {
    handle = ::dlopen("libsecret-1.so.0", RTLD_NOW | RTLD_LOCAL);
    if (!handle) return false;
    store = reinterpret_cast<Store>(::dlsym(handle, "secret_password_store_sync"));
    lookup = reinterpret_cast<Lookup>(::dlsym(handle, "secret_password_lookup_sync"));
    clear = reinterpret_cast<Clear>(::dlsym(handle, "secret_password_clear_sync"));
    freeText = reinterpret_cast<FreeText>(::dlsym(handle, "secret_password_free"));
    freeError = reinterpret_cast<FreeError>(::dlsym(handle, "g_error_free"));
    return store && lookup && clear && freeText && freeError;
  }
  // Whether the call went through; the error is let go.
  bool settled(GErrorShape* error) const {
    if (!error) return true;
    freeError(error);
    return false;
  }
};

std::unique_ptr<SecretServiceKeychain> SecretServiceKeychain::open() {
  const char* bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  if (!bus || !*bus) return nullptr;
  auto library = std::make_unique<Library>();
  if (!library->load()) return nullptr;
  GErrorShape* error = nullptr;
  char* probe = library->lookup(&schema, nullptr, &error, "service", Keychain::service, "account",
                                "probe", nullptr);
  if (probe) library->freeText(probe);
  if (!library->settled(error)) return nullptr;
  return std::unique_ptr<SecretServiceKeychain>(new SecretServiceKeychain(std::move(library)));
}

SecretServiceKeychain::SecretServiceKeychain(std::unique_ptr<Library> library)
    : library_(std::move(library)) {}

SecretServiceKeychain::~SecretServiceKeychain() = default;

std::optional<std::string> SecretServiceKeychain::read(const std::string& account) {
  GErrorShape* error = nullptr;
  char* found = library_->lookup(&schema, nullptr, &error, "service", Keychain::service, "account",
                                 account.c_str(), nullptr);
  library_->settled(error);
  if (!found) return std::nullopt;
  std::string text(found);
  library_->freeText(found);
  return text;
}

void SecretServiceKeychain::write(const std::string& account, const std::string& bytes) {
  GErrorShape* error = nullptr;
  const std::string label = std::string("소담자리 ") + account;
  library_->store(&schema, nullptr, label.c_str(), bytes.c_str(), nullptr, &error, "service",
                  Keychain::service, "account", account.c_str(), nullptr);
  library_->settled(error);
}

void SecretServiceKeychain::remove(const std::string& account) {
  GErrorShape* error = nullptr;
  library_->clear(&schema, nullptr, &error, "service", Keychain::service, "account",
                  account.c_str(), nullptr);
  library_->settled(error);
}

}  // namespace sodam
