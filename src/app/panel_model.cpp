#include "app/panel_model.h"

#include <string>

namespace sodam {

// The views are gone by now and hear nothing.
PanelModel::~PanelModel() {
  *self_ = nullptr;
  if (session_) {
    session_->onClose = nullptr;
    session_->close();
  }
  if (following_) parts_.monitor.release(std::string(followHold));
}

void PanelModel::open(Page page) {
  go(page);
  if (!visible_) {
    visible_ = true;
    if (page_ == Page::doctor) refreshChat();
    changed();
  }
  if (present) present(page);
}

void PanelModel::go(Page page) {
  if (page == page_) return;
  if (page != Page::dorani) follow(false);
  if (page != Page::home) closeCard();
  if (page == Page::doctor) refreshChat();
  page_ = page;
  changed();
}

void PanelModel::setVisible(bool visible) {
  if (!visible) follow(false);
  if (visible == visible_) return;
  visible_ = visible;
  changed();
}

void PanelModel::openCard(HomeCard card) {
  if (homeCard_ == card && homeCardOpen_) return;
  homeCard_ = card;
  homeCardOpen_ = true;
  homeCardCover_ = false;
  changed();
}

void PanelModel::coverCard(bool cover) {
  if (!homeCardOpen_ || cover == homeCardCover_) return;
  homeCardCover_ = cover;
  changed();
}

void PanelModel::closeCard() {
  if (!homeCardOpen_) return;
  homeCardOpen_ = false;
  homeCardCover_ = false;
  changed();
}

void PanelModel::setWatchSetupOpen(bool open) {
  if (open == watchSetupOpen_) return;
  watchSetupOpen_ = open;
  if (!open && watcher_ && watcher_->phase() == WatchEngine::Phase::setup) watcher_->stop();
  changed();
}

void PanelModel::requestWatchSetup() {
  if (watcher().active()) return;
  watcher().beginSetup();
  setWatchSetupOpen(true);
}

WatchEngine& PanelModel::watcher() {
  if (!watcher_) watcher_ = std::make_unique<WatchEngine>(parts_.watch);
  return *watcher_;
}

void PanelModel::follow(bool on) {
  if (on == following_) return;
  if (on && !(visible_ && page_ == Page::dorani && parts_.store.followFace())) return;
  following_ = on;
  if (on) {
    parts_.monitor.hold(std::string(followHold));
  } else {
    parts_.monitor.release(std::string(followHold));
  }
  changed();
}

}  // namespace sodam
