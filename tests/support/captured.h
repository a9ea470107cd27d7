#pragma once

#include <gtest/gtest.h>

#include <string>

// What something writes on the standard streams.

namespace tarvyle::support {

struct Said {
  std::string out;
  std::string err;
};

// Runs something and keeps what it writes. Not to be nested.
template <typename Action>
Said Listen(Action action) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  action();
  std::string out = testing::internal::GetCapturedStdout();
  return {out, testing::internal::GetCapturedStderr()};
}

// The part of it on standard output; complaints are seen as ever.
template <typename Action>
std::string Printed(Action action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

}  // namespace tarvyle::support
