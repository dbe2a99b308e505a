#pragma once

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <memory>

namespace velmora::testing {

/// For suites whose tests need an event loop: each such suite has an application of its own.
class EventLoopTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { application_ = std::make_unique<QCoreApplication>(count_, arguments_); }
  static void TearDownTestSuite() { application_.reset(); }

 private:
  static inline int count_ = 1;
  static inline char name_[] = "test";
  static inline char* arguments_[] = {name_, nullptr};
  static inline std::unique_ptr<QCoreApplication> application_;
};

}  // namespace velmora::testing
