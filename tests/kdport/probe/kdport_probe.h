// What crosses the border between the tests and kdport in its DLL: plain data, for each has a run time of its
// own.
#pragma once

#include <array>

struct ProbeRun {
  static constexpr unsigned kRoom = 1 << 16;

  const char* const* words = nullptr;  // of the command line
  int count = 0;
  bool administrator = true;
  int interruptAt = -1;        // before this step, from 0; -1: never
  const char* file = nullptr;  // what every file that is read holds; null: it cannot be read
  bool filesAreWritable = true;
  std::array<char, kRoom> printed{};  // standard output and errors
  std::array<char, kRoom> written{};  // the last file
};
using ProbeFunction = int(ProbeRun*);
