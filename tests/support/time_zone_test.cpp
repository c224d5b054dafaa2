#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "support/calendar.h"
#include "support/time_zone.h"
#include "support/utc_dates.h"

namespace sodam {
namespace {

using utc_dates::hourSeconds;
using utc_dates::utc;

// Lays out a zone file as the zone compiler does. The 32-bit block holds one
// type of +7 h and no transitions, so a reader that wrongly uses it shows.
struct TzifWriter {
  struct Transition {
    std::int64_t at;
    std::uint8_t type;
  };
  char version = '2';
  // 1800-01-01 only fits in 64 bits.
  std::vector<Transition> transitions{{-5364662400, 1}, {0, 2}};
  std::vector<int> offsets{30000, 9 * hourSeconds, 10 * hourSeconds};
  std::string footer = "<+10>-10";

  std::string bytes() const {
    std::string out;
    if (version == '\0') {
      block(out, transitions, offsets, 4);
      return out;
    }
    block(out, {}, {7 * hourSeconds}, 4);
    block(out, transitions, offsets, 8);
    return out + "\n" + footer + "\n";
  }

 private:
  static void bigEndian(std::string& out, std::uint64_t value, int width) {
    for (int shift = (width - 1) * 8; shift >= 0; shift -= 8)
      out.push_back(static_cast<char>((value >> shift) & 0xFF));
  }
  void block(std::string& out, const std::vector<Transition>& times, const std::vector<int>& types,
             int timeSize) const {
    out += "TZif";
    out.push_back(version);
    out.append(15, '\0');
    for (const std::uint64_t count :
         {types.size(), types.size(), std::size_t{0}, times.size(), types.size(), std::size_t{4}})
      bigEndian(out, count, 4);
    for (const auto& t : times)
      bigEndian(out, static_cast<std::uint64_t>(t.at), timeSize);
    for (const auto& t : times)
      out.push_back(static_cast<char>(t.type));
    for (const int offset : types) {
      bigEndian(out, static_cast<std::uint32_t>(offset), 4);
      out.append(2, '\0');  // daylight flag, designation index
    }
    out += std::string("LMT\0", 4);
    out.append(types.size() * 2, '\0');  // standard and UT indicators
  }
};

TEST(TimeZone, OffsetsCountEastAndPosixOffsetsWest) {
  EXPECT_EQ(TimeZone::utc().offsetAt(utc(2025, 1, 1)), 0);
  EXPECT_EQ(TimeZone::fixed(9 * hourSeconds).name(), "UTC+09:00");
  EXPECT_EQ(TimeZone::fixed(-(3 * hourSeconds + 1800)).name(), "UTC-03:30");
  struct Case {
    const char* rule;
    int january, july;
  };
  const Case cases[] = {
      {"KST-9", 9 * hourSeconds, 9 * hourSeconds},
      {"<+09>-9", 9 * hourSeconds, 9 * hourSeconds},
      {"EST+5", -5 * hourSeconds, -5 * hourSeconds},
      {"NPT-5:45", 20700, 20700},
      {"XXX-1:02:03", 3723, 3723},
      {"<-0330>3:30", -12600, -12600},
      // Southern summer, and daylight time of half an hour.
      {"LHST-10:30LHDT-11,M10.1.0,M4.1.0", 11 * hourSeconds, 10 * hourSeconds + 1800},
  };
  for (const auto& c : cases) {
    const auto zone = TimeZone::fromPosixRule(c.rule);
    ASSERT_TRUE(zone) << c.rule;
    EXPECT_EQ(zone->offsetAt(utc(2025, 1, 15)), c.january) << c.rule;
    EXPECT_EQ(zone->offsetAt(utc(2025, 7, 15)), c.july) << c.rule;
  }
}

TEST(TimeZone, PosixRulesRejectMalformedText) {
  const char* rules[] = {
      "",
      "EST",
      "ES5",
      "EST5EDT,M3.2.0",
      "EST5EDT,M13.2.0,M11.1.0",
      "EST25",
      "EST5:60",
      "EST5 ",
      "EST5EDT,M3.6.0,M11.1.0",
      "EST5EDT,M3.2.7,M11.1.0",
      "<+09-9",
      "<>-9",
      "EST5EDT,J0,J100",
      "EST5EDT,366,10",
      "EST5EDT,M3.2.0/168,M11.1.0",
  };
  for (const char* rule : rules)
    EXPECT_FALSE(TimeZone::fromPosixRule(rule)) << '"' << rule << '"';
}

TEST(TimeZone, PosixChangeDaysInAllThreeForms) {
  struct Case {
    const char* rule;
    Date lastStandardSecond;
  };
  const Case cases[] = {
      // J60 never counts February 29; zero-based 59 does.
      {"AAA0BBB,J60,J300", utc(2024, 3, 1, 1, 59, 59)},
      {"AAA0BBB,59,300", utc(2024, 2, 29, 1, 59, 59)},
      {"AAA0BBB,59,300", utc(2023, 3, 1, 1, 59, 59)},
      // The last Sunday of March 2023 (the 26th) at -1:00 is Saturday 23:00.
      {"<-02>2<-01>,M3.5.0/-1,M10.5.0/0", utc(2023, 3, 26, 0, 59, 59)},
      {"AAA0BBB,M3.2.0/26:30,M11.1.0", utc(2025, 3, 10, 2, 29, 59)},
      // Daylight time without written changes follows the United States rules.
      {"EST5EDT", utc(2025, 3, 9, 6, 59, 59)},
  };
  for (const auto& c : cases) {
    const auto zone = TimeZone::fromPosixRule(c.rule);
    ASSERT_TRUE(zone) << c.rule;
    const int standard = zone->offsetAt(utc(2020, 1, 15));
    EXPECT_EQ(zone->offsetAt(c.lastStandardSecond), standard) << c.rule;
    EXPECT_EQ(zone->offsetAt(c.lastStandardSecond + 1), standard + hourSeconds) << c.rule;
  }
  const auto us = TimeZone::fromPosixRule("EST5EDT");
  EXPECT_EQ(us->offsetAt(utc(2025, 11, 2, 5, 59, 59)), -4 * hourSeconds);
  EXPECT_EQ(us->offsetAt(utc(2025, 11, 2, 6)), -5 * hourSeconds);
  // A year that ends daylight time as the next begins it stays in daylight time.
  const auto always = TimeZone::fromPosixRule("EST5EDT,0/0,J365/25");
  for (const Date date : {utc(2024, 1, 1), utc(2025, 1, 1, 4, 59), utc(2025, 7, 1)})
    EXPECT_EQ(always->offsetAt(date), -4 * hourSeconds);
}

TEST(TimeZone, ZoneFileUsesTheWideBlockThenTheFooter) {
  TzifWriter writer;
  for (const char version : {'2', '3'}) {
    writer.version = version;
    const auto zone = TimeZone::fromTzif(writer.bytes(), "Test/Steps");
    ASSERT_TRUE(zone) << version;
    EXPECT_EQ(zone->name(), "Test/Steps");
    EXPECT_EQ(zone->offsetAt(utc(1799, 12, 31, 23, 59, 59)), 30000);
    EXPECT_EQ(zone->offsetAt(utc(1800, 1, 1)), 9 * hourSeconds);
    EXPECT_EQ(zone->offsetAt(utc(1970, 1, 1)), 10 * hourSeconds);
  }
  // Without a footer the last type holds for ever.
  writer.footer = "";
  writer.offsets.back() = 11 * hourSeconds;
  EXPECT_EQ(TimeZone::fromTzif(writer.bytes())->offsetAt(utc(2100, 1, 1)), 11 * hourSeconds);

  TzifWriter versionOne;
  versionOne.version = '\0';
  versionOne.transitions = {{-1000, 1}, {1000, 0}};
  versionOne.offsets = {hourSeconds, 2 * hourSeconds};
  const auto narrow = TimeZone::fromTzif(versionOne.bytes());
  ASSERT_TRUE(narrow);
  EXPECT_EQ(narrow->offsetAt(Date::fromUnix(-1001)), hourSeconds);
  EXPECT_EQ(narrow->offsetAt(Date::fromUnix(999.5)), 2 * hourSeconds);
  EXPECT_EQ(narrow->offsetAt(Date::fromUnix(1000)), hourSeconds);
}

TEST(TimeZone, DamagedZoneFilesGiveNothing) {
  const auto valid = TzifWriter().bytes();
  for (std::size_t size = 0; size < valid.size(); ++size)
    EXPECT_FALSE(TimeZone::fromTzif(valid.substr(0, size))) << "cut at " << size;

  auto changed = [](auto change) {
    TzifWriter writer;
    change(writer);
    return writer.bytes();
  };
  std::string hugeCounts = valid;
  for (std::size_t i = 20; i < 44; ++i)
    hugeCounts[i] = '\xFF';
  const std::string damaged[] = {
      "TZif",
      hugeCounts,
      "XZif" + valid.substr(4),
      changed([](TzifWriter& w) { w.footer = "not a rule"; }),
      changed([](TzifWriter& w) { w.transitions[1].type = 3; }),
      changed([](TzifWriter& w) { w.transitions[1].at = -6'000'000'000; }),  // out of order
      changed([](TzifWriter& w) {
        w.offsets.clear();
        w.transitions.clear();
      }),
      changed([](TzifWriter& w) { w.offsets[0] = 40 * hourSeconds; }),
  };
  for (const auto& bytes : damaged)
    EXPECT_FALSE(TimeZone::fromTzif(bytes));

  std::mt19937 random(7);
  for (int trial = 0; trial < 200; ++trial) {
    std::string noise = valid;
    for (int flips = 0; flips < 4; ++flips)
      noise[random() % noise.size()] = static_cast<char>(random() & 0xFF);
    if (const auto zone = TimeZone::fromTzif(noise)) (void)zone->offsetAt(utc(2025, 1, 1));
  }
}

TEST(TimeZone, LoadsSystemZoneFilesWithTheirHistory) {
  EXPECT_FALSE(TimeZone::load("/nonexistent/zoneinfo/Asia/Seoul"));
  EXPECT_FALSE(TimeZone::load("/"));
  const std::string seoulPath = "/usr/share/zoneinfo/Asia/Seoul";
  const std::string newYorkPath = "/usr/share/zoneinfo/America/New_York";
  if (!std::ifstream(seoulPath) || !std::ifstream(newYorkPath)) GTEST_SKIP() << "no zoneinfo";
  const auto seoul = TimeZone::load(seoulPath);
  ASSERT_TRUE(seoul);
  EXPECT_EQ(seoul->name(), "Asia/Seoul");
  EXPECT_EQ(seoul->offsetAt(utc(2025, 11, 22)), 9 * hourSeconds);
  EXPECT_EQ(seoul->offsetAt(utc(1988, 7, 1)), 10 * hourSeconds);  // summer time of 1988
  // Until 2006 daylight time began on the first Sunday of April.
  const auto newYork = TimeZone::load(newYorkPath, "New York");
  ASSERT_TRUE(newYork);
  EXPECT_EQ(newYork->name(), "New York");
  EXPECT_EQ(newYork->offsetAt(utc(2006, 4, 1, 17)), -5 * hourSeconds);
  EXPECT_EQ(newYork->offsetAt(utc(2006, 4, 3, 16)), -4 * hourSeconds);
}

}  // namespace
}  // namespace sodam
