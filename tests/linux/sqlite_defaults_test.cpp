#include "linux/sqlite_defaults.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <cmath>
#include <csignal>
#include <ostream>
#include <random>

#include "linux/child_process.h"
#include "linux/store_testing.h"
#include "linux/temp_dir.h"

namespace sodam {
namespace {

namespace fs = std::filesystem;
using namespace sodam::testing;

// A JSON list of `count` records numbered from `first`, as a log is stored.
Bytes records(int first, int count) {
  std::string text = "[";
  for (int i = first; i < first + count; ++i) {
    text += (i == first ? "" : ",");
    text += "{\"t\":" + std::to_string(800'000'000 + i * 60) +
            ",\"k\":\"good\",\"m\":{\"tilt\":" + std::to_string(i % 7) + ".25,\"close\":-0." +
            std::to_string(i % 100) + "}}";
  }
  text += "]";
  return Bytes(text.begin(), text.end());
}

struct SqliteDefaultsTest : ::testing::Test {
  TempDir dir;
  fs::path db() const { return dir / SqliteDefaults::fileName; }
  int pieces(const std::string& key) const {
    return std::stoi(sqliteValue(db(), "SELECT count(*) FROM piece WHERE key = '" + key + "'"));
  }
};

TEST_F(SqliteDefaultsTest, EveryKindReadsBackAfterARestart) {
  Bytes everyByte;
  for (int b = 0; b < 256; ++b)
    everyByte.push_back(static_cast<std::uint8_t>(b));
  const std::vector<std::pair<std::string, DefaultsValue>> values{
      {"flag", true},
      {"count", std::int64_t{-9'007'199'254'740'993}},
      {"ratio", 2.0},
      {"name", std::string("소담자리 \"quoted\"\n")},
      {"names", std::vector<std::string>{"a", "", "ㄱ"}},
      {"when", Date{757'382'400.125}},
      {"bytes", everyByte},
      {"empty", Bytes{}},
      {"month", records(0, 8000)},
      {"days", IntDictionary{{"2024-06-12", 3}, {"x", -1}}},
  };
  {
    auto store = openStore(dir.path);
    for (const auto& [key, value] : values)
      store->set(key, value);
    store->setDouble("ratio", std::nan(""));
    store->setDouble("ratio", 2.0);
    store->setDouble("gone", std::nan(""));
  }
  EXPECT_GT(pieces("month"), 10) << "a large value lies in pieces";
  EXPECT_EQ(filesIn(dir.path), std::vector<std::string>{"settings.db"});
  auto store = openStore(dir.path);
  for (const auto& [key, value] : values)
    EXPECT_EQ(store->object(key), value) << key;
  EXPECT_FALSE(store->object("gone")) << "a number no row holds clears its key";
  EXPECT_TRUE(store->date("ratio").wrongType);
  EXPECT_EQ(fs::status(db()).permissions() & fs::perms::all,
            fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(SqliteDefaultsTest, ALogThatGrowsAtItsEndAndShrinksAtItsStartRewritesOnlyItsEdges) {
  auto store = openStore(dir.path);
  int first = 0;
  store->setData("postureLog", records(first, 6000));
  const int count = pieces("postureLog");
  for (int round = 0; round < 20; ++round) {
    const auto before = sqliteRows(db(), "SELECT digest FROM piece");
    first += 3;
    const Bytes now = records(first, 6000);
    store->setData("postureLog", now);
    ASSERT_EQ(store->data("postureLog").value, now) << round;
    const auto after = sqliteRows(db(), "SELECT digest FROM piece");
    const auto added = std::count_if(after.begin(), after.end(), [&](const std::string& d) {
      return std::find(before.begin(), before.end(), d) == before.end();
    });
    EXPECT_LE(added, 4) << "round " << round << " of " << count << " pieces";
    EXPECT_NEAR(static_cast<double>(after.size()), count, count * 0.1) << "old pieces go";
  }
}

TEST_F(SqliteDefaultsTest, RepeatedAndReplacedPiecesReadBackExactly) {
  auto store = openStore(dir.path);
  std::mt19937 random(3);
  const Bytes same(300'000, '7');
  Bytes mixed = same;
  for (std::size_t i = 0; i < mixed.size(); i += 1 + random() % 5000)
    mixed[i] = static_cast<std::uint8_t>(random());
  const std::vector<Bytes> sequence{same, mixed, records(0, 3000), Bytes{'[', ']'}, mixed, same};
  for (std::size_t i = 0; i < sequence.size(); ++i) {
    store->setData("log", sequence[i]);
    EXPECT_EQ(store->data("log").value, sequence[i]) << i;
  }
  store->setData("log", Bytes{'[', ']'});
  EXPECT_EQ(pieces("log"), 0) << "a value kept whole leaves no pieces behind";
  store->setData("log", mixed);
  store->remove("log");
  EXPECT_EQ(pieces("log"), 0);
  EXPECT_FALSE(store->object("log"));
}

TEST_F(SqliteDefaultsTest, ADamagedDatabaseIsMovedAsideOnceAndANewOneBegun) {
  struct Damage {
    const char* name;
    std::function<void(const fs::path&)> apply;
  };
  const Damage damages[] = {
      {"not a database", [](const fs::path& file) { writeFile(file, "{\"enabled\": tru"); }},
      {"a broken page",
       [](const fs::path& file) {
         std::string bytes = readFile(file);
         ASSERT_GT(bytes.size(), 8192u);
         bytes.replace(4096, 8, "\x0d\xff\xff\xff\xff\xff\xff\xff", 8);
         writeFile(file, bytes);
       }},
  };
  int number = 0;
  for (const auto& damage : damages) {
    openStore(dir.path)->setBool("enabled", false);
    damage.apply(db());
    const std::string damaged = readFile(db());
    ++number;
    {
      auto store = openStore(dir.path);
      ASSERT_TRUE(store) << damage.name;
      const fs::path aside = dir / ("settings.db.damaged-" + std::to_string(number));
      EXPECT_EQ(store->keptAside(), aside) << damage.name;
      EXPECT_EQ(readFile(aside), damaged) << damage.name;
      EXPECT_TRUE(store->boolean("enabled").absent()) << damage.name;
      store->setBool("guideDone", true);
    }
    auto again = openStore(dir.path);
    EXPECT_FALSE(again->keptAside()) << "told once: " << damage.name;
    EXPECT_EQ(again->boolean("guideDone").value, true) << damage.name;
  }
}

TEST_F(SqliteDefaultsTest, AValueThatDoesNotReadIsCopiedAsideBeforeItIsOverwritten) {
  openStore(dir.path)->setBool("created", true);
  sqliteRows(db(), R"(INSERT INTO setting VALUES
      ('postureLog', 'data', CAST('[{"t":7' AS BLOB)),
      ('enabled', 'bool', 'yes'),
      ('later', 'a type of a later version', 1),
      ('pieced', 'data pieces', X'0102030405060708'),
      ('fine', 'data', CAST('[]' AS BLOB)))");
  auto store = openStore(dir.path);
  std::vector<std::string> told;
  store->onValueKeptAside = [&](const std::string& key) { told.push_back(key); };
  EXPECT_TRUE(store->data("postureLog").value) << "unreadable JSON is still data";
  EXPECT_TRUE(store->boolean("enabled").absent());
  EXPECT_FALSE(store->object("pieced")) << "a piece is missing";
  for (const char* key : {"postureLog", "enabled", "later", "pieced", "fine"})
    store->setData(key, Bytes{'[', '1', ']'});
  store->setData("postureLog", Bytes{'[', '2', ']'});
  EXPECT_EQ(told, (std::vector<std::string>{"postureLog", "enabled", "later", "pieced"}));
  EXPECT_EQ(sqliteRows(db(), "SELECT key, type, CAST(value AS TEXT) FROM kept_aside ORDER BY key"),
            (std::vector<std::string>{"enabled|bool|yes", "later|a type of a later version|1",
                                      "pieced|data|", "postureLog|data|[{\"t\":7"}));
}

TEST_F(SqliteDefaultsTest, AFailedWriteIsToldOnceLivesInMemoryAndGoesOutWithTheNextWrite) {
  // A file size limit makes the kernel refuse the write-ahead log's growth,
  // as a full disk would.
  const auto result = runInChild([&](std::ostream& out, std::ostream&) {
    std::signal(SIGXFSZ, SIG_IGN);
    auto store = openStore(dir.path);
    int told = 0;
    store->onFailure = [&](const StoreFailure& failure) {
      ++told;
      out << "told: " << failure.describe() << "\n";
    };
    store->setInteger("small", 1);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit tight{64 * 1024, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
    store->setData("log", records(0, 4000));
    store->setInteger("small", 2);
    out << "in memory: " << (store->data("log").value == records(0, 4000)) << " "
        << *store->integer("small").value << "\n";
    out << "unsaved: " << store->unsavedChanges() << "\n";
    setrlimit(RLIMIT_FSIZE, &limit);
    store->setInteger("other", 3);
    out << "unsaved: " << store->unsavedChanges() << "\n";
    out << "first failure kept: " << store->firstFailure().has_value() << "\n";
    return told;
  });
  EXPECT_EQ(result.status, 1) << "told once for two failed writes\n" << result.out;
  EXPECT_NE(result.out.find("told: " + db().string() + ": "), std::string::npos) << result.out;
  // The small write went through beside the large one that could not.
  EXPECT_NE(result.out.find("in memory: 1 2\nunsaved: 1\nunsaved: 0\nfirst failure kept: 1"),
            std::string::npos)
      << result.out;
  auto store = openStore(dir.path);
  EXPECT_EQ(store->data("log").value, records(0, 4000));
  EXPECT_EQ(store->integer("small").value, 2);
  EXPECT_EQ(store->integer("other").value, 3);
}

TEST(DataDirectoryTest, FollowsTheConfigHomeRules) {
  EXPECT_EQ(DataDirectory::standard("/x/cfg", "/home/u"), fs::path("/x/cfg/sodamjari"));
  EXPECT_EQ(DataDirectory::standard("relative", "/home/u"), fs::path("/home/u/.config/sodamjari"));
  EXPECT_EQ(DataDirectory::standard("", "/home/u"), fs::path("/home/u/.config/sodamjari"));
  EXPECT_EQ(DataDirectory::standard(nullptr, nullptr), std::nullopt);
}

TEST(DataDirectoryTest, OneClaimAtATimeAndNoneOnAFile) {
  TempDir dir;
  const fs::path folder = dir / "a" / "b";
  {
    auto first = DataDirectory::claim(folder);
    ASSERT_TRUE(std::holds_alternative<DataDirectory>(first));
    auto second = DataDirectory::claim(folder);
    ASSERT_TRUE(std::holds_alternative<StoreFailure>(second));
    EXPECT_EQ(std::get<StoreFailure>(second).kind, StoreFailure::Kind::busy);
    EXPECT_EQ(std::get<StoreFailure>(second).path, folder);
  }
  EXPECT_TRUE(std::holds_alternative<DataDirectory>(DataDirectory::claim(folder)))
      << "the lock goes with its holder";
  writeFile(dir / "file", "x");
  auto onFile = DataDirectory::claim(dir / "file");
  ASSERT_TRUE(std::holds_alternative<StoreFailure>(onFile));
  EXPECT_EQ(std::get<StoreFailure>(onFile).kind, StoreFailure::Kind::unusable);
  EXPECT_FALSE(std::get<StoreFailure>(onFile).cause.empty());
}

}  // namespace
}  // namespace sodam
