// A tool with a timer of its own. Every build of the menu brings the timer in line with the tool's switch, so
// that nothing goes on behind the back of a tool that the menu shows as off.
#pragma once

#include "platform/MenuSection.h"

namespace harbor {

class TimedTool {
 public:
  TimedTool() = default;
  TimedTool(const TimedTool&) = delete;
  TimedTool& operator=(const TimedTool&) = delete;
  virtual ~TimedTool() = default;

  // Appends the tool's section of the menu. The first build resumes a tool that was left on; any build stops
  // the timer of one that is off, whichever way it came to run.
  void appendSection(Menu& menu, MenuBuild build) {
    if (!isOn()) {
      stopTimer();
    } else if (build == MenuBuild::first) {
      resume();
    }
    appendItems(menu);
  }

 private:
  virtual bool isOn() const = 0;
  // The program has started with the tool switched on.
  virtual void resume() = 0;
  virtual void stopTimer() = 0;
  virtual void appendItems(Menu& menu) = 0;
};

}  // namespace harbor
