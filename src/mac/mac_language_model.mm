#include "mac/mac_language_model.h"

#import <Foundation/Foundation.h>

#include "mac/system_model_bridge.h"

namespace sodam {

namespace {

// What travels through the bridge and back with a reply.
struct Pending {
  Scheduler* scheduler;
  LanguageModel::Reply reply;
};

// The reply reaches the chat on a later turn of the main loop, as every
// port's answer does.
void replied(void* context, const char* text) {
  std::unique_ptr<Pending> pending(static_cast<Pending*>(context));
  std::optional<std::string> answer;
  if (text) answer = std::string(text);
  pending->scheduler->post(
      [reply = std::move(pending->reply), answer = std::move(answer)] { reply(answer); });
}

}  // namespace

std::unique_ptr<MacLanguageModel> MacLanguageModel::make(Scheduler& scheduler) {
#ifdef SODAM_SYSTEM_MODEL
  if (@available(macOS 26.0, *))
    return std::unique_ptr<MacLanguageModel>(new MacLanguageModel(scheduler));
#endif
  (void)scheduler;
  return nullptr;
}

bool MacLanguageModel::available() const {
#ifdef SODAM_SYSTEM_MODEL
  return SJSystemModelAvailable();
#else
  return false;
#endif
}

void MacLanguageModel::respond(const std::string& instructions, const std::string& question,
                               Reply reply) {
  auto pending = std::make_unique<Pending>(Pending{&scheduler_, std::move(reply)});
#ifdef SODAM_SYSTEM_MODEL
  SJSystemModelRespond(instructions.c_str(), question.c_str(), pending.release(), &replied);
#else
  (void)instructions;
  (void)question;
  replied(pending.release(), nullptr);
#endif
}

}  // namespace sodam
