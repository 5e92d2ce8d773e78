#include "platform/linux/DisplayText.h"

#include <gtest/gtest.h>

#include <QTextDocument>

namespace harbor {
namespace {

TEST(DisplayText, CutsToolTipsAtAThousandCharacters) {
  EXPECT_EQ(toolTipText(std::string(1000, 'x')).count('x'), 1000);
  const QString cut = toolTipText(std::string(1001, 'x'));
  EXPECT_EQ(cut.count('x'), 1000);
  EXPECT_TRUE(cut.endsWith(QChar(0x2026)));
}

TEST(DisplayText, CountsWhatAReaderCallsACharacter) {
  std::string flags;
  for (int each = 0; each < 1000; ++each)
    flags += "\U0001F1E6\U0001F1F9";
  EXPECT_FALSE(toolTipText(flags).contains(QChar(0x2026)));
}

TEST(DisplayText, BreaksLongLinesAfterSpacesWhereThereAreSome) {
  const QString words = toolTipText(std::string(60, 'a') + ' ' + std::string(60, 'b'));
  EXPECT_EQ(words, QString(60, 'a') + " \n" + QString(60, 'b'));
  for (const QString& line : toolTipText(std::string(950, 'x')).split('\n'))
    EXPECT_LE(line.size(), 100);
}

TEST(DisplayText, ShowsMarkUpInToolTipsAsText) {
  const QString tip = toolTipText("<b>bold</b> & <i>so</i>");
  QTextDocument document;
  document.setHtml(tip);
  EXPECT_EQ(document.toPlainText(), "<b>bold</b> & <i>so</i>");
  EXPECT_EQ(toolTipText("a < b & c"), "a < b & c");
}

TEST(DisplayText, LeavesNoNameReadBackwards) {
  EXPECT_EQ(withoutControls("report\u202egnp.exe"), "report gnp.exe");
  EXPECT_EQ(withoutControls("\u2067a\u2069 \u05e9\u05dc\u05d5\u05dd"),
            QString::fromUtf8(" a  \u05e9\u05dc\u05d5\u05dd"));
}

TEST(DisplayText, TurnsBytesThatAreNoTextIntoReplacementCharacters) {
  EXPECT_EQ(withoutControls("a\xff\nb"), QString("a") + QChar(0xfffd) + " b");
}

TEST(DisplayText, DoublesAmpersandsOnButtons) {
  EXPECT_EQ(withoutMnemonics("Cut & Paste"), "Cut && Paste");
}

}  // namespace
}  // namespace harbor
