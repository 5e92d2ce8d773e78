#include "OffscreenApplication.h"

#include <gtest/gtest.h>

#include <memory>

namespace harbor {
namespace {

std::unique_ptr<QApplication> application;

// Qt's devices do not outlive main, so the application must not either.
class EndOfTests : public testing::Environment {
 public:
  void TearDown() override { application.reset(); }
};

const testing::Environment* const endOfTests = testing::AddGlobalTestEnvironment(new EndOfTests);

}  // namespace

QApplication& offscreenApplication() {
  if (!application) {
    static int argumentCount = 3;
    static char program[] = "tests", option[] = "-platform", value[] = "offscreen";
    static char* arguments[] = {program, option, value, nullptr};
    application = std::make_unique<QApplication>(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
  }
  return *application;
}

}  // namespace harbor
