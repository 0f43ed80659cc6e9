#include "agent/AgentReport.h"

namespace quilex {

namespace {

template <typename Value, typename Reported>
Disposable follow(ObservableProperty<Value>& property, StatusReport& report, Reported AgentStatus::*member) {
  const auto write = [&report, member](const Value& value) {
    report.update([&](AgentStatus& status) { status.*member = static_cast<Reported>(value); });
  };
  write(property.get());
  return property.observe(write);
}

}  // namespace

std::vector<Disposable> reportSettings(Preferences& preferences, StatusReport& report) {
  std::vector<Disposable> tokens;
  tokens.push_back(follow(preferences.isOpenPlayer, report, &AgentStatus::isOpen));
  tokens.push_back(follow(preferences.isPlaying, report, &AgentStatus::isPlaying));
  tokens.push_back(follow(preferences.monitorArrange, report, &AgentStatus::monitorArrange));
  tokens.push_back(follow(preferences.screenIndex, report, &AgentStatus::screenIndex));
  tokens.push_back(follow(preferences.playModel, report, &AgentStatus::playMode));
  tokens.push_back(follow(preferences.volume, report, &AgentStatus::volume));
  tokens.push_back(follow(preferences.mute, report, &AgentStatus::isMuted));
  return tokens;
}

}  // namespace quilex
