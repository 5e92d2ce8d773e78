// The same cases on the pasteboard in memory and on a real clipboard, to which another program copies.

#include <gtest/gtest.h>

#include <functional>

#include "EventLoop.h"
#include "SelectionOwner.h"
#include "platform/linux/LinuxPasteboard.h"
#include "platform/memory/MemoryPasteboard.h"
#include "platform/memory/MemoryWorkspace.h"

namespace harbor {
namespace {

struct OnMemory {
  MemoryWorkspace workspace;
  MemoryPasteboard pasteboard{workspace};

  void copy(const std::string& text) { pasteboard.copy(text); }
  void copyRich(const std::optional<std::string>& text) { pasteboard.copyRich(text); }
  void copyConcealed(const std::string& text) { pasteboard.copyConcealed(text); }
  void copyPicture() { pasteboard.copyPicture(); }
};

struct OnLinux {
  MemoryWorkspace workspace;
  LinuxPasteboard pasteboard{workspace};
  Subscription wanted = pasteboard.want(Pasteboard::Wants::text);
  std::unique_ptr<SelectionOwner> program;

  void copyWith(const std::function<void(SelectionOwner&)>& offer) {
    const std::int64_t before = pasteboard.changeCount();
    auto next = std::make_unique<SelectionOwner>();
    offer(*next);
    next->own();
    EXPECT_TRUE(waitUntil([&] { return pasteboard.changeCount() > before; }));
    program = std::move(next);
    runFor(std::chrono::milliseconds(30));
  }
  void copy(const std::string& text) {
    copyWith([&](SelectionOwner& owner) { owner.offer("UTF8_STRING", text); });
  }
  void copyRich(const std::optional<std::string>& text) {
    copyWith([&](SelectionOwner& owner) {
      owner.offer("text/rtf", "{\\rtf1 x}");
      if (text) owner.offer("UTF8_STRING", *text);
    });
  }
  void copyConcealed(const std::string& text) {
    copyWith([&](SelectionOwner& owner) {
      owner.offer("UTF8_STRING", text).offer("text/rtf", "{}").offer("x-kde-passwordManagerHint", "secret");
    });
  }
  void copyPicture() {
    copyWith([&](SelectionOwner& owner) { owner.offer("image/png", "\x89PNG"); });
  }
};

template <typename Harness>
class PasteboardContract : public testing::Test, public Harness {};

using Harnesses = testing::Types<OnMemory, OnLinux>;
TYPED_TEST_SUITE(PasteboardContract, Harnesses);

TYPED_TEST(PasteboardContract, ACopyCountsAndCanBeRead) {
  const auto before = this->pasteboard.changeCount();
  this->copy("Grüße, 世界");
  EXPECT_GT(this->pasteboard.changeCount(), before);
  EXPECT_EQ(this->pasteboard.string(), "Grüße, 世界");
  EXPECT_FALSE(this->pasteboard.hasRichText());
  EXPECT_FALSE(this->pasteboard.isConcealed());
}

TYPED_TEST(PasteboardContract, TheSameTextAgainCountsAgain) {
  this->copy("twice");
  const auto before = this->pasteboard.changeCount();
  this->copy("twice");
  EXPECT_GT(this->pasteboard.changeCount(), before);
}

TYPED_TEST(PasteboardContract, ReadingChangesNothing) {
  this->copy("still");
  const auto before = this->pasteboard.changeCount();
  EXPECT_EQ(this->pasteboard.string(), "still");
  EXPECT_EQ(this->pasteboard.string(), "still");
  EXPECT_EQ(this->pasteboard.changeCount(), before);
}

TYPED_TEST(PasteboardContract, AnEmptyTextIsAText) {
  this->copy("");
  EXPECT_EQ(this->pasteboard.string(), "");
}

TYPED_TEST(PasteboardContract, FormattedTextIsRichAndHasItsPlainText) {
  this->copyRich("plain");
  EXPECT_TRUE(this->pasteboard.hasRichText());
  EXPECT_EQ(this->pasteboard.string(), "plain");
}

TYPED_TEST(PasteboardContract, FormattedTextMayLackAPlainText) {
  this->copyRich(std::nullopt);
  EXPECT_TRUE(this->pasteboard.hasRichText());
  EXPECT_EQ(this->pasteboard.string(), std::nullopt);
}

TYPED_TEST(PasteboardContract, APictureCountsAndHasNoText) {
  const auto before = this->pasteboard.changeCount();
  this->copyPicture();
  EXPECT_GT(this->pasteboard.changeCount(), before);
  EXPECT_EQ(this->pasteboard.string(), std::nullopt);
  EXPECT_FALSE(this->pasteboard.hasRichText());
}

TYPED_TEST(PasteboardContract, ASecretCountsButIsNeitherTextNorRich) {
  const auto before = this->pasteboard.changeCount();
  this->copyConcealed("hunter2");
  EXPECT_GT(this->pasteboard.changeCount(), before);
  EXPECT_TRUE(this->pasteboard.isConcealed());
  EXPECT_EQ(this->pasteboard.string(), std::nullopt);
  EXPECT_FALSE(this->pasteboard.hasRichText());
}

TYPED_TEST(PasteboardContract, WhatFollowsASecretIsReadAgain) {
  this->copyConcealed("hunter2");
  this->copy("open");
  EXPECT_FALSE(this->pasteboard.isConcealed());
  EXPECT_EQ(this->pasteboard.string(), "open");
}

TYPED_TEST(PasteboardContract, AnOwnTextCountsAndIsReadableAtOnce) {
  this->copyRich("styled");
  const auto before = this->pasteboard.changeCount();
  this->pasteboard.clearContents();
  this->pasteboard.setString("own");
  EXPECT_GT(this->pasteboard.changeCount(), before);
  EXPECT_EQ(this->pasteboard.string(), "own");
  EXPECT_FALSE(this->pasteboard.hasRichText());
}

TYPED_TEST(PasteboardContract, ClearingCountsAndLeavesNothing) {
  this->copyRich("styled");
  const auto before = this->pasteboard.changeCount();
  this->pasteboard.clearContents();
  EXPECT_GT(this->pasteboard.changeCount(), before);
  EXPECT_EQ(this->pasteboard.string(), std::nullopt);
  EXPECT_FALSE(this->pasteboard.hasRichText());
}

TYPED_TEST(PasteboardContract, TheSourceIsTheApplicationInFrontOfTheCopy) {
  this->copy("from the editor");
  ASSERT_TRUE(this->pasteboard.sourceApplication());
  EXPECT_EQ(this->pasteboard.sourceApplication()->name, "Editor");
}

}  // namespace
}  // namespace harbor
