#pragma once
// TVXSVGThreadImage: a control that shows an SVG picture without ever blocking the user interface.
// Loading and rasterising run as jobs on a server thread of its own; a paint only copies the last
// finished bitmap to the screen. The control owns its document, which comes from a file name or
// from text lines.
//
// Its state is the pair (document, bitmap): nothing loaded or a load queued (nil, nil); loaded and
// a paint queued (set, nil); shown (set, set), where a display change queues a paint and keeps the
// old picture until the new one is there; a reload under way (nil, set).
#include "components/VXSVGImageControls.h"
#include "jobs/VXSVGSyncObjs.h"
#include "platform/controls/VXControls.h"
#include "platform/geometry/VXTransform.h"
#include "platform/rtl/VXStringList.h"
#include "values/VXSVGViewBox.h"

#include <functional>
#include <memory>
#include <mutex>

namespace vx {

// What the control gives each document it shows. A copy travels with each rendering and is applied
// on the server thread, so the main thread never writes a document that a job may be drawing.
struct TSVGDocumentDefaults
{
  TSVGAlign Align = saXMidYMid;
  bool Defer = false;
  bool Slice = false;
  TSVGShapeRendering ShapeRendering = srnAuto;
  TSVGColorRendering ColorRendering = clrnAuto;
  TSVGTextRendering TextRendering = txrnAuto;
  TSVGColorInterpolation ColorInterpolation = sciSRGB;
  TSVGOptions Options = DefaultSVGOptions;
  int DPI = 96;

  void ApplyTo(TSVGDocument &Document) const;
};

class TVXSVGThreadImage : public TVXCustomTransparentGraphicControl, public IVXMatrixProvider
{
public:
  explicit TVXSVGThreadImage(QWidget *Parent = nullptr, TComponent *Owner = nullptr);
  // The server is ended first: a job that still runs finishes, is not handed back, and is freed
  // with its document reference; only then the bitmap and the document go.
  ~TVXSVGThreadImage() override;
  QString ClassName() const override { return QStringLiteral("TVXSVGThreadImage"); }
  static const TPropertyTable &Properties();
  const TPropertyTable *PublishedProperties() const override { return &Properties(); }

  // The transform's matrix, times the parent's absolute matrix when the parent provides one.
  TMatrix GetAbsoluteMatrix() const override;

  // --- content: a file name or text lines, whichever was set last ---
  const QString &Filename() const { return FFilename; }
  // A new name empties Lines and loads the file in the background. EFOpenError when it cannot be
  // opened (the old picture stays shown).
  void SetFilename(const QString &Value);
  TStrings &Lines() { return FLines; }
  // Any change of Lines empties Filename and loads the text in the background.
  void SetLines(const TStrings &Value) { FLines.Assign(&Value); }

  // --- display properties: a change queues a new rendering ---
  TSVGImageWrapMode WrapMode() const { return FWrapMode; }
  void SetWrapMode(TSVGImageWrapMode Value);
  float ScaleOriginal() const { return FScaleOriginal; }
  // Clamped to 0.01 .. 100.
  void SetScaleOriginal(float Value);
  int Quality() const { return FQuality; }
  // Supersampling factor of the bitmap, clamped to 1 .. 8: Quality squared the pixels.
  void SetQuality(int Value);
  const QString &SVGRootID() const { return FSVGRootID; }
  void SetSVGRootID(const QString &Value);
  int DPI() const { return FDPI; }
  void SetDPI(int Value);
  TSVGOptions Options() const { return FOptions; }
  void SetOptions(TSVGOptions Value);
  TSVGShapeRendering DefaultShapeRendering() const { return FDefaultShapeRendering; }
  void SetDefaultShapeRendering(TSVGShapeRendering Value);
  TSVGColorRendering DefaultColorRendering() const { return FDefaultColorRendering; }
  void SetDefaultColorRendering(TSVGColorRendering Value);
  TSVGTextRendering DefaultTextRendering() const { return FDefaultTextRendering; }
  void SetDefaultTextRendering(TSVGTextRendering Value);
  TSVGColorInterpolation DefaultColorInterpolation() const { return FDefaultColorInterpolation; }
  void SetDefaultColorInterpolation(TSVGColorInterpolation Value);
  // Given to every document the control loads and renders; a change loads the picture again.
  TSVGPreserveAspectRatio &DefaultAspectRatio() { return FDefaultAspectRatio; }

  // --- shown without a new rendering ---
  float Opacity() const { return FOpacity; }
  void SetOpacity(float Value);
  TVXTransform &Transform() { return FTransform; }

  // --- clicks and the cursor ---
  bool CursorTracking() const { return FCursorTracking; }
  void SetCursorTracking(bool Value);
  TSVGFindOptions FindOptions() const { return FFindOptions; }
  void SetFindOptions(TSVGFindOptions Value) { FFindOptions = Value; }
  // The cursor shown where the picture names none.
  void SetCursor(TCursor Value) override;
  // The element under the point of the control, as the finished bitmap shows it; nil before the
  // first picture is there, and while a rendering uses the document (the main thread never waits
  // for one).
  TSVGGraphicElement *ElementAt(int X, int Y);

  // The loaded document (nil until the first load has finished) and the finished picture (nil
  // until the first rendering has finished). Main thread only.
  TSVGDocument *SVG() const { return FSVG.get(); }
  const TVXGPBitmap *Bitmap() const { return FBitmap.get(); }
  // True from the moment a load or a rendering is queued until the newest one is handed back.
  bool Busy() const { return FNewestJob != nullptr; }

  TSVGElementClickEvent OnClickElement;
  // Told when Busy changes.
  TNotifyEvent OnBusyChange;

  // Queues a load of Filename or Lines, dropping every queued job and the loaded document.
  virtual void LoadSVG();
  // Queues a rendering of the loaded document at the control's size (a load when none is).
  virtual void UpdateBitmap();
  // Drops the queued jobs from the end of the queue, down to the first one of another class than
  // Job (all of them without Job), then queues Job. A new paint thus replaces trailing paints, and
  // a queued load stays and runs first.
  void ClearPendingJobs(TSVGServerJobPtr Job);

protected:
  virtual void CreateServerThread();
  // Lines or the aspect ratio changed: the bitmap goes and the picture is loaded again.
  virtual void ObjectChanged(TObject *Sender);
  virtual void DisplayPropertyChange();
  // Takes the finished job from the server: a load brings the document (and queues its
  // rendering), a paint brings the bitmap.
  virtual void JobComplete(TObject *Sender);
  virtual void DoElementClick(int X, int Y);
  virtual void SetCursorFromSVG(int X, int Y);
  // One blit of the finished bitmap, nothing more.
  virtual void DoPaint(TVXGPCanvas &Canvas);

  void Paint(QPainter &Painter) override;
  void Resize() override;
  void MouseMove(TShiftState Shift, int X, int Y) override;
  void MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y) override;

private:
  template <typename V>
  void SetDisplayProperty(V &Field, V Value);
  void BusyChanged(bool WasBusy);
  // Whether a fitted or stretched picture needs more pixels than the bitmap has at the control's size.
  bool BitmapTooSmall() const;
  TSVGDocumentDefaults Defaults() const;

  std::unique_ptr<TVXGPBitmap> FBitmap;
  std::unique_ptr<TSVGServerThread> FThread;
  TSVGDocumentPtr FSVG;
  TSVGImageWrapMode FWrapMode = iwFit;
  float FOpacity = 1.0f;
  TVXTransform FTransform;
  float FScaleOriginal = 1.0f;
  QString FFilename;
  TStringList FLines;
  QString FSVGRootID;
  TSVGPreserveAspectRatio FDefaultAspectRatio{saXMidYMid, false, false};
  TSVGShapeRendering FDefaultShapeRendering = srnAuto;
  TSVGColorRendering FDefaultColorRendering = clrnAuto;
  int FDPI = 96;
  TSVGTextRendering FDefaultTextRendering = txrnAuto;
  TSVGColorInterpolation FDefaultColorInterpolation = sciSRGB;
  TSVGOptions FOptions = DefaultSVGOptions;
  TSVGFindOptions FFindOptions;
  bool FCursorTracking = false;
  TCursor FDefaultCursor = crDefault;
  // Guards the bitmap between painting and the hand-over of jobs, for repaints from other threads.
  std::recursive_mutex FCriticalSection;
  int FQuality = 1;
  // The job queued last; only compared with the jobs handed back, never followed.
  const TSVGServerJob *FNewestJob = nullptr;
  // Held by the control's paint jobs while they draw the document, tried by hit testing.
  std::mutex FDocumentLock;
};

} // namespace vx
