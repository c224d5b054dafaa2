#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/ranking_page.h"
#include "cloud/study_group.h"
#include "companion/mate_look.h"
#include "companion/mate_state.h"
#include "support/calendar.h"

namespace sodam {

// The together page: the sign-in card while signed out, else the user's
// groups as study rooms with their members at their desks and their
// schedules. A plain value for the panel's view, `sodamjari group` and the
// tests.
struct GroupsPage {
  // Where the sign-in stands, as the page needs it.
  struct SignIn {
    bool signedIn = false;
    std::optional<std::string> waitingFor;  // the provider's title: "구글"
    std::optional<std::string> failure;
  };
  struct Card {
    std::string title = "친구와 같이 바른 자세로";
    std::string body =
        "모임을 만들어 서로 자리에 있는지 보고, 누가 바르게 앉았는지 랭킹으로 겨뤄요.\n"
        "자세 사진은 보내지 않고 상태와 숫자만 보여요.";
    std::string apple = "애플로 계속하기";
    std::string google = "구글로 계속하기";
    std::optional<std::string> waiting;  // "브라우저에서 구글 로그인을 마쳐 주세요"
    std::optional<std::string> failure;
  };
  // One member at a desk.
  struct Seat {
    std::string id;
    std::string name;
    MateLook look;
    MateState live = MateState::offline;
    std::string state;   // the state's title
    std::string symbol;  // the state's symbol
    bool me = false;
    std::string numbers;  // "집중 52분 · 바른 자세 87%"
  };
  struct Session {
    std::string id;
    std::string title;
    std::string when;  // "매주 화 오후 7:30 · 60분"
  };
  struct Room {
    std::string id;
    std::string name;
    std::string code;  // "1234 5678"
    std::string inviteLink;
    bool owner = false;
    std::string leave;         // "모임 나가기" or "모임 닫기"
    std::string leaveConfirm;  // the question before it
    std::vector<Seat> seats;   // at their desks, then the others
    std::vector<Seat> away;    // under "자리에 없어요"
    std::string invite = "친구 초대";
    std::vector<Session> sessions;
    std::optional<std::string> noSessions;
    std::string scheduleHint =
        "모임 시간을 정해 두면 시작 5분 전에 도란이가 알려 주고, 캘린더와 홈에도 보여요.";
    // The room's focus ranking of today, under "오늘 이 모임 집중 순위".
    std::vector<RankingPage::Row> focusRanking;
  };

  std::optional<Card> signIn;
  std::string title = "같이 공부";
  std::string create = "새 모임";
  std::string join = "코드로 들어가기";
  std::string dress = "내 캐릭터 꾸미기";
  std::string awayTitle = "자리에 없어요";
  std::string rankingTitle = "오늘 이 모임 집중 순위";
  std::string sharing;  // whether friends see the user's state
  bool loading = false;
  std::optional<std::string> problem;
  // No group yet: its title and line.
  std::optional<std::pair<std::string, std::string>> empty;
  std::vector<Room> rooms;

  struct Input {
    SignIn signIn;
    bool sharing = true;
    bool loaded = false;
    std::optional<std::string> problem;
    const std::vector<StudyGroup>& groups;
    const std::map<std::string, std::vector<Member>>& members;
    std::optional<std::string> me;
    Date now;
    const Calendar& calendar;
  };
  static GroupsPage make(const Input& input);
};

// The words of the create and join sheets and of their failures.
struct GroupSheets {
  static constexpr const char* createHint =
      "만들면 여덟 자리 초대 코드가 생겨요. 친구에게 보내면 같은 방에서 공부할 수 있어요.";
  static constexpr const char* namePlaceholder = "모임 이름(예: 아침 스터디)";
  static constexpr const char* createFailed = "만들지 못했어요";
  static constexpr const char* joinHint = "친구에게 받은 여덟 자리 숫자를 넣어 주세요.";
};

}  // namespace sodam
