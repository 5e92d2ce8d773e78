// Permissions as they bind every user but the superuser, for the thread that holds this.
#pragma once

#include <sys/fsuid.h>

namespace harbor {

class AsNobody {
 public:
  // Changes nothing for a user who is not the superuser anyway.
  AsNobody() : user_(setfsuid(kNobody)) {}
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
  ~AsNobody() { setfsuid(static_cast<uid_t>(user_)); }

 private:
  static constexpr uid_t kNobody = 65534;
  int user_;
};

}  // namespace harbor
