#include "platform/linux/LinuxAlertPanel.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include "OffscreenApplication.h"

namespace harbor {
namespace {

class LinuxAlertPanelTest : public testing::Test {
 protected:
  // Shows the alert and does something to it as soon as it is up.
  AlertResult run(const Alert& alert, const std::function<void(QMessageBox&)>& user) {
    QTimer::singleShot(0, &application, [&] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      wasUp = modalWindows.isUp();
      user(*box);
    });
    return panel.run(alert);
  }
  static QAbstractButton& button(QMessageBox& box, const QString& text) {
    for (QAbstractButton* const each : box.buttons()) {
      if (each->text() == text) return *each;
    }
    throw std::runtime_error("no such button");
  }

  QApplication& application = offscreenApplication();
  UserTime userTime{nullptr};
  ModalWindows modalWindows{userTime};
  LinuxAlertPanel panel{modalWindows, userTime};
  bool wasUp = false;
  const Alert confirmation{"Clear Clipboard", "Sure?", {"Clear", "Cancel"}, std::nullopt};
  const Alert welcome{"Welcome", "Text", {"OK"}, "Do not show again"};
};

TEST_F(LinuxAlertPanelTest, ReturnsTheButtonThatEndedIt) {
  EXPECT_EQ(run(confirmation, [](QMessageBox& box) { button(box, "Clear").click(); }).button, 0);
  EXPECT_EQ(run(confirmation, [](QMessageBox& box) { button(box, "Cancel").click(); }).button, 1);
}

TEST_F(LinuxAlertPanelTest, BearsTheIconOfTheProgram) {
  QPixmap icon(64, 64);
  icon.fill(Qt::green);
  QApplication::setWindowIcon(icon);
  run(welcome, [](QMessageBox& box) {
    EXPECT_EQ(box.iconPixmap().toImage().pixelColor(5, 5), QColor(Qt::green));
    box.accept();
  });
  QApplication::setWindowIcon({});
}

TEST_F(LinuxAlertPanelTest, MakesTheFirstButtonTheDefaultOne) {
  run(confirmation, [](QMessageBox& box) {
    EXPECT_EQ(box.defaultButton(), &button(box, "Clear"));
    box.reject();
  });
}

TEST_F(LinuxAlertPanelTest, TakesEscapeAndClosingForTheLastButton) {
  EXPECT_EQ(run(confirmation, [](QMessageBox& box) { box.close(); }).button, 1);
  EXPECT_EQ(run(confirmation,
                [](QMessageBox& box) {
                  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
                  QApplication::sendEvent(&box, &escape);
                })
                .button,
            1);
  EXPECT_EQ(run(welcome, [](QMessageBox& box) { box.close(); }).button, 0);
}

TEST_F(LinuxAlertPanelTest, ReportsTheBox) {
  EXPECT_FALSE(run(welcome, [](QMessageBox& box) { button(box, "OK").click(); }).suppressionTicked);
  EXPECT_TRUE(run(welcome, [](QMessageBox& box) {
                ASSERT_EQ(box.checkBox()->text(), "Do not show again");
                box.checkBox()->setChecked(true);
                button(box, "OK").click();
              }).suppressionTicked);
  run(confirmation, [](QMessageBox& box) {
    EXPECT_EQ(box.checkBox(), nullptr);
    box.close();
  });
}

TEST_F(LinuxAlertPanelTest, ShowsTextAsText) {
  run({"<b>Title</b> & more", "<i>Text</i>", {"Cut & Paste"}, std::nullopt}, [](QMessageBox& box) {
    EXPECT_EQ(box.text(), "<b>Title</b> & more");
    for (const QLabel* const label : box.findChildren<QLabel*>())
      EXPECT_EQ(label->textFormat(), Qt::PlainText);
    button(box, "Cut && Paste").click();
  });
}

TEST_F(LinuxAlertPanelTest, IsAWindowOfItsOwnForTheTaskBar) {
  run(welcome, [](QMessageBox& box) {
    EXPECT_EQ(box.windowType(), Qt::Window);
    EXPECT_EQ(box.windowModality(), Qt::ApplicationModal);
    box.close();
  });
}

TEST_F(LinuxAlertPanelTest, CountsAsUpOnlyWhileItIs) {
  EXPECT_FALSE(modalWindows.isUp());
  run(welcome, [](QMessageBox& box) { box.close(); });
  EXPECT_TRUE(wasUp);
  EXPECT_FALSE(modalWindows.isUp());
}

TEST_F(LinuxAlertPanelTest, HasNoAnswerWhenTheProgramEnds) {
  Alert alert = confirmation;
  alert.suppressionTitle = "Box";
  QTimer::singleShot(0, &application, [&] {
    const AlertResult result = run(alert, [](QMessageBox& box) {
      box.checkBox()->setChecked(true);
      QCoreApplication::exit(0);
    });
    EXPECT_EQ(result.button, std::nullopt);
    EXPECT_FALSE(result.suppressionTicked);
  });
  QApplication::exec();
}

}  // namespace
}  // namespace harbor
