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

constexpr BuiltIn library[] = {{"workday", workday}, {"live", live}, {"first-run", firstRun}};

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
