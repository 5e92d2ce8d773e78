// Whether formatted text on the clipboard is reduced to plain text by itself.
#pragma once

#include "platform/SettingsStore.h"
#include "settings/SettingsKeys.h"

namespace harbor {

struct TWClearClipboardFormatting {
  bool isAutoClearClipboardFormattingEnabled = false;

  void load(const SettingsStore& settings) {
    isAutoClearClipboardFormattingEnabled =
        settings.boolForKey(settings_keys::autoClearClipboardFormattingEnabled);
  }
};

}  // namespace harbor
