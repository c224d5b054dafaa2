#include "linux/group_command.h"

#include <iostream>
#include <optional>

#include "linux/cloud_session.h"
#include "linux/data_directory.h"
#include "linux/record_store.h"
#include "support/text.h"

namespace sodam {

namespace {

const char* usage =
    "usage: sodamjari group signin [google|apple] | signout | create NAME | join CODE |\n"
    "                      leave [CODE] | list | status [--data-dir DIR]";

struct GroupArguments {
  std::vector<std::string> words;
  std::optional<std::string> dataDir;
};

std::optional<GroupArguments> readArguments(const std::vector<std::string>& args) {
  GroupArguments read;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] != "--data-dir") {
      read.words.push_back(args[i]);
      continue;
    }
    if (takeDataDir(args, i, read.dataDir)) return std::nullopt;
  }
  if (read.words.empty()) return std::nullopt;
  return read;
}

int signIn(CloudSession& session, CloudAuth::Provider provider, std::ostream& out,
           std::ostream& err) {
  out << "keychain: " << session.keychainSummary() << "\n";
  session.auth.signIn(provider);
  out << fill("브라우저에서 {provider} 로그인을 마쳐 주세요",
              {{"provider", CloudAuth::title(provider)}})
      << std::endl;  // shown while it waits
  const bool ended =
      session.runUntil([&] { return session.auth.phase().kind != CloudAuth::Phase::Kind::waiting; },
                       CloudAuth::signInSeconds + 5);
  if (ended && session.auth.signedIn() && session.auth.phase() == CloudAuth::Phase::idle()) {
    out << "signed in as " << session.auth.user()->name << " (" << session.auth.user()->provider
        << ")\n";
    return 0;
  }
  const auto& phase = session.auth.phase();
  err << "sodamjari: "
      << (phase.kind == CloudAuth::Phase::Kind::failed ? phase.message : "로그인하지 못했어요")
      << "\n";
  return 1;
}

}  // namespace

int runGroup(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
             GroupVerbs verbs) {
  const auto read = readArguments(args);
  const auto directory = read && read->dataDir
                             ? std::optional<std::filesystem::path>(*read->dataDir)
                             : DataDirectory::standard();
  if (!read || !directory) {
    err << usage << "\n";
    return 2;
  }
  const std::string& verb = read->words.front();
  CloudSession session(*directory, CloudConfig::built(), [&out](const std::string& url) {
    out << "login page: " << url << "\n";
    if (!openInBrowser(url)) out << "(open it in a browser: xdg-open could not)\n";
    out << std::flush;
  });
  if (verb == "signin") {
    const std::string provider = read->words.size() > 1 ? read->words[1] : "google";
    if (provider != "google" && provider != "apple") {
      err << usage << "\n";
      return 2;
    }
    return signIn(session,
                  provider == "apple" ? CloudAuth::Provider::apple : CloudAuth::Provider::google,
                  out, err);
  }
  if (verb == "signout") {
    session.auth.signOut();
    out << "signed out; the session's secrets are gone from " << session.keychainSummary() << "\n";
    return 0;
  }
  if (verbs) return verbs(session, *directory, read->words, out, err);
  err << "sodamjari: unknown group command \"" << verb << "\"\n" << usage << "\n";
  return 2;
}

}  // namespace sodam
