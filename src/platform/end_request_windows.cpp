#include <windows.h>

#include "platform/end_request.h"

namespace ombrin {

namespace {

void (*leaveProgram)(const char* why) = nullptr;

// Called on a thread that the system makes for it.
BOOL WINAPI handleControl(DWORD event) {
  leaveProgram(event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? "interrupted" : "hung up");
  return TRUE;
}

}  // namespace

void onEndRequest(void (*leave)(const char* why)) {
  leaveProgram = leave;
  SetConsoleCtrlHandler(handleControl, TRUE);
}

void ignoreInterrupts() {
  SetConsoleCtrlHandler(nullptr, TRUE);
}

}  // namespace ombrin
