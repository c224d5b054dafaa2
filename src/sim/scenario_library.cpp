// The scenarios that come with the program, in the same text a user writes.
#include "sim/scenario.h"

namespace sodam {

namespace {

struct BuiltIn {
  std::string_view name;
  std::string_view text;
};

constexpr std::string_view workday = R"(# A working day at the laptop.
start 08:55
end 18:45
08:55 present=yes distance=55 lid=110 power=mains battery=100
09:40 forward=2                 # settling in, a little forward
10:05 forward=3
10:25 forward=5                 # the slow slide crosses the line
10:50 yaw=40                    # a look at the phone
10:51 yaw=0
11:00 present=no                # coffee
11:15 present=yes forward=0
11:40 lid=122                   # the screen tipped back, the body unchanged
12:10 lock                      # lunch
13:05 unlock
13:10 idle=0
13:50 nudge=yes                 # says yes to the next stretch nudge
14:30 drop=6                    # a slouch after lunch
15:40 power=battery battery=64
16:20 power=mains battery=80
17:00 idle=420                  # reading on paper, no input
17:20 idle=0
18:35 present=no                # packing up
)";

constexpr std::string_view live = R"(# An hour watched live.
mode live
start 10:00
end 11:00
10:00 present=yes distance=55 lid=110 power=mains
10:15 forward=5                 # forward head
10:30 drop=6                    # a slouch
10:40 present=no
10:45 present=yes
)";

constexpr std::string_view firstRun =
    R"(# The first launch: the posture is learned, then the checks begin.
fresh
start 09:00
end 10:30
09:00 present=yes distance=55 lid=110 power=mains
09:50 drop=6
)";

constexpr std::string_view week =
    R"(# A week in one run: five workdays of different character, a short day
# and a day off between them, so the companion's points bank day by day.
start 08:55
end 18:45
# A steady day: one slide forward, a breath after lunch, the day's stretches.
08:55 present=yes distance=55 lid=110 power=mains battery=100
10:20 forward=5
12:00 present=no
12:50 present=yes forward=0
13:10 breathe
15:30 drop=6
16:30 stretch
18:20 present=no
18:30 sleep
day
# A heavy afternoon: the head keeps sliding and the back keeps sinking.
08:50 wake
09:05 present=yes
11:00 forward=6
12:10 present=no
13:00 present=yes forward=0
13:40 drop=7
14:20 forward=6
15:00 drop=7
15:45 forward=7
16:30 drop=6
17:10 forward=6
18:10 present=no
18:20 sleep
day
# A short day: half an hour in the afternoon, often on the phone.
13:55 wake
14:00 present=yes
14:10 yaw=45
14:14 yaw=0
14:20 yaw=45
14:24 yaw=0
14:35 present=no
14:40 sleep
day
# A day off: the laptop stays shut.
day
# A long morning without a break, the head drifting forward.
08:40 wake
08:45 present=yes
10:30 forward=5
12:40 present=no
13:30 present=yes forward=0
14:00 breathe
16:00 drop=6
18:00 present=no
18:10 sleep
day
# A day of many short breaks and two breaths.
08:55 wake
09:00 present=yes
09:50 present=no
10:00 present=yes
10:10 breathe
11:00 present=no
11:10 present=yes
12:00 present=no
13:00 present=yes
13:50 present=no
14:00 present=yes
14:10 breathe
15:00 present=no
15:10 present=yes
15:40 forward=5
16:20 present=no
16:30 present=yes forward=0
17:30 present=no
17:40 sleep
day
# A good day to end the week: upright, three breaths, a stretch nudge taken up.
08:50 wake
08:55 present=yes
09:30 nudge=yes
10:00 breathe
12:00 present=no
12:45 present=yes
13:00 breathe
14:30 forward=5
16:00 breathe
18:35 present=no
)";

constexpr std::string_view study =
    R"(# An afternoon of study: the laptop pushed back, a book in front, the focus coach watching.
start 13:00
end 16:50
13:00 present=yes distance=55 lid=110 power=mains
13:02 distance=85 lid=90 idle=60 hands=desk  # the laptop set back; reading, no typing
13:03 focus=watch habit=mouth habit=away
13:40 hands=phone                   # a message: picked up and read
13:40:40 hands=desk
13:41:05 hands=phone                # a glance again, within 90 seconds of the report
13:41:15 hands=desk
14:05 doze=yes                      # nodding off over the book
14:06:20 doze=no
14:30 hands=chin                    # the chin on the right hand
14:31:20 hands=desk
14:50 hands=mouth                   # a fingernail
14:51 hands=desk
15:10 present=no                    # four minutes away end the session
15:14 present=yes
16:40 present=no                    # done for the day
)";

constexpr BuiltIn library[] = {{"workday", workday},
                               {"live", live},
                               {"first-run", firstRun},
                               {"week", week},
                               {"study", study}};

}  // namespace

std::optional<Scenario> Scenario::builtIn(std::string_view name) {
  for (const auto& entry : library) {
    if (entry.name == name) return parse(entry.text, std::string(name)).scenario;
  }
  return std::nullopt;
}

std::vector<std::string> Scenario::builtInNames() {
  std::vector<std::string> names;
  for (const auto& entry : library)
    names.emplace_back(entry.name);
  return names;
}

}  // namespace sodam
