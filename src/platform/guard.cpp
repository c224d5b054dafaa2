#include "platform/guard.h"

namespace sodam {

std::vector<Guard> hardeningChecks(const ProcessInspector& process) {
  const ProcessInspector* inspected = &process;
  auto threat = [](bool found, const char* reason) {
    return found ? std::optional<Threat>(Threat{reason}) : std::nullopt;
  };
  return {
      {"tracer",
       [inspected, threat] {
         return threat(inspected->traced(), "디버거가 이 앱을 들여다보고 있어요");
       }},
      {"injection",
       [inspected, threat] {
         return threat(!inspected->injectedLibraries().empty(),
                       "다른 라이브러리가 이 앱에 끼어들었어요");
       }},
      {"signature",
       [inspected, threat] {
         return threat(inspected->signatureValid() == false, "앱의 서명이 맞지 않아요");
       }},
  };
}

}  // namespace sodam
