// The main function of a test program with actions, which need an application. Named as a source in its CMakeLists.txt.

#include <QGuiApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication App(argc, argv);
  return RUN_ALL_TESTS();
}
