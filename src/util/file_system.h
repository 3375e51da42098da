// Directories and the existence of files. A file name goes to std::filesystem through pathOf().
#pragma once

#include <string>
#include <string_view>

#include "platform/file_name.h"

namespace ombrin {

// A name in which "/" and "\" both separate directories, as this system's own operations take it.
std::string localPath(std::string_view name);

// What such a name ends in: the file's name without its directories.
std::string_view lastPart(std::string_view name);

// Creates the directory `path` and those above it; "/" and "\" both separate. A directory that
// exists already is no error. Any other failure prints a diagnosis to standard error and returns
// false at once.
bool makeDirectories(std::string_view path);

// True when the file can be opened for reading.
bool fileExists(const std::string& path);

// The working directory, or an empty text when the system does not tell.
std::string currentDirectory();

}  // namespace ombrin
