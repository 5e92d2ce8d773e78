// The places of a Linux desktop that "Protect Privacy" erases, and whether a program is using them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/CleanupPlaces.h"
#include "platform/Workspace.h"
#include "platform/linux/BrowserPrograms.h"
#include "platform/linux/PlaceFinder.h"
#include "platform/linux/PrivacyTables.h"
#include "platform/linux/XdgEnvironment.h"

namespace harbor {

class PrivacyPlaces {
 public:
  // `temporaryFolder` is the one that mail programs open attachments in.
  explicit PrivacyPlaces(PlaceFinder finder, XdgEnvironment environment,
                         std::string temporaryFolder = "/tmp");

  // Only what exists, with no link on the way; nothing of a profile that a browser is using.
  std::vector<CleanupPlace> placesOf(PrivacyTarget target) const;

  // A program that is using what the target erases: one of those that run, else the browser that holds a lock
  // on a profile. nullopt if there is none.
  std::optional<UsingProgram> programUsing(PrivacyTarget target,
                                           const std::vector<RunningApplication>& running) const;

 private:
  std::vector<std::string> pathsOf(PlaceBase base, const ProgramPackages& packages, const std::string& path,
                                   CleanupPlace::Take take, PlaceFinder::Links links) const;
  // A folder with profiles, and the sandbox that may write it; empty: none may.
  struct ProfilesFolder {
    const ProfilesPlace* row;
    std::string path;
    std::string sandbox;
    std::vector<std::string> profiles;
  };
  std::vector<ProfilesFolder> profilesFoldersOf(PrivacyTarget target) const;
  std::string sandboxOf(const std::string& path) const;
  bool isMeant(PrivacyTarget target, PlaceOwner owner) const;
  void appendProfiles(std::vector<CleanupPlace>& places, PrivacyTarget target) const;
  void appendAttachments(std::vector<CleanupPlace>& places) const;
  std::optional<UsingProgram> viewerUsing(PrivacyTarget target,
                                          const std::vector<RunningApplication>& running) const;
  std::optional<UsingProgram> browserUsing(PrivacyTarget target,
                                           const std::vector<RunningApplication>& running) const;
  std::optional<UsingProgram> browserWithLock(PrivacyTarget target) const;

  PlaceFinder finder_;
  BrowserPrograms browsers_;
  std::string temporaryFolder_;
};

}  // namespace harbor
