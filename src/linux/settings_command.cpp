#include "linux/settings_command.h"

#include <iostream>

#include "app/settings_page.h"
#include "linux/record_store.h"
#include "platform/lockdown.h"
#include "support/utf8.h"

namespace sodam {

namespace {

const char* usage =
    "usage: sodamjari settings [list] [--data-dir DIR]\n"
    "       sodamjari settings get KEY [--data-dir DIR]\n"
    "       sodamjari settings set KEY VALUE [--data-dir DIR]";

struct Request {
  std::vector<std::string> words;  // the subcommand and its operands
  std::optional<std::string> dataDir;
};

std::optional<std::string> readArguments(const std::vector<std::string>& args, Request& request) {
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--data-dir") {
      if (auto problem = takeDataDir(args, i, request.dataDir)) return problem;
    } else if (args[i].rfind("--", 0) == 0) {
      return "unknown option " + utf8::printable(args[i]);
    } else {
      request.words.push_back(args[i]);
    }
  }
  if (request.words.empty()) request.words.push_back("list");
  const std::string& verb = request.words.front();
  const std::size_t operands = request.words.size() - 1;
  if ((verb == "list" && operands == 0) || (verb == "get" && operands == 1) ||
      (verb == "set" && operands == 2)) {
    return std::nullopt;
  }
  return "say list, get KEY or set KEY VALUE";
}

std::string padded(const std::string& text, std::size_t width) {
  const std::size_t used = utf8::columns(text);
  return text + std::string(used < width ? width - used : 1, ' ');
}

void list(const SettingsPage& page, std::ostream& out) {
  for (const auto& row : page.rows()) {
    // Appended rather than concatenated: GCC 12's optimiser warns falsely of
    // overlapping copies in `"(" + text + ")"`.
    std::string allowed = "(";
    allowed.append(row.allowedText()).append(")");
    out << padded(std::string(row.key), 23) << padded(row.valueName(), 10) << padded(allowed, 24)
        << row.title << "\n";
  }
  out << "보안 잠금: " << page.lockdownLine() << "\n";
}

std::string knownKeys(const SettingsPage& page) {
  std::string keys;
  for (const auto& row : page.rows())
    keys.append(keys.empty() ? "" : ", ").append(row.key);
  return keys;
}

int perform(const Request& request, SettingsPage& page, std::ostream& out, std::ostream& err) {
  const std::string& verb = request.words.front();
  if (verb == "list") {
    list(page, out);
    return 0;
  }
  const std::string& key = request.words[1];
  const auto row = page.row(key);
  if (!row) {
    err << "sodamjari settings: unknown setting \"" << utf8::printable(key)
        << "\"; the settings are " << knownKeys(page) << "\n";
    return 2;
  }
  if (verb == "get") {
    out << row->valueName() << "\n";
    return 0;
  }
  const std::string& text = request.words[2];
  const auto value = row->parse(text);
  if (!value || !page.set(key, *value)) {
    err << "sodamjari settings: " << key << " takes " << row->allowedText() << ", not \""
        << utf8::printable(text) << "\"\n";
    return 2;
  }
  const auto changed = page.row(key);
  out << key << " = " << changed->valueName() << " (" << changed->valueTitle() << ")\n";
  return 0;
}

}  // namespace

int runSettings(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (!args.empty() && (args.front() == "--help" || args.front() == "-h")) {
    out << usage << "\n";
    return 0;
  }
  Request request;
  if (auto problem = readArguments(args, request)) {
    err << "sodamjari settings: " << *problem << "\n" << usage << "\n";
    return 2;
  }
  RecordStore store = RecordStore::open(request.dataDir, request.words.front() == "set");
  if (const int status = store.complain("settings", err)) return status;
  // Without a store the defaults show, and nothing is created to show them.
  MemoryDefaults none;
  Defaults& defaults = store.defaults ? static_cast<Defaults&>(*store.defaults) : none;
  const Calendar calendar = localCalendar();
  const SystemClock clock;
  Store settings(defaults, clock, calendar);
  // This program never confines itself; the line says so.
  SettingsPage page(settings, Lockdown::summaryFor(false));
  const int status = perform(request, page, out, err);
  if (auto failure = store.defaults ? store.defaults->firstFailure() : std::nullopt) {
    err << "sodamjari settings: cannot write " << failure->describe() << "\n";
    return 1;
  }
  return status;
}

}  // namespace sodam
