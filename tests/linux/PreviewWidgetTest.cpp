#include "platform/linux/PreviewWidget.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTest>

#include "OffscreenApplication.h"

namespace harbor {
namespace {

class PreviewWidgetTest : public testing::Test {
 protected:
  QString textOf(const QString& text) {
    PreviewContent content;
    content.text = text;
    widget.finish(widget.begin(FileUrl{"/a/name", false}), content);
    EXPECT_TRUE(runUntil(
        [&] { return edit.toPlainText().remove('\n').size() == QString(text).remove('\n').size(); }));
    return edit.toPlainText();
  }

  QStringList labels() const {
    QStringList texts;
    for (const QLabel* const label : widget.findChildren<QLabel*>())
      texts += label->text();
    return texts;
  }

  QApplication& application = offscreenApplication();
  PreviewWidget widget;
  QPlainTextEdit& edit = *widget.findChild<QPlainTextEdit*>();
};

TEST_F(PreviewWidgetTest, ShowsNothingOfAFileThatIsNoLongerAskedFor) {
  PreviewContent first, second;
  first.facts = "first";
  second.facts = "second";
  const int early = widget.begin(FileUrl{"/a/early", false});
  const int late = widget.begin(FileUrl{"/a/late", false});
  widget.finish(late, second);
  widget.finish(early, first);
  EXPECT_TRUE(labels().contains("second"));
  EXPECT_FALSE(labels().contains("first"));
  EXPECT_EQ(widget.windowTitle(), "late");
}

TEST_F(PreviewWidgetTest, ShowsShortLinesAsTheyAre) {
  EXPECT_EQ(textOf("one\n\ntwo\n"), "one\n\ntwo\n");
}

TEST_F(PreviewWidgetTest, BreaksLinesThatWouldTakeLongToLayOut) {
  for (const QString& line : textOf(QString("a") + QString(QChar(0x301)).repeated(5000)).split('\n'))
    EXPECT_LE(line.size(), 200);
  // Pairs of code units stay together.
  EXPECT_FALSE(
      textOf("x" + QString::fromUtf8("\U0001F600").repeated(500)).contains(QChar::ReplacementCharacter));
  for (const QString& line : edit.toPlainText().split('\n'))
    EXPECT_TRUE(line.isEmpty() || !line.back().isHighSurrogate());
}

TEST_F(PreviewWidgetTest, LetsOtherEventsThroughWhileALongTextIsShown) {
  PreviewContent content;
  content.text = QString("a line of text\n").repeated(4000);
  widget.finish(widget.begin(FileUrl{"/a/long", false}), content);
  int turns = 0;
  QTimer other;
  QObject::connect(&other, &QTimer::timeout, [&] { ++turns; });
  other.start(0);
  ASSERT_TRUE(runUntil([&] { return edit.document()->characterCount() > content.text.size(); }));
  EXPECT_GT(turns, 50);
  EXPECT_EQ(edit.toPlainText(), content.text);
  // The next file does not get the rest of this one.
  widget.finish(widget.begin(FileUrl{"/a/long", false}), content);
  EXPECT_EQ(textOf("short"), "short");
}

TEST_F(PreviewWidgetTest, ScalesAPictureDownButNeverUp) {
  widget.resize(300, 260);
  widget.show();
  const auto redPixels = [&](QSize size) {
    PreviewContent content;
    content.picture = QImage(size, QImage::Format_RGB32);
    content.picture.fill(Qt::red);
    widget.finish(widget.begin(FileUrl{"/a/picture", false}), content);
    const QImage shown = widget.grab().toImage();
    int count = 0;
    for (int y = 0; y < shown.height(); ++y) {
      for (int x = 0; x < shown.width(); ++x)
        count += shown.pixelColor(x, y) == QColor(Qt::red);
    }
    return count;
  };
  EXPECT_EQ(redPixels({20, 30}), 20 * 30);
  const int scaled = redPixels({4000, 1000});
  EXPECT_GT(scaled, 200 * 50);
  EXPECT_LT(scaled, 300 * 80);
}

TEST_F(PreviewWidgetTest, StandsBesideTheWindowWhereThereIsRoom) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  widget.resize(300, 260);
  QWidget window;
  window.setGeometry(screen.left(), 100, 400, 300);
  window.show();
  widget.placeBeside(window);
  EXPECT_GT(widget.geometry().left(), window.geometry().right());
  window.setGeometry(screen.right() - 400, 100, 400, 300);
  widget.placeBeside(window);
  EXPECT_LT(widget.geometry().right(), window.geometry().left());
}

TEST_F(PreviewWidgetTest, StandsAboveTheMiddleOfAWideWindowAndOnTheScreen) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  widget.resize(300, 260);
  QWidget window;
  window.setGeometry(screen.left() + 20, screen.top() + 20, screen.width() - 40, 400);
  window.show();
  widget.placeBeside(window);
  EXPECT_NEAR(widget.geometry().center().x(), window.geometry().center().x(), 2);
  EXPECT_NEAR(widget.geometry().center().y(), window.geometry().center().y(), 2);
  window.setGeometry(screen.left() + 20, screen.bottom() - 20, screen.width() - 40, 400);
  widget.placeBeside(window);
  EXPECT_TRUE(screen.contains(widget.geometry()));
}

TEST_F(PreviewWidgetTest, SpaceAndEscapeClose) {
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Escape}) {
    widget.show();
    QTest::keyClick(&widget, key);
    EXPECT_FALSE(widget.isVisible());
  }
}

}  // namespace
}  // namespace harbor
