// GoogleTest's main with the QApplication that widgets need. The tests run
// offscreen unless QT_QPA_PLATFORM says otherwise (test discovery runs this
// binary too, without CTest's environment).
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // Qt wants a private runtime directory, and only complains without one.
  if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) {
    const std::string runtime_dir = "/tmp/veld-qt-runtime-" + std::to_string(getuid());
    mkdir(runtime_dir.c_str(), 0700);  // kept from run to run
    qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(runtime_dir));
  }
  QApplication app(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
