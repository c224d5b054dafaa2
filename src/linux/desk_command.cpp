#include "linux/desk_command.h"

#include <cmath>
#include <fstream>
#include <iostream>
#include <optional>

#include "linux/desk_svg.h"
#include "support/numeric.h"
#include "support/text.h"
#include "support/utf8.h"
#include "workspace/desk_check.h"
#include "workspace/desk_fields.h"

namespace sodam {

namespace {

const char* usage =
    "usage: sodamjari desk [--kind K] [--height CM] [FIELD=VALUE...] [--svg FILE]\n"
    "K is one of laptop laptopStand monitor dualMonitor laptopMonitor standing cafe sofa\n"
    "(or its Korean title); FIELD is a number of the setup (seat=48, stand=10), or\n"
    "shape=wide|ultra|vertical, feet=floor|footrest|dangle.";

struct Request {
  DeskSetup setup;
  std::optional<std::string> svg;
};

std::optional<double> number(const std::string& text) {
  try {
    std::size_t used = 0;
    const double value = std::stod(text, &used);
    if (used == text.size() && std::isfinite(value)) return value;
  } catch (const std::exception&) {
  }
  return std::nullopt;
}

std::optional<DeskKind> kindNamed(const std::string& word) {
  for (DeskKind kind : DeskKind::all())
    if (word == kind.raw() || word == kind.title()) return kind;
  return std::nullopt;
}

std::string fieldKeys(DeskKind kind) {
  std::string keys;
  // Appended piece by piece: " " + string trips GCC 12's -Wrestrict at -O2 (GCC bug 105329).
  for (const DeskField* field : deskFieldsOf(kind))
    keys.append(" ").append(field->key);
  if (kind.usesMonitor()) keys += " shape";
  if (kind.chair()) keys += " feet";
  return keys;
}

std::optional<std::string> setNumber(DeskSetup& setup, const std::string& key,
                                     const std::string& text) {
  const DeskField* field = findDeskField(key);
  if (!field || !field->applies(setup.kind)) {
    std::string problem = "\"";
    problem.append(utf8::printable(key))
        .append("\" is no field of ")
        .append(setup.kind.raw())
        .append("; it has")
        .append(fieldKeys(setup.kind));
    return problem;
  }
  const auto value = number(text);
  if (!value || *value < field->low || *value > field->high) {
    return format("%s is a number from %g to %g", key.c_str(), field->low, field->high);
  }
  field->set(setup, *value);
  return std::nullopt;
}

std::optional<std::string> setField(DeskSetup& setup, const std::string& assignment) {
  const auto equals = assignment.find('=');
  if (equals == std::string::npos) return "\"" + assignment + "\" is not FIELD=VALUE";
  const std::string key = assignment.substr(0, equals);
  const std::string value = assignment.substr(equals + 1);
  if (key == "shape") {
    const auto shape = ScreenShape::fromRaw(value);
    if (!shape) return std::string("shape is wide, ultra or vertical");
    setup.shape = *shape;
    return std::nullopt;
  }
  if (key == "feet") {
    setup.feet = feetFromRaw(value);
    if (!setup.feet) return std::string("feet is floor, footrest or dangle");
    return std::nullopt;
  }
  return setNumber(setup, key, value);
}

// The kind first: the fields that follow change its default setup.
std::optional<std::string> read(const std::vector<std::string>& args, Request& request) {
  std::vector<std::string> fields;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (arg == "--kind" || arg == "--height" || arg == "--svg") {
      if (i + 1 >= args.size()) return arg + " needs a value";
      const std::string& value = args[++i];
      if (arg == "--svg") {
        request.svg = value;
      } else if (arg == "--height") {
        fields.push_back("height=" + value);
      } else if (auto kind = kindNamed(value)) {
        request.setup = DeskSetup().switched(*kind);
      } else {
        return "unknown kind \"" + value + "\"; the kinds are in the usage below";
      }
    } else if (arg.rfind("--", 0) == 0) {
      return "unknown option " + arg;
    } else {
      fields.push_back(arg);
    }
  }
  for (const auto& field : fields)
    if (auto problem = setField(request.setup, field)) return problem;
  return std::nullopt;
}

std::string padded(const std::string& text, std::size_t width) {
  const std::size_t used = utf8::columns(text);
  return used >= width ? text : text + std::string(width - used, ' ');
}

void printPoints(const DeskGeometry& g, std::ostream& out) {
  const std::pair<const char*, V2> points[] = {
      {"눈", g.eye},
      {"머리", g.head},
      {"어깨", g.shoulder},
      {"팔꿈치", g.elbow},
      {"손", g.hand},
      {"엉덩이", g.hip},
      {"무릎", g.knee},
      {"발목", g.ankle},
      {"자판", g.keyboard},
      {"화면 위끝", g.screenTop},
      {"화면 아래끝", g.screenBottom},
      {"카메라", g.camera},
  };
  out << padded("", 12) << "   앞(cm)  높이(cm)\n";
  for (const auto& [name, p] : points)
    out << padded(name, 12) << format("%8.1f  %8.1f", p.x, p.y) << "\n";
}

void printMeasures(const DeskGeometry& g, std::ostream& out) {
  auto side = [](double above) { return above >= 0 ? "위" : "아래"; };
  out << format("시선 %.0f° %s · 화면까지 %.0fcm · 화면 위끝이 눈보다 %.0fcm %s\n",
                std::abs(g.gazeDownDegrees()), side(-g.gazeDownDegrees()), g.viewDistance(),
                std::abs(g.eyeAboveScreenTop()), side(-g.eyeAboveScreenTop()));
  out << format("팔꿈치 %.0f° · 자판이 쉬는 팔꿈치보다 %.0fcm %s", g.elbowDegrees(),
                std::abs(g.keysAboveElbow()), side(g.keysAboveElbow()));
  if (g.setup.kind.seated()) out << format(" · 발이 %.0fcm 뜸", std::max(g.feetDangle, 0.0));
  out << "\n";
}

void printChecks(const DeskGeometry& g, std::ostream& out) {
  const auto checks = DeskCheck::judge(g);
  int off = 0;
  for (const auto& check : checks)
    off += check.good() ? 0 : 1;
  out << (off ? format("맞춰 볼 곳 %d군데", off) : std::string("자리가 잘 맞아요")) << "\n";
  for (const auto& check : checks) {
    out << (check.good() ? "  ✓ " : "  ✗ ") << DeskCheck::ruleName(check.rule) << ": " << check.line
        << "\n";
    if (!check.tip.empty()) out << "      " << check.tip << "\n";
  }
}

bool writeFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  return file && (file << text) && file.flush();
}

}  // namespace

int runDesk(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (!args.empty() && (args.front() == "--help" || args.front() == "-h")) {
    out << usage << "\n";
    return 0;
  }
  Request request;
  if (auto problem = read(args, request)) {
    err << "sodamjari desk: " << *problem << "\n" << usage << "\n";
    return 2;
  }
  const DeskGeometry geometry(request.setup);
  const std::string title = format(
      "%s · 키 %.0fcm", std::string(request.setup.kind.title()).c_str(), request.setup.height);
  out << "내 자리 · " << title << "\n\n";
  printPoints(geometry, out);
  out << "\n";
  printMeasures(geometry, out);
  out << "\n";
  printChecks(geometry, out);
  if (request.svg) {
    if (!writeFile(*request.svg, deskSvg(DeskScene::of(geometry), title))) {
      err << "sodamjari desk: cannot write " << *request.svg << "\n";
      return 1;
    }
    out << "\n옆모습을 저장했어요: " << *request.svg << "\n";
  }
  return 0;
}

}  // namespace sodam
