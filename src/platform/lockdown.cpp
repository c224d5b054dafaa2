#include "platform/lockdown.h"

#include <utility>

namespace sodam {
namespace {

// A path inside a profile string: quotes and backslashes would end or bend it.
std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + '"';
}

std::string allowWritesUnder(std::string_view path) {
  return "(allow file-write* (subpath " + quoted(path) + "))";
}

}  // namespace

std::string Lockdown::profile(const std::optional<std::string>& home,
                              const std::optional<std::string>& cache,
                              std::string_view bundleIdentifier) {
  std::vector<std::string> lines = {
      "(version 1)",
      "(allow default)",
      "(deny file-write*)",
      R"((allow file-write-data (literal "/dev/null") (literal "/dev/dtracehelper")))",
      "(deny process-exec)",
  };
  if (home) lines.push_back(allowWritesUnder(*home + "/Library/Keychains"));
  // Without an identifier the rule would open the whole cache directory.
  if (cache && !bundleIdentifier.empty())
    lines.push_back(allowWritesUnder(*cache + "/" + std::string(bundleIdentifier)));
  lines.push_back("(deny file-write* (regex #\"" + std::string(imageExtensionPattern) + "\"))");

  std::string text;
  for (const auto& line : lines)
    text += line + "\n";
  return text;
}

std::unique_ptr<Lockdown> Lockdown::engage(Confinement& confinement, Scheduler& scheduler) {
  confinement.ignoreBrokenPipe();
  const std::string text =
      profile(confinement.homePath(), confinement.cachePath(), confinement.bundleIdentifier());
  const bool applied = confinement.apply(text);
  return std::unique_ptr<Lockdown>(
      new Lockdown(scheduler, applied, confinement.refusesImageFilesEverywhere()));
}

std::string Lockdown::summaryFor(bool sandboxed, bool imagesEverywhere) {
  if (!sandboxed) return "보안 잠금을 걸지 못했어요";
  if (!imagesEverywhere) {
    return "보안 잠금이 걸려 있어요 · 프로그램을 실행하지 못하고 기록 폴더 밖에는 쓰지 못해요 · "
           "기록 폴더 안에 사진과 영상을 남기지 않는 건 코드가 지켜요";
  }
  return "보안 잠금이 걸려 있어요 · 사진과 영상은 파일로 남지 않아요";
}

void Lockdown::watch(std::vector<Guard> checks) {
  if (threat_) return;
  checks_ = std::move(checks);
  timer_ = scheduler_.repeating(checkIntervalSeconds, [this] { check(); });
  check();
}

void Lockdown::check() {
  for (const auto& guard : checks_) {
    if (!guard.check) continue;
    auto found = guard.check();
    if (!found) continue;
    threat_ = std::move(found);
    timer_.invalidate();
    if (onThreat) onThreat(*threat_);
    return;
  }
}

}  // namespace sodam
