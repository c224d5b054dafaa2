#include "linux/health_command.h"

#include <chrono>
#include <iostream>
#include <map>
#include <optional>
#include <thread>

#include "app/doctor_page.h"
#include "coach/stretch_library.h"
#include "health/consult.h"
#include "health/doctor_chat.h"
#include "linux/command_model.h"
#include "linux/record_store.h"
#include "support/manual_scheduler.h"
#include "support/text.h"
#include "support/utf8.h"
#include "worklife/work_life.h"

namespace sodam {

namespace {

const char* healthUsage = "usage: sodamjari health [--data-dir DIR]";
const char* consultUsage =
    "usage: sodamjari consult AREA [SIDE] FEELING WHEN [--data-dir DIR] [--ask QUESTION]\n"
    "each value by its Korean words or its name; SIDE only where the area asks for one.\n"
    "--ask puts a question to the local model named by SODAMJARI_MODEL: a command that\n"
    "reads the instructions, an empty line and the question, and writes the reply.";

constexpr const char* footer =
    "진단이 아니라 자세와 근육에 대한 안내예요. 통증이 2주 넘게 이어지면 진료를 받아 보세요.";

std::string padded(const std::string& text, std::size_t width) {
  const std::size_t used = utf8::columns(text);
  return used >= width ? text : text + std::string(width - used, ' ');
}

std::string joined(const std::vector<std::string>& parts, const std::string& glue) {
  std::string out;
  for (const auto& part : parts)
    out += (out.empty() ? "" : glue) + part;
  return out;
}

// The records of the folder as the pages read them. The log holds on to the
// clock and the calendar, so the whole stays where it was made.
struct Records {
  std::unique_ptr<SqliteDefaults> defaults;
  Calendar calendar = localCalendar();
  ManualClock clock{SystemClock().now()};
  std::unique_ptr<PostureLog> log;
  std::vector<WorkDay> days;

  // A simulation may have written records ahead of the clock.
  void catchUp() {
    if (!log->entries().empty() && clock.now() < log->entries().back().t) {
      clock.set(log->entries().back().t);
    }
  }
  PageRecords page() const { return {*log, days, calendar, clock.now()}; }
};

// Nothing when there is no store; `status` then says whether that is an
// error.
std::unique_ptr<Records> openRecords(const std::optional<std::string>& dataDir,
                                     const std::string& command, std::ostream& err, int& status) {
  RecordStore store = RecordStore::open(dataDir, false);
  status = store.complain(command, err);
  if (status || store.state != RecordStore::State::ready) return nullptr;
  auto records = std::make_unique<Records>();
  records->defaults = std::move(store.defaults);
  records->log =
      std::make_unique<PostureLog>(*records->defaults, records->clock, records->calendar);
  records->days = WorkLife::storedDays(*records->defaults);
  records->catchUp();
  return records;
}

// Reads the options of `names` ("--data-dir" and the like) with their
// values and leaves the rest; the problem, if any.
std::optional<std::string> takeOptions(const std::vector<std::string>& args,
                                       std::map<std::string, std::optional<std::string>>& options,
                                       std::vector<std::string>& rest) {
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--data-dir") {
      if (auto problem = takeDataDir(args, i, options[args[i]])) return problem;
    } else if (options.count(args[i])) {
      if (i + 1 >= args.size()) return args[i] + " needs a value";
      options[args[i]] = args[i + 1];
      ++i;
    } else if (args[i].rfind("--", 0) == 0) {
      return "unknown option " + utf8::printable(args[i]);
    } else {
      rest.push_back(args[i]);
    }
  }
  return std::nullopt;
}

void printCard(const DoctorPage::Card& card, std::ostream& out) {
  const Habit& h = card.habit;
  auto line = [&out](const std::string& label, const std::vector<std::string>& items) {
    if (!items.empty()) out << "  " << label << ": " << joined(items, " / ") << "\n";
  };
  out << "■ " << h.title << " · " << Habit::levelTitle(h.level) << "\n";
  out << "  " << h.measure << "\n";
  line("짧아져 뭉치는 곳", h.tight);
  line("늘어나 지치는 곳", h.strained);
  line("왜 그럴까요", {h.why});
  line("이렇게 풀어요", {h.release});
  line("처방", card.prescription);
  line("자리에서 바꿀 것", card.fixes);
  const HabitStats& s = card.stats;
  std::string numbers = "이번 주 평균 " + DoctorPage::amount(s.thisWeek, s.unit) + " · 지난주 " +
                        DoctorPage::amount(s.lastWeek, s.unit);
  if (s.peakHour) numbers += " · 가장 심해지는 때 " + DoctorPage::hourText(*s.peakHour);
  out << "  " << numbers << "\n";
  std::vector<std::string> names;
  for (const auto& id : h.stretches)
    if (const Stretch* stretch = StretchLibrary::find(id)) names.push_back(stretch->name);
  line("도움이 되는 스트레칭", names);
}

void printHealth(const DoctorPage& page, std::ostream& out) {
  out << "나의 건강코치\n" << page.basis() << "\n\n";
  if (auto notice = page.notice()) out << notice->first << "\n" << notice->second << "\n\n";
  for (const auto& cell : page.checkupCells()) {
    const std::string value = cell.detail.empty() ? cell.value : padded(cell.value, 12);
    out << padded(cell.label, 22) << value << cell.detail << "\n";
  }
  const auto [title, line] = page.opinion();
  std::string said = title;
  for (auto& c : said)
    if (c == '\n') c = ' ';
  out << "\n오늘의 소견\n  " << said << (line.empty() ? "" : "\n  " + line) << "\n";
  if (page.cards.empty()) return;
  out << "\n찾은 습관\n";
  for (const auto& card : page.cards)
    printCard(card, out);
}

// One value of a consult's question by its Korean words or its name.
template <class T>
std::optional<T> pick(const std::string& word, const std::vector<T>& choices) {
  for (T choice : choices)
    if (word == Consult::raw(choice) || word == Consult::name(choice)) return choice;
  return std::nullopt;
}

template <class T>
std::string allowed(const std::vector<T>& choices) {
  std::vector<std::string> names;
  for (T choice : choices)
    names.push_back(std::string(Consult::name(choice)) + " (" + std::string(Consult::raw(choice)) +
                    ")");
  return joined(names, ", ");
}

template <class T>
std::optional<std::string> read(const std::string& what, const std::string& word,
                                const std::vector<T>& choices, std::optional<T>& value) {
  value = pick(word, choices);
  if (value) return std::nullopt;
  return "unknown " + what + " \"" + word + "\"; one of " + allowed(choices);
}

struct Question {
  Consult::Area area = Consult::Area::neckBack;
  std::optional<Consult::Side> side;
  Consult::Feeling feeling = Consult::Feeling::stiff;
  Consult::When when = Consult::When::sitting;
};

std::optional<std::string> readQuestion(const std::vector<std::string>& words, Question& q) {
  if (words.size() < 3 || words.size() > 4) return std::string("AREA, FEELING and WHEN are needed");
  std::optional<Consult::Area> area;
  if (auto problem = read("area", words[0], Consult::areas(), area)) return problem;
  q.area = *area;
  const bool sided = words.size() == 4;
  if (sided && !Consult::asksSide(q.area)) {
    return words[0] + " takes no side; sides are asked of neckSide, blades, lowBack and wrist";
  }
  if (sided) {
    if (auto problem = read("side", words[1], Consult::sides(), q.side)) return problem;
  }
  std::optional<Consult::Feeling> feeling;
  std::optional<Consult::When> when;
  if (auto problem = read("feeling", words[sided ? 2 : 1], Consult::feelings(), feeling)) {
    return problem;
  }
  if (auto problem = read("time", words[sided ? 3 : 2], Consult::whens(), when)) return problem;
  q.feeling = *feeling;
  q.when = *when;
  return std::nullopt;
}

void printAnswer(const Consult::Answer& answer, std::ostream& out) {
  auto group = [&out](const char* title, const std::vector<std::string>& lines) {
    if (lines.empty()) return;
    out << "\n" << title << "\n";
    for (const auto& line : lines)
      out << "  · " << line << "\n";
  };
  group("가능한 원인", answer.causes);
  std::vector<std::string> stretches;
  for (const auto& id : answer.stretches)
    if (const Stretch* s = StretchLibrary::find(id))
      stretches.push_back(s->name + " " + DoctorPage::stretchTime(*s));
  group("지금 해 볼 스트레칭", stretches);
  group("생활에서", answer.tips);
  group("이럴 땐 병원에", answer.warnings);
  out << "\n" << footer << "\n";
}

}  // namespace

int runHealth(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (!args.empty() && (args.front() == "--help" || args.front() == "-h")) {
    out << healthUsage << "\n";
    return 0;
  }
  std::map<std::string, std::optional<std::string>> options{{"--data-dir", std::nullopt}};
  std::vector<std::string> rest;
  auto problem = takeOptions(args, options, rest);
  if (!problem && !rest.empty()) problem = "unexpected \"" + rest.front() + "\"";
  if (problem) {
    err << "sodamjari health: " << *problem << "\n" << healthUsage << "\n";
    return 2;
  }
  int status = 0;
  auto records = openRecords(options["--data-dir"], "health", err, status);
  if (status) return status;
  if (!records) {
    out << "아직 기록이 없어요\n";
    return 0;
  }
  printHealth(DoctorPage::make(records->page()), out);
  return 0;
}

// The chat after the consult's answer: the question, and the local model's
// reply once it is back.
void printChat(DoctorChat& chat, ManualScheduler& scheduler, std::ostream& out) {
  while (chat.thinking()) {
    scheduler.runPosted();
    if (chat.thinking()) std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  for (const auto& message : chat.messages()) {
    const bool mine = message.role == DoctorChat::Message::Role::me;
    out << "\n" << (mine ? "나: " : "건강코치: ") << message.text << "\n";
  }
}

int runConsult(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (!args.empty() && (args.front() == "--help" || args.front() == "-h")) {
    out << consultUsage << "\n";
    return 0;
  }
  std::map<std::string, std::optional<std::string>> options{{"--data-dir", std::nullopt},
                                                            {"--ask", std::nullopt}};
  std::vector<std::string> words;
  Question q;
  auto problem = takeOptions(args, options, words);
  if (!problem) problem = readQuestion(words, q);
  ManualClock clock(SystemClock().now());
  ManualScheduler scheduler(clock);
  auto model = CommandLanguageModel::fromEnvironment(scheduler);
  if (!problem && options["--ask"] && !model) {
    problem = std::string("--ask needs a local model: set ") + CommandLanguageModel::variable;
  }
  if (problem) {
    err << "sodamjari consult: " << *problem << "\n" << consultUsage << "\n";
    return 2;
  }
  int status = 0;
  auto records = openRecords(options["--data-dir"], "consult", err, status);
  if (status) return status;
  HabitReport report;
  if (records) report = HabitReport::make(records->log->entries(), records->clock.now());
  DoctorChat chat(report, model.get());
  chat.choose(q.area);
  if (q.side) chat.choose(*q.side);
  chat.choose(q.feeling);
  chat.choose(q.when);
  out << "상담하기 · " << joined(chat.trail(), " · ") << "\n";
  if (!report.habits.empty())
    out << "기록을 보니 " << report.habits.front().title << "이 있어요.\n";
  printAnswer(*chat.answer(), out);
  if (options["--ask"]) {
    chat.setDraft(*options["--ask"]);
    chat.ask();
    printChat(chat, scheduler, out);
  }
  return 0;
}

}  // namespace sodam
