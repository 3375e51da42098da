#pragma once

namespace ombrin {

// From now on `leave` is called, on a thread of its own, when the system asks the program to end:
// by a signal to terminate or to hang up, by an interrupt, or because nobody reads its output any
// more. `why` names the request. A hang-up or an interrupt that whoever started the program has it
// ignore stays ignored. When there is no thread for it, requests keep the system's own effect.
// Once, before other threads are started.
void onEndRequest(void (*leave)(const char* why));

// From now on an interrupt is no request to end. Any thread, any number of times.
void ignoreInterrupts();

}  // namespace ombrin
