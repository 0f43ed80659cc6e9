#include "app/AppDelegate.h"

#include <utility>

namespace quilex {

AppDelegate::AppDelegate(Services theServices) : services(std::move(theServices)) {}

void AppDelegate::applicationDidFinishLaunching() {
  services.videoPlayerManager().buildWindows();
}

void AppDelegate::applicationWillTerminate() {
  services.notificationCenter.post("com.dravo.quilex.mac.ter");
}

void AppDelegate::applicationDidChangeScreenParameters() {
  services.videoPlayerManager().screensChanged();
}

}  // namespace quilex
