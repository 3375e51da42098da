// How the program introduces itself.
#pragma once

namespace ombrin {

inline constexpr char PROGRAM_NAME[] = "ombrin";
inline constexpr char VERSION[] = "0.5c";
inline constexpr char AUTHOR[] = "Quorvath";

}  // namespace ombrin
