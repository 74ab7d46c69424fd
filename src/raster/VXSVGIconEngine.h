#pragma once
// TVXSVGIconEngine: a QIcon that draws SVG pictures sharply at every size and device-pixel ratio.
// Each mode and state can have its own picture; a mode without one draws the normal picture with
// the look Qt gives that mode (disabled: grey and faded, selected: tinted with the highlight
// colour). Pixmaps it has made are kept in QPixmapCache. No exception leaves the engine: a picture
// that cannot be read draws nothing.
#include "platform/rtl/VXExport.h"
#include "values/VXSVGVocabulary.h"

#include <QByteArray>
#include <QIconEngine>
#include <QPixmap>
#include <QPixmapCache>

#include <map>
#include <memory>
#include <tuple>

namespace vx {

class TSVGImageFile;

class VX_EXPORT TVXSVGIconEngine : public QIconEngine
{
public:
  explicit TVXSVGIconEngine(TSVGOptions Options = DefaultSVGOptions);
  ~TVXSVGIconEngine() override;

  // The picture of Mode and State from SVG or gzip-compressed SVG data.
  void AddData(const QByteArray &Data, QIcon::Mode Mode, QIcon::State State);
  // True (the default) keeps the picture's proportions within the size asked for; false fills it.
  void SetKeepAspectRatio(bool Value);

  void paint(QPainter *Painter, const QRect &Rect, QIcon::Mode Mode, QIcon::State State) override;
  QPixmap pixmap(const QSize &Size, QIcon::Mode Mode, QIcon::State State) override;
  // Size is in device pixels, as QIcon asks for it; Scale becomes the pixmap's device-pixel ratio.
  QPixmap scaledPixmap(const QSize &Size, QIcon::Mode Mode, QIcon::State State, qreal Scale) override;
  QSize actualSize(const QSize &Size, QIcon::Mode Mode, QIcon::State State) override;
  void addFile(const QString &FileName, const QSize &Size, QIcon::Mode Mode, QIcon::State State) override;
  void addPixmap(const QPixmap &Pixmap, QIcon::Mode Mode, QIcon::State State) override;
  QIconEngine *clone() const override;
  QString key() const override;
  bool isNull() override;
  bool read(QDataStream &In) override;
  bool write(QDataStream &Out) const override;

private:
  using TKey = std::pair<int, int>;
  struct TSource
  {
    QByteArray Data;
    // Loaded on first use; nullptr after a failed load.
    std::unique_ptr<TSVGImageFile> Picture;
    bool Loaded = false;
  };

  // What draws Mode and State: its own picture (of either state), else a pixmap added for it, else
  // the normal picture, else any picture or pixmap. ExactMode is false when the mode's look is
  // still to be given.
  struct TChoice
  {
    TSource *Source = nullptr;
    QPixmap Pixmap;
    bool ExactMode = false;
  };
  TChoice Choose(QIcon::Mode Mode, QIcon::State State);
  TSVGImageFile *Picture(TSource &Source) const;
  QPixmap Render(const QSize &Size, QIcon::Mode Mode, QIcon::State State);
  // Drops the pixmaps this engine has put into the cache.
  void Changed();

  TSVGOptions FOptions;
  bool FKeepAspectRatio = true;
  std::map<TKey, TSource> FSources;
  std::map<TKey, QPixmap> FPixmaps;
  // The pixmaps this engine has made, by device size, mode and state, as QPixmapCache holds them.
  using TCacheKey = std::tuple<int, int, int, int>;
  std::map<TCacheKey, QPixmapCache::Key> FCacheKeys;
};

} // namespace vx
