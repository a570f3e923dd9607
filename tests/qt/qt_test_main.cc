// GoogleTest's main with the QApplication that widgets need. The tests run
// offscreen unless QT_QPA_PLATFORM says otherwise (test discovery runs this
// binary too, without CTest's environment).
#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
