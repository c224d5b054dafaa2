#pragma once

#include <optional>
#include <string>
#include <vector>

#include "alerts/theme.h"
#include "app/page_records.h"
#include "app/panel_model.h"
#include "app/report_page.h"

namespace sodam {

// What the home page shows of today: the monitor's state and next check, and
// one tile for each card, which opens into the card's detail. A plain value
// for the panel's view and the tests.
struct HomePage {
  // One card of the home page as its tile shows it.
  struct Tile {
    HomeCard card;
    std::string title;
    std::string symbol;  // an SF Symbol name
    Theme tint;
    std::string value;  // the tile's big figure or word
    std::string detail;
  };
  // What the monitor does now, read off the live components.
  struct Now {
    std::string status;  // the status item's line
    std::optional<Date> nextCheck;
    int streakMinutes = 0;  // the current sitting streak
  };

  std::string heading;  // "6월 3일 화요일"
  std::string status;
  // "다음 확인 오후 3:04"; nothing while no check is scheduled.
  std::optional<std::string> nextCheck;
  // "지금 42분째 앉아 있어요"; nothing while the user is away.
  std::optional<std::string> streak;
  std::vector<Tile> tiles;  // in the order of HomeCard
  // Today's sitting spans as "오전 8:55 – 오전 10:40 · 1시간 45분".
  std::vector<std::string> spans;
  // Today's report, for the cards' details.
  ReportPage report;

  static HomePage make(const PageRecords& records, const Now& now);

  const Tile& tile(HomeCard card) const;
};

}  // namespace sodam
