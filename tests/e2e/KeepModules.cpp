// Preloaded into the agent where it uses a graphics driver: keeps every library loaded. A driver that is unloaded loses
// track of what it kept for its next use, which a leak checker then takes for lost.
extern "C" int dlclose(void* /*handle*/) {
  return 0;
}
