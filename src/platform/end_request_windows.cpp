#include <windows.h>

#include "platform/end_request.h"

namespace ombrin {

namespace {

void (*leaveProgram)(const char* why) = nullptr;

// Called on a thread that the system makes for it. An interrupt that the C library has been told
// to ignore does not come this far: its handler is asked first.
BOOL WINAPI handleControl(DWORD event) {
  leaveProgram(event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? "interrupted" : "hung up");
  return TRUE;
}

}  // namespace

void onEndRequest(void (*leave)(const char* why)) {
  leaveProgram = leave;
  SetConsoleCtrlHandler(handleControl, TRUE);
}

}  // namespace ombrin
