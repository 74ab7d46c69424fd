// Test entry point: a headless Qt application with pinned fonts, so that text results do not depend
// on what else is installed on the machine.
#include <QFontDatabase>
#include <QGuiApplication>
#ifdef VXSVG_TEST_WIDGETS
#include <QApplication>
#endif
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

void RegisterTestFonts()
{
  static const char *const Fonts[] = {
    "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf",
    "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf",
    "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf",
    "/usr/share/fonts/truetype/liberation2/LiberationSans-Regular.ttf",
    "/usr/share/fonts/truetype/liberation2/LiberationSerif-Regular.ttf",
    "/usr/share/fonts/truetype/liberation2/LiberationMono-Regular.ttf",
  };
  for (const char *File : Fonts)
    QFontDatabase::addApplicationFont(QString::fromLatin1(File));
}

} // namespace

int main(int argc, char **argv)
{
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  setenv("VXSVG_TEST_DATA", VXSVG_SOURCE_DIR "/tests/data", 0);
  setenv("VXSVG_EXAMPLES", VXSVG_SOURCE_DIR "/examples", 0);
#ifdef VXSVG_TEST_WIDGETS
  QApplication App(argc, argv);
#else
  QGuiApplication App(argc, argv);
#endif
  RegisterTestFonts();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
