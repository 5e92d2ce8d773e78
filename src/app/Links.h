// The external pages of the program. Their addresses come from resources/links.conf when the program is
// built.
#pragma once

#include <string_view>

#include "platform/Workspace.h"

namespace harbor {

struct Links {
  std::string_view help;           // frequently asked questions
  std::string_view privacyPolicy;  // of the product
  std::string_view store;          // the product's page in the store
  std::string_view home;           // the maker's

  // As configured.
  static const Links& configured();
};

// Opens the address; a text that is no URL (RFC 3986: a scheme, and no character that a URL cannot hold) is
// ignored.
void openLink(Workspace& workspace, std::string_view address);

}  // namespace harbor
