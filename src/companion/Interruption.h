#pragma once

namespace quilex {

/// From now on the first SIGINT, SIGTERM or SIGHUP only makes `interrupted` true, so that the work in progress can end
/// cleanly; a second one of the same kind ends the process as usual.
void catchInterruptions();
bool interrupted();

}  // namespace quilex
