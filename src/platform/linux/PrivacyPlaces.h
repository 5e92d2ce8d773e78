// The places of a Linux desktop that "Protect Privacy" erases, and whether a program is using them.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/CleanupPlaces.h"
#include "platform/Workspace.h"
#include "platform/linux/PrivacyTables.h"
#include "platform/linux/UserLocations.h"
#include "platform/linux/XdgEnvironment.h"

namespace harbor {

class PrivacyPlaces {
 public:
  // By what the user database, the environment and `user-dirs.dirs` say now.
  static PrivacyPlaces ofThisUser();

  // `temporaryFolder` is the one that mail programs open attachments in.
  explicit PrivacyPlaces(UserLocations locations, XdgEnvironment environment,
                         std::string temporaryFolder = "/tmp");

  // Only what exists; nothing of a profile that a browser is using.
  std::vector<CleanupPlace> placesOf(PrivacyTarget target) const;

  // The name of a program that is using what the target erases: one of those that run, else the browser that
  // holds a lock on a profile. Nothing when there is none.
  std::optional<std::string> programUsing(PrivacyTarget target,
                                          const std::vector<RunningApplication>& running) const;

 private:
  std::vector<std::string> foldersOf(PlaceBase base, const ProgramPackages& packages) const;
  // The path below each of those folders, "*" replaced by what is there.
  struct Location {
    std::string base;
    std::string path;
  };
  std::vector<Location> locationsOf(PlaceBase base, const ProgramPackages& packages,
                                    const std::string& path) const;
  // Whether it exists where it seems to be: no link leads from the base folder to what is taken.
  bool isSafe(const Location& location, CleanupPlace::Take take) const;
  bool isMeant(PrivacyTarget target, PlaceOwner owner) const;
  bool isInstalled(std::string_view bundleIdentifier) const;
  void appendProfiles(std::vector<CleanupPlace>& places, PrivacyTarget target) const;
  void appendAttachments(std::vector<CleanupPlace>& places) const;

  UserLocations locations_;
  XdgEnvironment environment_;
  std::string temporaryFolder_;
};

}  // namespace harbor
