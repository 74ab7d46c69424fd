#pragma once
// Pictures that strangers may send, generated in code: the hostile tests load some of them, and the
// measurement program (tests/tools/HostileMeasure.cpp) runs all of them through the command-line
// program and reports CPU time and peak memory.
#include <QDir>
#include <QImage>
#include <QRgb>
#include <QString>

#include <vector>

namespace vxtest {

// The colour of the picture that lies outside every picture's folder: no output may show it.
inline constexpr QRgb SecretColor = 0xFF13579B;

struct THostilePicture
{
  const char *Name;
  // Writes the picture, and the files it names, into Folder (fresh and empty); answers the
  // picture's file name. Folder/outside/secret.png is the secret, beside the picture's own folder.
  QString (*Make)(const QDir &Folder);
  // Whether the picture names files outside its folder (its output is checked for the secret).
  bool ReachesOut = false;
};

// The earlier hostile set (bombs, cycles, absurd values) and the second round: files outside the
// folder, costs that grow faster than the input, memory, saves that did not load again.
const std::vector<THostilePicture> &HostilePictures();
const THostilePicture &HostilePicture(const char *Name);
// Whether Image shows the secret colour anywhere.
bool ShowsSecret(const QImage &Image);

} // namespace vxtest
