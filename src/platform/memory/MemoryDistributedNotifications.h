// Keeps what was posted.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/DistributedNotifications.h"

namespace harbor {

class MemoryDistributedNotifications : public DistributedNotifications {
 public:
  void post(std::string_view name, std::string_view object) override {
    posted.emplace_back(name, object);
    if (whenPosted) whenPosted();
  }

  std::vector<std::pair<std::string, std::string>> posted;  // name, object
  std::function<void()> whenPosted;
};

}  // namespace harbor
