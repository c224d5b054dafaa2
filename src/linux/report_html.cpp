#include "linux/report_html.h"

#include <algorithm>

#include "alerts/theme.h"
#include "linux/report_charts.h"
#include "support/korean_format.h"
#include "support/text.h"

namespace sodam {

namespace {

// The page's colours: the product's tints, and greys close to the system's
// own for light and dark mode.
std::string palette() {
  std::string css = ":root{";
  for (Theme tint : {Theme::green, Theme::red, Theme::orange, Theme::blue, Theme::coral}) {
    const ThemeColor c = themeColor(tint);
    css +=
        format("--%s:rgb(%d %d %d);", std::string(themeName(tint)).c_str(), c.red, c.green, c.blue);
  }
  return css +
         "--page:#f5f5f7;--card:#ffffff;--text:#1d1d1f;--muted:#6e6e73;--line:#e5e5ea;"
         "--empty:#d1d1d6}"
         "@media (prefers-color-scheme:dark){:root{--page:#1c1c1e;--card:#2c2c2e;"
         "--text:#f5f5f7;--muted:#98989d;--line:#3a3a3c;--empty:#48484a}}";
}

constexpr const char* layout =
    "*{box-sizing:border-box}"
    "body{margin:0;background:var(--page);color:var(--text);"
    "font:15px/1.5 -apple-system,BlinkMacSystemFont,'Apple SD Gothic Neo','Noto Sans KR',"
    "'Noto Sans CJK KR',sans-serif;-webkit-font-smoothing:antialiased}"
    "main{max-width:1160px;margin:0 auto;padding:40px 32px 48px}"
    "header{display:flex;align-items:baseline;gap:14px;margin-bottom:24px}"
    "h1{font-size:30px;margin:0;letter-spacing:-0.02em}"
    "header p{margin:0;color:var(--muted);font-size:17px}"
    ".tiles{display:grid;grid-template-columns:repeat(4,1fr);gap:16px;margin-bottom:16px}"
    ".tile,.card{background:var(--card);border-radius:16px;padding:18px 22px;"
    "box-shadow:0 1px 2px rgb(0 0 0/6%)}"
    ".tile p{margin:0}.tile .name{color:var(--muted);font-size:13px}"
    ".tile .figure{font-size:28px;font-weight:700;letter-spacing:-0.02em;margin:2px 0}"
    ".tile .more{color:var(--muted);font-size:13px}"
    ".green{color:var(--green)}.red{color:var(--red)}.blue{color:var(--blue)}"
    ".coral{color:var(--coral)}"
    ".cards{display:grid;grid-template-columns:repeat(2,1fr);gap:16px;align-items:start}"
    ".stack{display:flex;flex-direction:column;gap:16px}"
    ".card h2{font-size:16px;margin:0 0 12px}.card .note{color:var(--muted);font-size:13px;"
    "margin:-8px 0 10px}"
    ".chart{width:100%;height:auto;display:block;overflow:visible}"
    ".chart text{font-size:12px;fill:var(--muted)}.chart .value{fill:var(--text);"
    "font-weight:600;font-size:11px}.chart .today{fill:var(--text);font-weight:700}"
    ".bar.green{fill:var(--green)}.bar.orange{fill:var(--orange)}.bar.red{fill:var(--red)}"
    ".bar.blue{fill:var(--blue)}.bar.coral{fill:var(--coral)}.bar.empty{fill:var(--empty)}"
    ".grid{stroke:var(--line);stroke-dasharray:3 4}.axis{stroke:var(--line)}"
    "ul{margin:0;padding-left:20px}li{margin:4px 0}"
    "footer{margin-top:24px;color:var(--muted);font-size:12px;text-align:center}"
    "@media (max-width:760px){.tiles{grid-template-columns:repeat(2,1fr)}"
    ".cards{grid-template-columns:1fr}}";

std::string tile(const std::string& name, const std::string& figure, const char* tint,
                 const std::string& more) {
  return format(R"(<div class="tile"><p class="name">%s</p><p class="figure %s">%s</p>)"
                R"(<p class="more">%s</p></div>)",
                htmlEscaped(name).c_str(), tint, htmlEscaped(figure).c_str(),
                htmlEscaped(more).c_str());
}

std::string tiles(const ReportPage& page) {
  const ReportDay& today = page.today;
  const auto recorded = std::count_if(page.week.begin(), page.week.end(),
                                      [](const ReportDay& day) { return day.checks > 0; });
  return R"(<section class="tiles">)" +
         tile("오늘 바른 자세", percentText(today.goodShare()), "green",
              format("확인 %d번", today.checks)) +
         tile("오늘 알림", format("%d번", today.alerts), today.alerts > 0 ? "red" : "",
              format("바로잡음 %d번", page.corrections)) +
         tile("오늘 앉은 시간", hm(today.seatedMinutes), "blue",
              format("쉬는 시간 %d번 · 가장 길게 %s", today.breaks,
                     hm(today.longestMinutes).c_str())) +
         tile("최근 7일 바른 자세", percentText(page.weekGoodShare()), "coral",
              format("확인 %d번 · 기록한 날 %d일", page.weekChecks(), static_cast<int>(recorded))) +
         "</section>";
}

std::string card(const std::string& title, const std::string& note, const std::string& body) {
  std::string html = "<section class=\"card\"><h2>" + htmlEscaped(title) + "</h2>";
  if (!note.empty()) html += "<p class=\"note\">" + htmlEscaped(note) + "</p>";
  return html + body + "</section>";
}

std::string insightList(const ReportPage& page) {
  if (page.insights.empty()) return "<p>기록이 더 쌓이면 알려 드릴게요</p>";
  std::string list = "<ul>";
  for (const auto& insight : page.insights)
    list += "<li>" + htmlEscaped(insight) + "</li>";
  return list + "</ul>";
}

}  // namespace

std::string htmlEscaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string reportHtml(const ReportPage& page, const Calendar& calendar) {
  const std::string day = longDayLabel(calendar, page.today.date);
  const std::string week = shortDayLabel(calendar, page.week.front().date) + " – " +
                           shortDayLabel(calendar, page.week.back().date);
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"ko\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"color-scheme\" content=\"light dark\">\n<title>소담자리 리포트 · " +
      htmlEscaped(day) + "</title>\n<style>" + palette() + layout + "</style>\n</head>\n<body>\n";
  html += "<main>\n<header><h1>소담자리 리포트</h1><p>" + htmlEscaped(day) + "</p></header>\n";
  html += tiles(page) + "\n<div class=\"cards\">\n";
  html += card("오늘 시간대별 바른 자세", "", hoursChart(page)) + "\n";
  html += card("최근 7일 바른 자세", week, weekShareChart(page, calendar)) + "\n";
  html += card("최근 7일 앉은 시간", week, weekSeatedChart(page, calendar)) + "\n";
  // The short cards share the last column.
  html += "<div class=\"stack\">\n";
  html +=
      card("최근 7일 보인 자세", "알림 때 보인 자세, 한 번에 여럿일 수 있어요", issuesChart(page)) +
      "\n";
  html += card("한마디", "", insightList(page)) + "\n</div>\n</div>\n";
  html +=
      "<footer>소담자리 · 이 기기에 남은 기록으로 만들었어요 · 사진은 저장하지도 보내지도 "
      "않아요</footer>\n</main>\n</body>\n</html>\n";
  return html;
}

}  // namespace sodam
