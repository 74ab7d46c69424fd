// vxsvg-view: a picture viewer and inspector built on the vxsvg controls.
//   vxsvg-view [FILE]                          opens FILE (or nothing) in a window
//   vxsvg-view --screenshot OUT.png FILE [ID]  renders the window with FILE (ID selected) into OUT.png
#include "ViewerWindow.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

int main(int argc, char **argv)
{
  QApplication App(argc, argv);
  QStringList Args = App.arguments().mid(1);
  QString Screenshot;
  if (Args.size() >= 2 && Args[0] == QLatin1String("--screenshot")) {
    Screenshot = Args[1];
    Args = Args.mid(2);
  }
  vx::TViewerWindow Window;
  Window.resize(1080, 640);
  if (!Args.isEmpty())
    Window.OpenFile(Args[0]);
  if (Screenshot.isEmpty()) {
    Window.show();
    return App.exec();
  }
  vx::TSVGElement *Found = nullptr;
  if (Args.size() > 1 && Window.Document().SVG().AllItems().TryGetValue(Args[1], Found))
    Window.SelectElement(Found);
  Window.show();
  QApplication::processEvents();
  if (!Window.grab().save(Screenshot)) {
    std::fprintf(stderr, "vxsvg-view: cannot write %s\n", qPrintable(Screenshot));
    return 1;
  }
  return 0;
}
