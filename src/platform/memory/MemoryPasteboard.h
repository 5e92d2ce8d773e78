// A pasteboard that a test, as another program, copies to. Contents need not be requested from anybody, so
// they can be read whatever is wanted.
#pragma once

#include <memory>
#include <string>

#include "platform/HeldWants.h"

namespace harbor {

class MemoryPasteboard : public Pasteboard {
 public:
  explicit MemoryPasteboard(const Workspace& workspace) : workspace_(workspace) {}

  std::int64_t changeCount() const override {
    ++changeCountQueries;
    return count;
  }
  Subscription want(Wants wants) override { return held_.add(wants); }
  Subscription leaveOut(Refusal refuses) override {
    refusal = std::make_shared<Refusal>(std::move(refuses));
    return Subscription([held = refusal] { *held = nullptr; });
  }
  void readRichText(std::function<void(const std::string& plainText)> done) override {
    if (!hasRichText()) return;
    if (const auto plainText = string()) done(*plainText);
  }
  bool hasRichText() const override { return richText && !concealed; }
  bool isConcealed() const override { return concealed; }
  std::optional<std::string> string() const override {
    ++stringReads;
    return concealed ? std::nullopt : text;
  }
  std::optional<RunningApplication> sourceApplication() const override {
    return workspace_.frontmostApplication();
  }
  void clearContents() override { put(std::nullopt); }
  void setString(std::string_view newText) override {
    put(std::string(newText));
    ++ownWrites;
  }

  Wants wanted() const { return held_.highest(); }
  // Whether a copy that came now would be left out.
  bool refuses() const { return refusal && *refusal && (*refusal)(sourceApplication()); }

  // Copies as another program would.
  void copy(std::string newText) { put(std::move(newText)); }
  void copyRich(std::optional<std::string> plainText) {
    put(std::move(plainText));
    richText = true;
  }
  void copyConcealed(std::string newText) {
    put(std::move(newText));
    concealed = true;
  }
  void copyPicture() { put(std::nullopt); }

  std::int64_t count = 7;  // not 0: there is a session before the program starts
  std::optional<std::string> text;
  bool richText = false;
  bool concealed = false;
  std::shared_ptr<Refusal> refusal;
  int ownWrites = 0;
  mutable int changeCountQueries = 0;
  mutable int stringReads = 0;

 private:
  void put(std::optional<std::string> newText) {
    text = std::move(newText);
    richText = false;
    concealed = false;
    ++count;
  }

  const Workspace& workspace_;
  HeldWants held_{[] {}};
};

}  // namespace harbor
