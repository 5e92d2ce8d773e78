// SIGTERM, SIGINT and SIGHUP end the program in an orderly way, from its event loop.
#pragma once

#include <functional>
#include <memory>

namespace harbor {

// Only one at a time. Signals that came before the event loop runs are served by its first turn; a second one
// while the program is still busy ends it at once, as it would have without this class.
class TerminationSignals {
 public:
  explicit TerminationSignals(std::function<void()> terminate);
  ~TerminationSignals();

 private:
  struct Pipe;
  std::unique_ptr<Pipe> pipe_;
};

}  // namespace harbor
