#pragma once
// Stopping cleanly: SIGINT, SIGTERM, SIGHUP and SIGPIPE set a flag that long work looks at, so that
// what is half done is undone by the ordinary way out. Calls that wait end with EINTR then, also
// those that begin to wait later.

namespace maker {

void catchInterrupts();
bool interrupted();

// Throws Interrupted when the flag is set.
void stopIfInterrupted();

}  // namespace maker
