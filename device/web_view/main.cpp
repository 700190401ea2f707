#include <unistd.h>

#include <QApplication>

#include "device/web_view/page_view.h"

namespace {

constexpr int DARK_BELOW = 128;  // of 255
constexpr char DARK_PAGES[] = "--blink-settings=preferredColorScheme=0";

// Before the engine starts, with the first page.
void AddEngineOption(const char* sOption) {
  constexpr char VARIABLE[] = "QTWEBENGINE_CHROMIUM_FLAGS";
  qputenv(VARIABLE, qgetenv(VARIABLE) + ' ' + sOption);
}

}  // namespace

int main(int argc, char** argv) {
  // The engine refuses to run as the super-user in its sandbox.
  if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
  QApplication Application(argc, argv);
  if (QApplication::palette().color(QPalette::Window).lightness() < DARK_BELOW) AddEngineOption(DARK_PAGES);
  const CPageView View;
  return QApplication::exec();
}
