#include "base/Observers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace harbor {
namespace {

using testing::ElementsAre;

TEST(Observers, CallsTheHandlersInTheOrderOfTheirComing) {
  Observers<> observers;
  std::vector<int> calls;
  const Subscription first = observers.add([&] { calls.push_back(1); });
  const Subscription second = observers.add([&] { calls.push_back(2); });
  observers.notify();
  EXPECT_THAT(calls, ElementsAre(1, 2));
}

TEST(Observers, HandsEachHandlerTheValues) {
  Observers<const std::string&, int> observers;
  std::string text;
  const Subscription first = observers.add([&](const std::string& word, int times) {
    for (int i = 0; i < times; ++i)
      text += word;
  });
  const Subscription second = observers.add([&](const std::string& word, int) { text += "," + word; });
  observers.notify("ab", 2);
  EXPECT_EQ(text, "abab,ab");
}

TEST(Observers, ADroppedSubscriptionEndsTheCalls) {
  Observers<> observers;
  int calls = 0;
  Subscription subscription = observers.add([&] { ++calls; });
  EXPECT_EQ(observers.count(), 1u);
  subscription.reset();
  observers.notify();
  EXPECT_EQ(calls, 0);
  EXPECT_TRUE(observers.isEmpty());
}

TEST(Observers, AHandlerThatEndsWhileTheyAreCalledIsNotCalled) {
  Observers<> observers;
  std::vector<int> calls;
  Subscription second;
  const Subscription first = observers.add([&] {
    calls.push_back(1);
    second.reset();
  });
  second = observers.add([&] { calls.push_back(2); });
  const Subscription third = observers.add([&] { calls.push_back(3); });
  observers.notify();
  EXPECT_THAT(calls, ElementsAre(1, 3));
}

TEST(Observers, AHandlerThatComesWhileTheyAreCalledWaitsForTheNextEvent) {
  Observers<> observers;
  int calls = 0;
  std::vector<Subscription> added;
  const Subscription first = observers.add([&] { added.push_back(observers.add([&] { ++calls; })); });
  observers.notify();
  EXPECT_EQ(calls, 0);
  observers.notify();
  EXPECT_EQ(calls, 1);
}

TEST(Observers, AHandlerMayEndItself) {
  Observers<> observers;
  std::string said;
  Subscription subscription;
  // What the handler captured is used after its end.
  subscription = observers.add([&, words = std::string(100, 'a')] {
    subscription.reset();
    said += words;
  });
  observers.notify();
  observers.notify();
  EXPECT_EQ(said, std::string(100, 'a'));
}

TEST(Observers, ADroppedHandlerMayHoldTheSubscriptionOfAnother) {
  Observers<> observers;
  int calls = 0;
  auto inner = std::make_shared<Subscription>(observers.add([&] { ++calls; }));
  Subscription outer = observers.add([held = std::move(inner)] {});
  outer.reset();
  EXPECT_TRUE(observers.isEmpty());
  observers.notify();
  EXPECT_EQ(calls, 0);
}

TEST(Observers, ASubscriptionMayOutliveThem) {
  auto observers = std::make_optional<Observers<>>();
  Subscription subscription = observers->add([] {});
  observers.reset();
  subscription.reset();
  EXPECT_FALSE(subscription);
}

TEST(Observers, AHandlerMayDestroyThem) {
  auto observers = std::make_unique<Observers<>>();
  int calls = 0;
  const Subscription first = observers->add([&] { observers.reset(); });
  const Subscription second = observers->add([&] { ++calls; });
  observers->notify();
  EXPECT_EQ(calls, 1);
}

TEST(Observers, ReportNothingOnceTheyAreDestroyed) {
  int reports = 0;
  auto observers = std::make_unique<Observers<>>([&] { ++reports; });
  Subscription second;
  const Subscription first = observers->add([&] {
    observers.reset();
    second.reset();
  });
  second = observers->add([] {});
  observers->notify();
  EXPECT_EQ(reports, 2);
}

TEST(Observers, ReportThatAHandlerCameOrWent) {
  std::vector<std::size_t> counts;
  std::optional<Observers<>> observers;
  observers.emplace([&] { counts.push_back(observers->count()); });
  Subscription first = observers->add([] {});
  Subscription second = observers->add([] {});
  first.reset();
  EXPECT_THAT(counts, ElementsAre(1, 2, 1));

  observers.reset();
  second.reset();
  EXPECT_THAT(counts, ElementsAre(1, 2, 1));
}

}  // namespace
}  // namespace harbor
