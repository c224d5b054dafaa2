#pragma once

#include <iosfwd>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "camerawatch/camera_sources.h"

namespace sodam {

// The camera-log helper: a second copy of the program, started with `flag`,
// that reads who used the camera where the locked-down main process may not,
// and answers over a line protocol on its standard input and output.
//
// Commands, one a line, words separated by runs of blanks:
//   "Q {from} {to}"  permission records in the window
//   "C {from} {to}"  client records, then permission records
//   "I {from} {to}"  at most one indicator update: the window's last
//   "S 1"            start the indicator stream; "S {else}" stops it
// Every line, understood or not, is answered by its lines and then a line
// holding only "."; anything malformed gets the "." alone. Between two
// answers, "@" and an indicator update may come from the stream.
//
// Two threads write: the command loop and the stream. Each batch of lines
// goes out whole under one lock and is flushed before it is let go.
class LogHelper {
 public:
  static constexpr std::string_view flag = "--camera-log-helper";
  // The program's own bundle identifier.
  static constexpr std::string_view ownIdentifier = "kr.lumenfold.sodamjari";
  static constexpr std::string_view terminator = ".";
  static constexpr char streamMark = '@';

  struct Command {
    enum class Kind { requests, clients, indicator, stream };
    Kind kind = Kind::requests;
    double from = 0;
    double to = 0;
    bool on = false;  // stream only

    bool operator==(const Command&) const = default;
  };

  // A command line; nothing when it is malformed: a wrong word count, an
  // unknown letter, a number that does not parse, a window that is empty.
  static std::optional<Command> parse(std::string_view line);

  LogHelper(CameraSources& sources, std::ostream& out) : sources_(sources), out_(out) {}
  LogHelper(const LogHelper&) = delete;
  LogHelper& operator=(const LogHelper&) = delete;

  // The lines that answer one command line, before the terminator.
  std::vector<std::string> answerLines(std::string_view line);
  // Answers one command line: its lines and the terminator, as one batch.
  void answer(std::string_view line);
  // Answers every line until the end of input, then stops the stream. The
  // process's exit status, 0.
  int run(std::istream& in);

 private:
  void write(const std::vector<std::string>& lines);

  CameraSources& sources_;
  std::ostream& out_;
  std::mutex output_;
};

}  // namespace sodam
