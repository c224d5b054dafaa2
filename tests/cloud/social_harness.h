#pragma once

// Programs of several users against one in-memory double of the service, in
// virtual time: each answer of the double is posted to the shared scheduler.

#include <deque>
#include <memory>
#include <string>

#include "cloud/cloud_auth.h"
#include "cloud/firestore.h"
#include "cloud/social.h"
#include "platform/defaults.h"
#include "sim/cloud_double.h"
#include "sim/sim_devices.h"
#include "support/manual_scheduler.h"

namespace sodam {

inline MemoryKeychain signedInKeychain(CloudDouble& service, const std::string& uid,
                                       const std::string& name) {
  MemoryKeychain keychain;
  keychain.write(Keychain::refreshAccount, service.addUser(uid));
  keychain.write(Keychain::userAccount, toJson(CloudUser{uid, name, "google", {}}).dump());
  return keychain;
}

struct SocialWorld;

// One user's program: the sign-in, the database client and the groups.
struct Program {
  Program(SocialWorld& world, const std::string& uid, const std::string& name);

  MemoryKeychain keychain;
  CloudDouble::Http http;
  CloudAuth auth;
  Firestore store;
  ScriptedPowerSource source;
  Power power{source};
  MemoryDefaults defaults;
  std::deque<std::uint64_t> codes;  // the invite codes to draw, in turn
  std::uint64_t counter;            // every other draw, from a start of its own
  Social social;
};

struct SocialWorld {
  ManualClock clock{Date::fromUnix(1'771'311'600)};  // 2026-02-17 16:00 in Seoul
  ManualScheduler scheduler{clock};
  Calendar calendar{TimeZone::fixed(9 * 3600)};
  CloudDouble service;

  // Lets every answer in flight arrive.
  void settle() {
    for (int i = 0; i < 100; ++i)
      scheduler.runPosted();
  }
};

inline Program::Program(SocialWorld& world, const std::string& uid, const std::string& name)
    : keychain(signedInKeychain(world.service, uid, name)),
      http(world.service, world.scheduler),
      auth(CloudConfig::loopback(1), {http, keychain, world.clock, world.scheduler,
                                      [] { return nullptr; }, [](const std::string&) {}, [] {}}),
      store(auth, http),
      counter(std::hash<std::string>{}(uid) % 997),
      social({auth, store, power, defaults, world.clock, world.scheduler, world.calendar,
              [this](std::uint64_t bound) -> std::uint64_t {
                if (bound == Social::codeRange && !codes.empty()) {
                  const std::uint64_t code = codes.front();
                  codes.pop_front();
                  return code;
                }
                return counter++ % bound;
              }}) {}

}  // namespace sodam
