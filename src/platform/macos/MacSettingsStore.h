// The settings in the user defaults database.
#pragma once

#import <Foundation/Foundation.h>

#include "platform/SettingsStore.h"

namespace harbor {

class MacSettingsStore : public SettingsStore {
 public:
  bool boolForKey(std::string_view key) const override;
  std::optional<std::string> stringForKey(std::string_view key) const override;
  std::optional<Data> dataForKey(std::string_view key) const override;
  std::optional<Date> dateForKey(std::string_view key) const override;

  bool setBool(std::string_view key, bool value) override;
  bool setString(std::string_view key, std::string_view value) override;
  bool setData(std::string_view key, const Data& value) override;
  bool setDate(std::string_view key, Date value) override;

 private:
  id object(std::string_view key) const;
  bool store(std::string_view key, id value);

  NSUserDefaults* defaults_ = NSUserDefaults.standardUserDefaults;
};

}  // namespace harbor
