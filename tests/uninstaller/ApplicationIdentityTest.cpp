#include "uninstaller/ApplicationIdentity.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/icu/IcuText.h"

namespace harbor {
namespace {

using Strings = std::vector<std::string>;

const IcuText kText;

BundleInformation bundle(std::optional<std::string> name, std::optional<std::string> identifier) {
  BundleInformation information;
  information.name = std::move(name);
  information.identifier = std::move(identifier);
  return information;
}

bool matches(const BundleInformation& information, std::string_view entryName) {
  return ApplicationMatcher(applicationIdentity(information, kText), kText).matchesApplication(entryName);
}

TEST(ApplicationIdentity, TakesTheNamesInOrderAndTheIdentifierLast) {
  const BundleInformation information{"Display", "Name", "executable", "Localised", "com.example.Widget"};
  const auto identity = applicationIdentity(information, kText);
  EXPECT_EQ(identity.names, (Strings{"Display", "Name", "executable", "Localised", "com.example.Widget"}));
}

TEST(ApplicationIdentity, ComparesALowerCasedCandidateWithEntriesInTheirOwnCase) {
  const BundleInformation information{"Widget", "Widget", "widget", std::nullopt, std::nullopt};
  EXPECT_EQ(applicationIdentity(information, kText).names, (Strings{"Widget", "Widget", "widget"}));
  const BundleInformation lower{"widget", "WIDGET", "widget", std::nullopt, std::nullopt};
  EXPECT_EQ(applicationIdentity(lower, kText).names, Strings{"widget"});
}

TEST(ApplicationIdentity, AppendsTheLocalisedNameWithoutADuplicateTest) {
  const BundleInformation information{"widget", std::nullopt, std::nullopt, "widget", std::nullopt};
  EXPECT_EQ(applicationIdentity(information, kText).names, (Strings{"widget", "widget"}));
}

TEST(ApplicationIdentity, SplitsTheIdentifierAtTheComponentThatNamesTheApplication) {
  const auto simple = applicationIdentity(bundle("Widget", "com.example.Widget"), kText);
  EXPECT_EQ(simple.bundlePrefix, "com.example");
  EXPECT_EQ(simple.bundleTail, Strings{"Widget"});
  const auto deeper = applicationIdentity(bundle("Widget", "com.example.tools.Widget"), kText);
  EXPECT_EQ(deeper.bundlePrefix, "com.example.tools");
  EXPECT_EQ(deeper.bundleTail, Strings{"Widget"});
}

TEST(ApplicationIdentity, CutsAtTheThirdComponentWhenNoneNamesTheApplication) {
  const auto identity = applicationIdentity(bundle("Other", "com.example.tools.Widget"), kText);
  EXPECT_EQ(identity.bundlePrefix, "com.example");
  EXPECT_EQ(identity.bundleTail, (Strings{"tools", "Widget"}));
}

TEST(ApplicationIdentity, KeepsEmptyComponents) {
  const auto identity = applicationIdentity(bundle(std::nullopt, "com..Widget"), kText);
  EXPECT_EQ(identity.bundlePrefix, "com.");
  EXPECT_EQ(identity.bundleTail, Strings{"Widget"});
}

TEST(ApplicationIdentity, HasNoPrefixForAnIdentifierOfTwoComponents) {
  const auto identity = applicationIdentity(bundle("Widget", "example.Widget"), kText);
  EXPECT_FALSE(identity.bundlePrefix);
  EXPECT_FALSE(identity.bundleTail);
  EXPECT_EQ(identity.names, (Strings{"Widget", "example.Widget"}));
  EXPECT_FALSE(matches(bundle("Gadget", "example.Widget"), "org.example.Widget.plist"));
  EXPECT_TRUE(matches(bundle("Gadget", "example.Widget"), "example.widget.plist"));
}

TEST(ApplicationIdentity, HasNeitherPrefixNorIdentifierWithoutOne) {
  for (const auto& identifier : {std::optional<std::string>(), std::optional<std::string>("")}) {
    const auto identity = applicationIdentity(bundle("Widget", identifier), kText);
    EXPECT_EQ(identity.names, Strings{"Widget"});
    EXPECT_FALSE(identity.bundlePrefix);
    EXPECT_FALSE(identity.bundleIdentifier);
  }
}

TEST(ApplicationMatcher, MatchesTheExamplesOfEachRule) {
  const auto widget = bundle("Widget", "com.example.Widget");
  EXPECT_TRUE(matches(widget, "com.example.Widget.plist"));
  EXPECT_TRUE(matches(widget, "Widget Helper"));
  EXPECT_TRUE(matches(widget, "org.com.example.Widget-Updater.agent"));
  EXPECT_FALSE(matches(widget, "org.com.example.Gadget"));
}

TEST(ApplicationMatcher, TestsAPrefixNotAWholeWord) {
  EXPECT_TRUE(matches(bundle("Widget", std::nullopt), "Widget.plist"));
  EXPECT_TRUE(matches(bundle("Widget", std::nullopt), "WidgetPro.plist"));
  EXPECT_FALSE(matches(bundle("Widget", std::nullopt), "MyWidget.plist"));
}

TEST(ApplicationMatcher, IgnoresCaseExceptForTheBundlePrefix) {
  const auto widget = bundle("Widget", "com.example.Widget");
  EXPECT_TRUE(matches(widget, "COM.EXAMPLE.Widget-Agent.plist"));
  EXPECT_FALSE(matches(widget, "x.COM.EXAMPLE.Agent.Widget"));
  EXPECT_TRUE(matches(widget, "x.com.example.Agent.WIDGET"));
}

TEST(ApplicationMatcher, NeedsThreePiecesForTheBundlePrefix) {
  const auto widget = bundle("Gadget", "com.example.Widget");
  EXPECT_FALSE(matches(widget, "xcom.exampleWidget"));
  EXPECT_FALSE(matches(widget, "..xcom..exampleWidget.."));
  EXPECT_TRUE(matches(widget, "x.com.exampleWidget"));
}

TEST(ApplicationMatcher, LooksOnlyBehindTheFirstOccurrenceOfThePrefix) {
  const auto widget = bundle("Gadget", "com.example.Widget");
  EXPECT_FALSE(matches(widget, "Widget.Gadget.x.com.example"));
  EXPECT_TRUE(matches(widget, "a.com.example.b.gadget"));
}

TEST(ApplicationMatcher, AnEmptyNameMatchesEverything) {
  EXPECT_TRUE(matches(bundle("", std::nullopt), "anything"));
  EXPECT_TRUE(matches(bundle("", std::nullopt), "\xff"));
}

TEST(ApplicationMatcher, WholeNamesAreNotComparedByTheirBeginning) {
  BundleInformation information{"Widget Maker", "wm", "widget", std::nullopt, "widget", {"widget", "wm"}};
  EXPECT_EQ(applicationIdentity(information, kText).names, Strings{"Widget Maker"});
  for (const char* name : {"widget", "WIDGET", "Widget.conf", "wm", "wm.", "widget maker 2"})
    EXPECT_TRUE(matches(information, name)) << name;
  for (const char* name : {"widgets", "widget-2", "widgetrc", "wmaker", ".wm", "my widget", ""})
    EXPECT_FALSE(matches(information, name)) << name;
  information.wholeNames = {"cafe\u0301", ""};
  EXPECT_TRUE(matches(information, "CAF\u00c9.db"));
  EXPECT_FALSE(matches(information, "cafe"));
  EXPECT_FALSE(matches(information, ".hidden"));
}

TEST(ApplicationMatcher, NothingMatchesAnApplicationWithoutNames) {
  EXPECT_FALSE(matches(BundleInformation{}, "anything"));
}

TEST(ApplicationMatcher, ComparesWholeGraphemeClusters) {
  EXPECT_TRUE(matches(bundle("Cafe\u0301", std::nullopt), "caf\u00e9 prefs"));
  EXPECT_TRUE(matches(bundle("CAF\u00c9", std::nullopt), "cafe\u0301.plist"));
  EXPECT_FALSE(matches(bundle("Cafe", std::nullopt), "cafe\u0301.plist"));
  EXPECT_FALSE(matches(bundle("\U0001F468", std::nullopt), "\U0001F468\u200D\U0001F469"));
  EXPECT_FALSE(matches(bundle("a\r", std::nullopt), "a\r\nb"));
}

TEST(ApplicationMatcher, KeepsBytesThatAreNotUtf8) {
  EXPECT_TRUE(matches(bundle("Widget", std::nullopt), "widget\xff"));
  EXPECT_FALSE(matches(bundle("Widget", std::nullopt), "\xffwidget"));
}

// The matching rule once more, slow and obvious: every step on lists of clusters.
class ObviousMatcher {
 public:
  explicit ObviousMatcher(ApplicationIdentity identity) : identity_(std::move(identity)) {}

  bool matches(const std::string& entry) const {
    const Strings lowered = clusters(kText.lowercased(entry));
    for (const std::string& name : identity_.wholeNames) {
      const Strings whole = clusters(kText.lowercased(name));
      const bool isBefore = !whole.empty() && indexOf(lowered, whole) == 0u;
      if (isBefore && (lowered.size() == whole.size() || lowered[whole.size()] == ".")) return true;
    }
    for (const std::string& name : identity_.names) {
      if (indexOf(lowered, clusters(kText.lowercased(name))) == 0u) return true;
    }
    if (!identity_.bundlePrefix) return false;
    int pieces = 0;
    std::string piece;
    for (const char character : entry + ".") {
      if (character == '.') {
        pieces += piece.empty() ? 0 : 1;
        piece.clear();
      } else {
        piece += character;
      }
    }
    if (pieces < 3) return false;
    const Strings own = clusters(entry);
    const Strings prefix = clusters(*identity_.bundlePrefix);
    const auto found = indexOf(own, prefix);
    if (!found) return false;
    std::string tail;
    for (std::size_t i = *found + prefix.size(); i < own.size(); ++i)
      tail += own[i];
    const Strings rest = clusters(kText.lowercased(tail));
    Strings candidates = *identity_.bundleTail;
    candidates.insert(candidates.end(), identity_.names.begin(), identity_.names.end());
    for (const std::string& candidate : candidates) {
      if (indexOf(rest, clusters(kText.lowercased(candidate)))) return true;
    }
    return false;
  }

 private:
  static Strings clusters(const std::string& text) {
    Strings result;
    const std::string composed = kText.canonical(text);
    for (const auto cluster : kText.graphemeClusters(composed))
      result.emplace_back(cluster);
    return result;
  }
  static std::optional<std::size_t> indexOf(const Strings& text, const Strings& part) {
    for (std::size_t i = 0; i + part.size() <= text.size(); ++i) {
      bool same = true;
      for (std::size_t j = 0; j < part.size(); ++j)
        same = same && text[i + j] == part[j];
      if (same) return i;
    }
    return std::nullopt;
  }

  ApplicationIdentity identity_;
};

TEST(ApplicationMatcher, AgreesWithAnObviousImplementationOnRandomNames) {
  const Strings atoms{"a",
                      "B",
                      "b",
                      ".",
                      ".",
                      "wid",
                      "WID",
                      "com.ex",
                      "Com.Ex",
                      " ",
                      "-",
                      "\u00e9",
                      "e\u0301",
                      "\u0130",
                      "\u03a3",
                      "\u03c3",
                      "\U0001F468\u200D\U0001F469",
                      "\u0301",
                      "\r",
                      "\n",
                      "\xff",
                      "\u1E9E"};
  std::mt19937 random(20240611);
  const auto text = [&](int most) {
    std::string result;
    for (int count = std::uniform_int_distribution<>(0, most)(random); count > 0; --count) {
      result += atoms[std::uniform_int_distribution<std::size_t>(0, atoms.size() - 1)(random)];
    }
    return result;
  };
  const auto maybe = [&](std::string value) {
    return std::uniform_int_distribution<>(0, 2)(random) == 0 ? std::nullopt
                                                              : std::optional(std::move(value));
  };
  int matched = 0;
  constexpr int kRounds = 30'000;
  for (int i = 0; i < kRounds; ++i) {
    const std::string identifier = "com.ex." + text(3);
    BundleInformation information{maybe("w" + text(2)), maybe("b" + text(2)), std::nullopt, std::nullopt,
                                  maybe(identifier)};
    if (i % 2 == 0) information.wholeNames = {"a" + text(2), text(2)};
    const auto identity = applicationIdentity(information, kText);
    const ApplicationMatcher matcher(identity, kText);
    const ObviousMatcher obvious(identity);
    const std::string entry = (i % 3 == 0 ? text(2) + ".com.ex" : std::string()) + text(5);
    const bool expected = obvious.matches(entry);
    matched += expected ? 1 : 0;
    ASSERT_EQ(matcher.matchesApplication(entry), expected)
        << "entry \"" << entry << "\", identifier " << identifier;
  }
  EXPECT_GT(matched, kRounds / 50);
  EXPECT_LT(matched, kRounds * 9 / 10);
}

}  // namespace
}  // namespace harbor
