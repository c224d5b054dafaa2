#include <gtest/gtest.h>

#include <string>

#include "cloud/loopback_server.h"

namespace sodam {
namespace {

using Next = LoopbackRequest::Next;

TEST(LoopbackRequest, waitsForTheBlankLineThenForTheAnnouncedBody) {
  LoopbackRequest request;
  EXPECT_EQ(request.feed("POST /done HTTP/1.1\r\nHost: x\r\n", false), Next::read);
  EXPECT_EQ(request.feed("content-LENGTH:  7 \r\n\r\nabc", false), Next::read);
  EXPECT_EQ(request.feed("defg", false), Next::answer);
  EXPECT_EQ(request.header(), "POST /done HTTP/1.1\r\nHost: x\r\ncontent-LENGTH:  7 ");
  EXPECT_EQ(request.body(), "abcdefg");
}

TEST(LoopbackRequest, aShortBodyIsAnsweredWhenTheConnectionEnds) {
  LoopbackRequest request;
  EXPECT_EQ(request.feed("POST /done HTTP/1.1\r\nContent-Length: 50\r\n\r\nstate=1", false),
            Next::read);
  EXPECT_EQ(request.feed("", true), Next::answer);
  EXPECT_EQ(request.body(), "state=1");
}

TEST(LoopbackRequest, aHeaderBeyondTheLimitIsDroppedUnanswered) {
  LoopbackRequest request;
  const std::string line = "X-Filler: " + std::string(1000, 'a') + "\r\n";
  Next next = request.feed("GET /done HTTP/1.1\r\n", false);
  int chunks = 0;
  for (; chunks < 20 && next == Next::read; ++chunks)
    next = request.feed(line, false);
  EXPECT_EQ(next, Next::drop);
  EXPECT_EQ(chunks, 17);  // the first chunk past 16,384 bytes
  LoopbackRequest ended;
  EXPECT_EQ(ended.feed("GET /done HTTP/1.1\r\n", true), Next::drop);
}

TEST(LoopbackRequest, aHugeBodyIsCutToTheLimit) {
  LoopbackRequest request;
  const std::string body(LoopbackRequest::limitBytes + 500, 'x');
  EXPECT_EQ(request.feed("POST /done HTTP/1.1\r\nContent-Length: 999999\r\n\r\n" + body, false),
            Next::answer);
  EXPECT_EQ(request.body().size(), LoopbackRequest::limitBytes);
}

TEST(LoopbackValues, formBodiesTurnPlusIntoBlankBeforeDecoding) {
  const auto values =
      loopbackValues("POST /done HTTP/1.1", "state=s&name=a+b&token=a%2Bb&flag&name2=%ED%95%9C");
  ASSERT_TRUE(values);
  EXPECT_EQ(values->at("name"), "a b");
  EXPECT_EQ(values->at("token"), "a+b");
  EXPECT_EQ(values->at("flag"), "");
  EXPECT_EQ(values->at("name2"), "한");
}

TEST(LoopbackValues, aGetTakesItsQueryAndLaterNamesWin) {
  const auto values = loopbackValues("GET /done?state=1&state=2&x=%20 HTTP/1.1\r\nHost: y", "");
  ASSERT_TRUE(values);
  EXPECT_EQ(*values, (LoopbackValues{{"state", "2"}, {"x", " "}}));
  EXPECT_EQ(loopbackValues("PUT /done?state=1 HTTP/1.1", "state=1"), LoopbackValues{});
}

TEST(LoopbackValues, anythingButTheDonePathIsABadRequest) {
  for (const char* line :
       {"GET /done/ HTTP/1.1", "GET /DONE HTTP/1.1", "GET /", "GET", "GET //evil/done HTTP/1.1",
        "GET http://127.0.0.1/done HTTP/1.1", "GET /do\x01ne HTTP/1.1", ""})
    EXPECT_FALSE(loopbackValues(line, "")) << line;
  EXPECT_TRUE(loopbackValues("GET  /done   HTTP/1.1", ""));
}

TEST(LoopbackAnswer, isAlwaysAnUncachedPageWithItsExactLength) {
  const std::string start =
      "<!doctype html><meta charset=utf-8><title>소담자리</title><body "
      "style=\"font-family:-apple-system,sans-serif;background:#0e1116;color:#fff;display:flex;"
      "align-items:center;justify-content:center;height:100vh;margin:0\">";
  const std::string pages[] = {
      start +
          "<div style=\"text-align:center;color:#9aa3ad\">요청을 확인하지 못했어요.<br>"
          "소담자리에서 로그인을 다시 눌러 주세요.</div>",
      start +
          "<div style=\"text-align:center\"><div style=\"font-size:22px;font-weight:700\">"
          "로그인했어요</div><div style=\"color:#9aa3ad;margin-top:8px\">이 탭을 닫고 "
          "소담자리로 돌아가세요</div></div>"};
  for (bool accepted : {false, true}) {
    const std::string& body = pages[accepted];
    EXPECT_EQ(loopbackAnswer(accepted),
              "HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " +
                  std::to_string(body.size()) +
                  "\r\nConnection: close\r\nCache-Control: no-store\r\nReferrer-Policy: "
                  "no-referrer\r\n\r\n" +
                  body);
  }
}

}  // namespace
}  // namespace sodam
