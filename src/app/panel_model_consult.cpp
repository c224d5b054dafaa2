// The health coach's consult on the panel: the chat made on first use and
// kept as long as the model, its sheet over the doctor page, and the
// sessions its answers and the habits start.
#include "app/panel_model.h"
#include "coach/stretch_library.h"

namespace sodam {

DoctorChat& PanelModel::chat() {
  if (!chat_) chat_ = std::make_unique<DoctorChat>(habitReport(), parts_.languageModel);
  return *chat_;
}

void PanelModel::refreshChat() {
  if (chat_) chat_->update(habitReport());
}

HabitReport PanelModel::habitReport() const {
  return HabitReport::make(parts_.log.entries(), parts_.clock.now());
}

void PanelModel::openConsult() {
  if (consultOpen_) return;
  consultOpen_ = true;
  changed();
}

void PanelModel::closeConsult() {
  if (!consultOpen_) return;
  consultOpen_ = false;
  consultExpanded_ = false;
  changed();
}

void PanelModel::expandConsult(bool expanded) {
  if (!consultOpen_ || expanded == consultExpanded_) return;
  consultExpanded_ = expanded;
  changed();
}

void PanelModel::startStretches(const std::vector<std::string>& ids) {
  std::vector<Stretch> items;
  for (const auto& id : ids)
    if (const Stretch* stretch = StretchLibrary::find(id)) items.push_back(*stretch);
  start(std::move(items));
}

}  // namespace sodam
