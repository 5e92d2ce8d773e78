#include <gtest/gtest.h>

#include <QApplication>

// The toolkit itself shows nothing here: the classes under test talk to the X server of their test directly.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
