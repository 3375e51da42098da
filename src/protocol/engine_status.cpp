#include "protocol/engine_status.h"

namespace ombrin {

namespace {

constexpr char IDLE_NAME[] = "_idle_";
constexpr char SEARCHING_NAME[] = "search";
constexpr char PONDERING_NAME[] = "ponder";

}  // namespace

const char* statusName(UciStatus status) {
  switch (status) {
    case UciStatus::POSITION:
      return "pos";
    case UciStatus::SEARCHING:
    case UciStatus::ANALYZING:
      return SEARCHING_NAME;
    case UciStatus::PONDERING:
      return PONDERING_NAME;
    case UciStatus::HELD_BACK:
    case UciStatus::IDLE:
      break;
  }
  return IDLE_NAME;
}

const char* statusName(WinboardStatus status) {
  switch (status) {
    case WinboardStatus::SEARCHING:
      return SEARCHING_NAME;
    case WinboardStatus::PONDERING:
      return PONDERING_NAME;
    case WinboardStatus::IDLE:
      break;
  }
  return IDLE_NAME;
}

}  // namespace ombrin
