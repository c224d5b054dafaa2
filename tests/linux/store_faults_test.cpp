// The simulate command against a real store in trouble: what it says, the
// status it ends with, and what it leaves behind.

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>
#include <sstream>

#include "linux/child_process.h"
#include "linux/companion_command.h"
#include "linux/focus_command.h"
#include "linux/health_command.h"
#include "linux/report_command.h"
#include "linux/settings_command.h"
#include "linux/simulate_command.h"
#include "linux/sqlite_defaults.h"
#include "linux/store_testing.h"
#include "linux/stretch_command.h"
#include "linux/temp_dir.h"

namespace sodam {
namespace {

namespace fs = std::filesystem;
using namespace sodam::testing;

struct StoreFaults : ::testing::Test {
  TempDir root;
  fs::path data = root / "data";
  fs::path db = data / SqliteDefaults::fileName;
  // An hour at the desk of somebody the program has not met yet.
  std::string hour = [this] {
    writeFile(root / "hour.txt", "start 09:00\nend 10:00\n09:00 present=yes distance=55 lid=110\n");
    return (root / "hour.txt").string();
  }();
  std::vector<std::string> args = {hour, "--data-dir", data.string()};

  // A store that a person has used, with its database written out whole.
  void makeStore() {
    auto store = openStore(data);
    store->setBool("guideDone", true);
    store->setData("postureLog", Bytes{'[', ']'});
  }
  std::string snapshot() const {
    std::string all;
    for (const auto& name : filesIn(data))
      all += name + ":" + readFile(data / name) + "\n";
    return all;
  }
};

TEST_F(StoreFaults, AStoreThatCannotBeOpenedEndsTheRunAndIsLeftAsItWas) {
  struct Case {
    const char* name;
    std::function<void()> arrange;
    fs::path named;
    std::string cause;
  };
  // Root may do anything: the child gives that up first.
  const Case cases[] = {
      {"an unreadable database",
       [&] {
         makeStore();
         ::chmod(db.c_str(), 0);
       },
       db, "Permission denied"},
      {"a read-only folder",
       [&] {
         makeStore();
         ::chmod(db.c_str(), 0666);
         ::chmod(data.c_str(), 0555);
       },
       db, "attempt to write a readonly database"},
      {"a read-only empty folder",
       [&] {
         fs::create_directory(data);
         ::chmod(data.c_str(), 0555);
       },
       db, "Permission denied"},
      {"a file where the folder should be", [&] { writeFile(data, "not a folder"); }, data,
       "Not a directory"},
  };
  for (const auto& c : cases) {
    c.arrange();
    const std::string before = fs::is_directory(data) ? snapshot() : readFile(data);
    const auto result = runInChild([&](std::ostream& out, std::ostream& err) {
      return dropRoot() ? runSimulate(args, out, err) : 99;
    });
    EXPECT_EQ(result.status, 1) << c.name << "\n" << result.err;
    EXPECT_NE(result.err.find("cannot use the settings store: " + c.named.string() + ": "),
              std::string::npos)
        << c.name << "\n"
        << result.err;
    EXPECT_NE(result.err.find(c.cause), std::string::npos) << c.name << "\n" << result.err;
    EXPECT_TRUE(result.out.empty()) << c.name << "\n" << result.out;
    if (fs::is_directory(data)) ::chmod(data.c_str(), 0777);
    EXPECT_EQ(fs::is_directory(data) ? snapshot() : readFile(data), before)
        << c.name << ": nothing renamed, reset or written";
    fs::remove_all(data);
  }
}

TEST_F(StoreFaults, AFullDiskIsToldInTheTranscriptAndEndsTheRunWithStatusOne) {
  fs::create_directory(data);
  fs::permissions(data, fs::perms::all);
  const auto result = runInChild([&](std::ostream& out, std::ostream& err) {
    constexpr std::size_t room = 96 * 1024;
    const bool smallDisk = mountSmallDisk(data.string(), room);
    if (!smallDisk) {
      // Where no file system may be mounted, the kernel's file size limit
      // refuses the write-ahead log's growth instead.
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit limit{room, RLIM_INFINITY};
      ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    const int status = runSimulate(args, out, err);
    // What was kept, looked at before a small disk goes with the child.
    auto store = openStore(data);
    out << "after: " << (store && !store->keptAside()) << " "
        << (store && store->data("baseline").value.has_value()) << "\n"
        << (smallDisk ? "disk: a small tmpfs\n" : "disk: a file size limit\n");
    return status;
  });
  RecordProperty("disk", result.out.find("disk: a small tmpfs") != std::string::npos
                             ? "a small tmpfs"
                             : "a file size limit");
  EXPECT_EQ(result.status, 1) << result.err;
  const std::string told = "기록을 저장하지 못했어요: " + db.string() + ": ";
  const auto first = result.out.find(told);
  EXPECT_NE(first, std::string::npos) << result.out;
  EXPECT_EQ(result.out.find(told, first + 1), std::string::npos) << "told once";
  EXPECT_NE(result.out.find("── 요약 ──"), std::string::npos) << "the run goes on";
  EXPECT_NE(result.err.find("a write to the settings store failed: " + db.string()),
            std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("were not saved"), std::string::npos) << result.err;
  EXPECT_NE(result.out.find("after: 1 1"), std::string::npos)
      << "the store is sound and holds what was written before the disk filled\n"
      << result.out;
}

TEST_F(StoreFaults, ADamagedDatabaseIsKeptAsideAndTheRunSaysWhereOnce) {
  fs::create_directory(data);
  writeFile(db, "not a database");
  std::ostringstream out, err;
  EXPECT_EQ(runSimulate(args, out, err), 0) << err.str();
  const fs::path aside = data / "settings.db.damaged-1";
  EXPECT_NE(err.str().find("기록 파일이 손상되어 따로 두고 새로 시작해요: " + aside.string()),
            std::string::npos)
      << err.str();
  EXPECT_EQ(readFile(aside), "not a database");
  err.str("");
  EXPECT_EQ(runSimulate(args, out, err), 0) << err.str();
  EXPECT_EQ(err.str(), "") << "told once";
}

TEST_F(StoreFaults, ADamagedValueIsCopiedAsideBeforeTheRunWritesOverIt) {
  makeStore();
  sqliteRows(db,
             "UPDATE setting SET value = CAST('[{\"t\":8.0e8,\"k\":\"go' AS BLOB) "
             "WHERE key = 'postureLog'");
  std::ostringstream out, err;
  EXPECT_EQ(runSimulate(args, out, err), 0) << err.str();
  EXPECT_NE(out.str().find("읽을 수 없는 값을 따로 보관했어요: postureLog"), std::string::npos)
      << out.str();
  EXPECT_EQ(sqliteRows(db, "SELECT key, CAST(value AS TEXT) FROM kept_aside"),
            std::vector<std::string>{"postureLog|[{\"t\":8.0e8,\"k\":\"go"});
  EXPECT_EQ(sqliteValue(db,
                        "SELECT json_valid(CAST(value AS TEXT)) FROM setting "
                        "WHERE key = 'postureLog'"),
            "1");
}

// Every command that opens the folder, with the arguments that make it read
// or write the store there.
struct Command {
  const char* name;
  int (*run)(const std::vector<std::string>&, std::ostream&, std::ostream&);
  std::vector<std::string> words;
};

std::vector<Command> everyCommand(const std::string& hour) {
  return {{"simulate", runSimulate, {hour}}, {"stretch", runStretch, {"chinTuck"}},
          {"report", runReport, {"today"}},  {"settings", runSettings, {"set", "sound", "off"}},
          {"companion", runCompanion, {}},   {"focus", runFocus, {}}};
}

TEST_F(StoreFaults, EveryCommandRefusesAFolderThatAnotherRunHolds) {
  makeStore();
  auto holder = openStore(data);
  const std::string rows = "SELECT key, type, hex(value) FROM setting ORDER BY key";
  const auto before = sqliteRows(db, rows);
  for (const auto& command : everyCommand(hour)) {
    auto words = command.words;
    words.insert(words.end(), {"--data-dir", data.string()});
    std::ostringstream out, err;
    EXPECT_EQ(command.run(words, out, err), 2) << command.name << "\n" << err.str();
    const std::string prefix = std::string("sodamjari ") + command.name + ": ";
    EXPECT_EQ(err.str(), prefix + "이미 다른 소담자리가 이 기록을 쓰고 있어요: " + data.string() +
                             "\n" + prefix + "another sodamjari is using " + data.string() + "\n");
    EXPECT_EQ(out.str(), "") << command.name;
  }
  EXPECT_EQ(sqliteRows(db, rows), before);
}

TEST_F(StoreFaults, EveryCommandRefusesAnEmptyFolderName) {
  for (const auto& command : everyCommand(hour)) {
    auto words = command.words;
    words.insert(words.end(), {"--data-dir", ""});
    std::ostringstream out, err;
    EXPECT_EQ(command.run(words, out, err), 2) << command.name;
    EXPECT_NE(err.str().find("--data-dir needs a folder, not an empty name"), std::string::npos)
        << command.name << "\n"
        << err.str();
  }
}

// Raises a signal once the output holds a text, and notes whether every
// flush ended a line.
class SignallingOutput : public std::stringbuf {
 public:
  SignallingOutput(std::string trigger, int signal)
      : trigger_(std::move(trigger)), signal_(signal) {}
  bool wholeLines = true;

 protected:
  int sync() override {
    const std::string text = str();
    if (!text.empty() && text.back() != '\n') wholeLines = false;
    if (!raised_ && text.find(trigger_) != std::string::npos) {
      raised_ = true;
      std::raise(signal_);
    }
    return 0;
  }

 private:
  std::string trigger_;
  int signal_;
  bool raised_ = false;
};

TEST_F(StoreFaults, AStopSignalEndsTheRunAfterTheCurrentStepAndSaysSo) {
  const std::pair<int, std::string> signals[] = {
      {SIGINT, "SIGINT"}, {SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}};
  for (const auto& [signal, name] : signals) {
    fs::remove_all(data);
    SignallingOutput buffer("창: 안내를 닫았어요", signal);
    std::ostream out(&buffer);
    std::ostringstream err;
    EXPECT_EQ(runSimulate(args, out, err), 128 + signal) << name;
    const std::string text = buffer.str();
    const auto lastLine = text.substr(text.rfind('\n', text.size() - 2) + 1);
    EXPECT_NE(lastLine.find("시뮬레이션을 멈췄어요 (" + name + ")"), std::string::npos) << text;
    EXPECT_EQ(text.find("── 요약 ──"), std::string::npos) << name;
    EXPECT_TRUE(buffer.wholeLines) << name;
    struct sigaction now {};
    ::sigaction(signal, nullptr, &now);
    EXPECT_EQ(now.sa_handler, SIG_DFL) << name << ": the handler goes with the run";
    EXPECT_EQ(openStore(data)->boolean("guideDone").value, true) << "written before the stop";
  }
}

// A long log that slides by one record each time, as the posture log does.
Bytes logAt(std::int64_t n) {
  std::string text = "[";
  for (std::int64_t i = n; i < n + 4000; ++i)
    text.append(i == n ? "{\"t\":" : ",{\"t\":")
        .append(std::to_string(i * 60))
        .append(",\"k\":\"good\"}");
  text += "]";
  return Bytes(text.begin(), text.end());
}

// A writer that reports each count once both its writes returned.
[[noreturn]] void writeUntilKilled(const fs::path& dir, int report) {
  auto opened = SqliteDefaults::open(dir);
  if (!std::holds_alternative<std::unique_ptr<SqliteDefaults>>(opened)) ::_exit(3);
  auto& store = *std::get<std::unique_ptr<SqliteDefaults>>(opened);
  std::int64_t n = store.integer("n").valueOr(0);
  for (;;) {
    ++n;
    store.setData("log", logAt(n));
    store.setInteger("n", n);
    if (::write(report, &n, sizeof n) != sizeof n) ::_exit(4);
  }
}

TEST(StoreKills, KilledAtRandomMomentsTheStoreKeepsEveryCommittedWrite) {
  TempDir dir;
  std::mt19937 random(::testing::UnitTest::GetInstance()->random_seed());
  std::int64_t committed = 0;
  int waitedFor = 0;
  for (int kill = 0; kill < 32; ++kill) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t pid = ::fork();
    if (pid == 0) {
      ::close(pipe[0]);
      writeUntilKilled(dir.path, pipe[1]);
    }
    ::close(pipe[1]);
    // Most kills fall a while after a few writes went through, whatever the
    // machine's speed; every fourth falls early, into the opening.
    std::int64_t reported = committed;
    const int writes = kill % 4 == 0 ? 0 : std::uniform_int_distribution<int>(1, 3)(random);
    for (int i = 0; i<writes&& ::read(pipe[0], &reported, sizeof reported)> 0; ++i)
      ++waitedFor;
    ::usleep(std::uniform_int_distribution<useconds_t>(0, 5'000)(random));
    ::kill(pid, SIGKILL);
    int status = 0;
    ::waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "kill " << kill << " came after the writer gave up";
    for (std::int64_t n = 0; ::read(pipe[0], &n, sizeof n) == sizeof n;)
      reported = n;
    ::close(pipe[0]);

    auto store = openStore(dir.path);
    ASSERT_TRUE(store);
    EXPECT_FALSE(store->keptAside()) << kill;
    const std::int64_t n = store->integer("n").valueOr(0);
    EXPECT_TRUE(n == reported || n == reported + 1) << kill << ": " << n << " after " << reported;
    const auto log = store->data("log").value;
    EXPECT_TRUE(n == 0 || log == logAt(n) || log == logAt(n + 1)) << kill;
    committed = n;
    store.reset();
    EXPECT_EQ(sqliteValue(dir / SqliteDefaults::fileName, "PRAGMA integrity_check"), "ok");
    EXPECT_EQ(filesIn(dir.path), std::vector<std::string>{"settings.db"}) << kill;
  }
  EXPECT_GE(committed, waitedFor) << "no write the writer reported was lost";
}

}  // namespace
}  // namespace sodam
