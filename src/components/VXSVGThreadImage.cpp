#include "components/VXSVGThreadImage.h"

#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGGraphicElement.h"
#include "values/VXSVGDataURI.h"

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

bool IsIdentity(const TMatrix &M)
{
  return VXMatrixEquals(M, VXIdentityMatrix, 0.00001f);
}

// The documented control gives every rendering its own aspect ratio, whatever the picture says; a
// picture read as browsers read it keeps the preserveAspectRatio it was written with.
bool DefaultAspectRatioOverridesPicture(TSVGOptions Options)
{
  return !Options.Contains(soStandardSVG);
}

// The control's paint job: it gives the document the control's settings on the server thread and
// holds the control's document lock while it draws, so that hit testing on the main thread never
// meets a document in the middle of a drawing.
class TThreadImagePaintJob : public TSVGPaintJob
{
public:
  TThreadImagePaintJob(TSVGDocumentPtr SVG, float Width, float Height, const TSVGDocumentDefaults &Defaults,
                       std::mutex &DocumentLock)
      : TSVGPaintJob(std::move(SVG), Width, Height), FDefaults(Defaults), FDocumentLock(DocumentLock)
  {
  }

  bool Execute() override
  {
    std::lock_guard Guard(FDocumentLock);
    if (SVG())
      FDefaults.ApplyTo(*SVG());
    return TSVGPaintJob::Execute();
  }

private:
  TSVGDocumentDefaults FDefaults;
  // The control ends the server before it goes, so the lock outlives every job that holds it.
  std::mutex &FDocumentLock;
};

// Loads the control's lines. They are text already, so they are read as text: a stream of their
// bytes would be decoded again by whatever encoding their XML declaration names.
class TTextLoadJob : public TSVGLoadJob
{
public:
  TTextLoadJob(QString Text, TSVGDocumentPtr SVG)
      : TSVGLoadJob(std::unique_ptr<QIODevice>(), std::move(SVG)), FText(std::move(Text))
  {
  }

  bool Execute() override
  {
    try {
      SVG()->LoadFromText(FText);
      return true;
    } catch (...) {
      return false;
    }
  }

private:
  QString FText;
};

} // namespace

void TSVGDocumentDefaults::ApplyTo(TSVGDocument &Document) const
{
  if (DefaultAspectRatioOverridesPicture(Options)) {
    Document.AspectRatio().SetAlign(Align);
    Document.AspectRatio().SetDefer(Defer);
    Document.AspectRatio().SetSlice(Slice);
  }
  Document.SetDefaultShapeRendering(ShapeRendering);
  Document.SetDefaultColorRendering(ColorRendering);
  Document.SetDefaultTextRendering(TextRendering);
  Document.SetDefaultColorInterpolation(ColorInterpolation);
  Document.SetOptions(Options);
  Document.SetDPI(DPI);
}

TVXSVGThreadImage::TVXSVGThreadImage(QWidget *Parent, TComponent *Owner)
    : TVXCustomTransparentGraphicControl(Parent, Owner)
{
  resize(100, 100);
  FTransform.OnChanged = [this](TObject *) { Invalidate(); };
  FLines.OnChange = [this](TObject *Sender) { ObjectChanged(Sender); };
  FDefaultAspectRatio.OnChange = [this](TObject *Sender) { ObjectChanged(Sender); };
}

TVXSVGThreadImage::~TVXSVGThreadImage()
{
  // No hand-over may reach a control that is going: a job that finishes now stays with the server,
  // which frees it with the queued ones. A running job keeps its document alive by its own
  // reference, so nothing it draws is freed under it.
  if (FThread)
    FThread->OnJobComplete = nullptr;
  FThread.reset();
  FLines.OnChange = nullptr;
  FDefaultAspectRatio.OnChange = nullptr;
  Destroying();
}

const TPropertyTable &TVXSVGThreadImage::Properties()
{
  using C = TVXSVGThreadImage;
  static const TPropertyTable Table(&TVXCustomTransparentGraphicControl::Properties(), {
    PublishedObject<C>(QStringLiteral("DefaultAspectRatio"), QStringLiteral("TSVGPreserveAspectRatio"),
                       [](C &Control) -> TPersistent & { return Control.DefaultAspectRatio(); }),
    PublishedValue<C>(QStringLiteral("DefaultColorInterpolation"), tkEnumeration,
                      QStringLiteral("TSVGColorInterpolation"), &C::DefaultColorInterpolation,
                      &C::SetDefaultColorInterpolation, StoredUnless<C>(&C::DefaultColorInterpolation, sciSRGB),
                      ColorInterpolationNames),
    PublishedValue<C>(QStringLiteral("DefaultColorRendering"), tkEnumeration, QStringLiteral("TSVGColorRendering"),
                      &C::DefaultColorRendering, &C::SetDefaultColorRendering,
                      StoredUnless<C>(&C::DefaultColorRendering, clrnAuto), ColorRenderingNames),
    PublishedValue<C>(QStringLiteral("DefaultShapeRendering"), tkEnumeration, QStringLiteral("TSVGShapeRendering"),
                      &C::DefaultShapeRendering, &C::SetDefaultShapeRendering,
                      StoredUnless<C>(&C::DefaultShapeRendering, srnAuto), ShapeRenderingNames),
    PublishedValue<C>(QStringLiteral("DefaultTextRendering"), tkEnumeration, QStringLiteral("TSVGTextRendering"),
                      &C::DefaultTextRendering, &C::SetDefaultTextRendering,
                      StoredUnless<C>(&C::DefaultTextRendering, txrnAuto), TextRenderingNames),
    PublishedValue<C>(QStringLiteral("DPI"), tkInteger, QStringLiteral("Integer"), &C::DPI, &C::SetDPI,
                      StoredUnless<C>(&C::DPI, 96)),
    PublishedValue<C>(QStringLiteral("Opacity"), tkFloat, QStringLiteral("Single"), &C::Opacity, &C::SetOpacity,
                      StoredUnless<C>(&C::Opacity, 1.0f)),
    PublishedValue<C>(QStringLiteral("Options"), tkSet, QStringLiteral("TSVGOptions"), &C::Options, &C::SetOptions,
                      StoredUnless<C>(&C::Options, DefaultSVGOptions), OptionNames),
    PublishedValue<C>(QStringLiteral("Quality"), tkInteger, QStringLiteral("Integer"), &C::Quality, &C::SetQuality,
                      StoredUnless<C>(&C::Quality, 1)),
    PublishedValue<C>(QStringLiteral("CursorTracking"), tkBoolean, QStringLiteral("Boolean"), &C::CursorTracking,
                      &C::SetCursorTracking, StoredUnless<C>(&C::CursorTracking, false)),
    PublishedObject<C>(QStringLiteral("Transform"), QStringLiteral("TVXTransform"),
                       [](C &Control) -> TPersistent & { return Control.Transform(); }),
    PublishedValue<C>(QStringLiteral("Filename"), tkString, QStringLiteral("string"), &C::Filename, &C::SetFilename,
                      StoredUnless<C>(&C::Filename, QString())),
    PublishedValue<C>(QStringLiteral("SVGRootID"), tkString, QStringLiteral("string"), &C::SVGRootID,
                      &C::SetSVGRootID, StoredUnless<C>(&C::SVGRootID, QString())),
    PublishedObject<C>(QStringLiteral("Lines"), QStringLiteral("TStrings"),
                       [](C &Control) -> TPersistent & { return Control.Lines(); },
                       std::function<bool(const C &)>([](const C &Control) { return !Control.FLines.IsEmpty(); })),
    PublishedValue<C>(QStringLiteral("WrapMode"), tkEnumeration, QStringLiteral("TSVGImageWrapMode"), &C::WrapMode,
                      &C::SetWrapMode, StoredUnless<C>(&C::WrapMode, iwFit), WrapModeNames),
    PublishedValue<C>(QStringLiteral("ScaleOriginal"), tkFloat, QStringLiteral("Single"), &C::ScaleOriginal,
                      &C::SetScaleOriginal, StoredUnless<C>(&C::ScaleOriginal, 1.0f)),
    PublishedValue<C>(QStringLiteral("FindOptions"), tkSet, QStringLiteral("TSVGFindOptions"), &C::FindOptions,
                      &C::SetFindOptions, StoredUnless<C>(&C::FindOptions, TSVGFindOptions()), FindOptionNames),
  });
  return Table;
}

TMatrix TVXSVGThreadImage::GetAbsoluteMatrix() const
{
  const TMatrix Own = FTransform.Matrix();
  if (auto *Provider = dynamic_cast<const IVXMatrixProvider *>(parentWidget()))
    return VXMatrixMultiply(Own, Provider->GetAbsoluteMatrix());
  return Own;
}

// --- properties -----------------------------------------------------------------------------------

void TVXSVGThreadImage::SetFilename(const QString &Value)
{
  if (Value == FFilename)
    return;
  FFilename = Value;
  if (!FFilename.isEmpty()) {
    TNotifyEvent Saved = std::exchange(FLines.OnChange, nullptr);
    FLines.Clear();
    FLines.OnChange = std::move(Saved);
  }
  ObjectChanged(nullptr);
}

void TVXSVGThreadImage::ObjectChanged(TObject *)
{
  if (!FLines.Text().isEmpty())
    FFilename.clear();
  {
    std::lock_guard Guard(FCriticalSection);
    FBitmap.reset();
  }
  Invalidate();
  LoadSVG();
}

void TVXSVGThreadImage::DisplayPropertyChange()
{
  UpdateBitmap();
}

template <typename V>
void TVXSVGThreadImage::SetDisplayProperty(V &Field, V Value)
{
  if (Field == Value)
    return;
  Field = Value;
  DisplayPropertyChange();
}

void TVXSVGThreadImage::SetWrapMode(TSVGImageWrapMode Value)
{
  SetDisplayProperty(FWrapMode, Value);
}

void TVXSVGThreadImage::SetScaleOriginal(float Value)
{
  SetDisplayProperty(FScaleOriginal, ClampScaleFactor(Value));
}

void TVXSVGThreadImage::SetQuality(int Value)
{
  SetDisplayProperty(FQuality, std::clamp(Value, 1, 8));
}

void TVXSVGThreadImage::SetSVGRootID(const QString &Value)
{
  SetDisplayProperty(FSVGRootID, Value);
}

void TVXSVGThreadImage::SetDPI(int Value)
{
  SetDisplayProperty(FDPI, Value);
}

void TVXSVGThreadImage::SetOptions(TSVGOptions Value)
{
  SetDisplayProperty(FOptions, Value);
}

void TVXSVGThreadImage::SetDefaultShapeRendering(TSVGShapeRendering Value)
{
  SetDisplayProperty(FDefaultShapeRendering, Value);
}

void TVXSVGThreadImage::SetDefaultColorRendering(TSVGColorRendering Value)
{
  SetDisplayProperty(FDefaultColorRendering, Value);
}

void TVXSVGThreadImage::SetDefaultTextRendering(TSVGTextRendering Value)
{
  SetDisplayProperty(FDefaultTextRendering, Value);
}

void TVXSVGThreadImage::SetDefaultColorInterpolation(TSVGColorInterpolation Value)
{
  SetDisplayProperty(FDefaultColorInterpolation, Value);
}

void TVXSVGThreadImage::SetOpacity(float Value)
{
  if (Value == FOpacity)
    return;
  FOpacity = Value;
  Invalidate();
}

void TVXSVGThreadImage::SetCursorTracking(bool Value)
{
  FCursorTracking = Value;
  setMouseTracking(Value);
}

void TVXSVGThreadImage::SetCursor(TCursor Value)
{
  FDefaultCursor = Value;
  TVXCustomTransparentGraphicControl::SetCursor(Value);
}

TSVGDocumentDefaults TVXSVGThreadImage::Defaults() const
{
  return TSVGDocumentDefaults{FDefaultAspectRatio.GetAlign(), FDefaultAspectRatio.GetDefer(),
                              FDefaultAspectRatio.GetSlice(), FDefaultShapeRendering,
                              FDefaultColorRendering,         FDefaultTextRendering,
                              FDefaultColorInterpolation,     FOptions,
                              FDPI};
}

// --- jobs -----------------------------------------------------------------------------------------

void TVXSVGThreadImage::CreateServerThread()
{
  FThread = std::make_unique<TSVGServerThread>(true);
  FThread->SetPriority(tpLower);
  FThread->OnJobComplete = [this](TObject *Sender) { JobComplete(Sender); };
  FThread->Start();
}

void TVXSVGThreadImage::LoadSVG()
{
  if (FFilename.isEmpty() && FLines.Text().isEmpty())
    return;
  auto Document = std::make_shared<TSVGDocument>();
  // Only the settings that reading depends on; the rendering ones come with each paint.
  TSVGDocumentDefaults Settings = Defaults();
  Document->AspectRatio().SetAlign(Settings.Align);
  Document->AspectRatio().SetDefer(Settings.Defer);
  Document->AspectRatio().SetSlice(Settings.Slice);
  Document->SetOptions(Settings.Options);
  Document->SetDPI(Settings.DPI);
  // The job is made first: a file that cannot be opened leaves the queue and the document as they were.
  TSVGServerJobPtr Job;
  if (!FFilename.isEmpty()) {
    Job = std::make_unique<TSVGLoadJob>(FFilename, Document);
  } else {
    Job = std::make_unique<TTextLoadJob>(FLines.Text(), Document);
  }
  ClearPendingJobs(nullptr);
  FSVG.reset();
  ClearPendingJobs(std::move(Job));
}

void TVXSVGThreadImage::UpdateBitmap()
{
  if (!FThread)
    CreateServerThread();
  if (!FSVG) {
    LoadSVG();
    return;
  }
  auto Job = std::make_unique<TThreadImagePaintJob>(FSVG, float(Width() * FQuality), float(Height() * FQuality),
                                                    Defaults(), FDocumentLock);
  Job->SetScaleFactor(FScaleOriginal);
  Job->SetWrapMode(FWrapMode);
  ClearPendingJobs(std::move(Job));
}

void TVXSVGThreadImage::ClearPendingJobs(TSVGServerJobPtr Job)
{
  if (!FThread)
    CreateServerThread();
  const bool WasBusy = Busy();
  {
    TSVGJobList::TLocked Locked = FThread->Jobs().Lock();
    std::vector<TSVGServerJobPtr> &Items = Locked.Items();
    while (!Items.empty()) {
      if (Job && typeid(*Items.back()) != typeid(*Job))
        break;
      Items.pop_back();
    }
  }
  FNewestJob = Job.get();
  if (Job)
    FThread->Jobs().Add(std::move(Job));
  BusyChanged(WasBusy);
}

void TVXSVGThreadImage::BusyChanged(bool WasBusy)
{
  if (Busy() != WasBusy && OnBusyChange)
    OnBusyChange(this);
}

void TVXSVGThreadImage::JobComplete(TObject *)
{
  const bool WasBusy = Busy();
  {
    std::lock_guard Guard(FCriticalSection);
    TSVGServerJobPtr Job;
    {
      TSVGJobList::TLocked Locked = FThread->OutJobs().Lock();
      std::vector<TSVGServerJobPtr> &Items = Locked.Items();
      if (Items.empty())
        return;
      Job = std::move(Items.front());
      Items.erase(Items.begin());
    }
    if (auto *Load = dynamic_cast<TSVGLoadJob *>(Job.get())) {
      FSVG = Load->TakeSVG();
      UpdateBitmap();
    } else if (auto *Paint = dynamic_cast<TSVGPaintJob *>(Job.get())) {
      FBitmap = Paint->TakeBitmap();
      Invalidate();
      // The control grew while the picture was drawn: the newest size gets its own rendering.
      if (Job.get() == FNewestJob && BitmapTooSmall())
        UpdateBitmap();
    }
    // Still the newest once its follow-up (if any) is queued: nothing more is on the way.
    if (Job.get() == FNewestJob)
      FNewestJob = nullptr;
  }
  BusyChanged(WasBusy);
}

// --- painting -------------------------------------------------------------------------------------

void TVXSVGThreadImage::Paint(QPainter &Painter)
{
  TVXGPCanvas Canvas(&Painter);
  DoPaint(Canvas);
}

void TVXSVGThreadImage::DoPaint(TVXGPCanvas &Canvas)
{
  std::lock_guard Guard(FCriticalSection);
  const TMatrix M = GetAbsoluteMatrix();
  if (!IsIdentity(M))
    Canvas.SetMatrix(M);
  const TRectF R{0, 0, float(Width()), float(Height())};
  if (DesignMode())
    Canvas.DrawDashRect(TRectF{R.Left + 0.5f, R.Top + 0.5f, R.Right - 0.5f, R.Bottom - 0.5f});
  if (!FBitmap)
    return;
  if (FQuality > 1)
    Canvas.SetInterpolationMode(VXInterpolationModeHighQualityBicubic);
  DrawBitmapWrapped(Canvas, *FBitmap, R, FWrapMode, FOpacity);
}

void TVXSVGThreadImage::Resize()
{
  TVXCustomTransparentGraphicControl::Resize();
  if (FSVG && (!FBitmap || BitmapTooSmall()))
    DisplayPropertyChange();
  Invalidate();
}

bool TVXSVGThreadImage::BitmapTooSmall() const
{
  // Only fitted and stretched pictures follow the control's size. The size needed is worked out
  // from the bitmap's own proportions: the document may be in a job's hands.
  if ((FWrapMode != iwFit && FWrapMode != iwStretch) || !FBitmap || FBitmap->GetWidth() == 0)
    return false;
  const TSizeF Needed = ScaleSize(float(Width() * FQuality), float(Height() * FQuality), float(FBitmap->GetWidth()),
                                  float(FBitmap->GetHeight()), FWrapMode, 1.0f);
  return std::lround(Needed.cx) > FBitmap->GetWidth() || std::lround(Needed.cy) > FBitmap->GetHeight();
}

// --- clicks and the cursor ------------------------------------------------------------------------

TSVGGraphicElement *TVXSVGThreadImage::ElementAt(int X, int Y)
{
  if (!FSVG || !FBitmap)
    return nullptr;
  std::unique_lock Lock(FDocumentLock, std::try_to_lock);
  if (!Lock.owns_lock())
    return nullptr;
  const TRectF R{0, 0, float(Width()), float(Height())};
  const TRectF Placed = BitmapWrapRect(FBitmap->GetWidth(), FBitmap->GetHeight(), R, FWrapMode);
  TPointF P{float(X), float(Y)};
  const TMatrix M = GetAbsoluteMatrix();
  if (!IsIdentity(M))
    P = VXMatrixTransformPoint(P, VXMatrixInvert(M));
  return ElementAtWrapped(*FSVG, Placed, P, FWrapMode, FFindOptions);
}

void TVXSVGThreadImage::DoElementClick(int X, int Y)
{
  if (DesignMode() || !FSVG || !OnClickElement)
    return;
  OnClickElement(this, ElementAt(X, Y));
}

void TVXSVGThreadImage::SetCursorFromSVG(int X, int Y)
{
  TSVGGraphicElement *Element = ElementAt(X, Y);
  const TCursor Cursor = Element ? Element->GetCursor() : FDefaultCursor;
  TVXCustomTransparentGraphicControl::SetCursor(Cursor != crDefault ? Cursor : FDefaultCursor);
}

void TVXSVGThreadImage::MouseMove(TShiftState Shift, int X, int Y)
{
  TVXCustomTransparentGraphicControl::MouseMove(Shift, X, Y);
  if (FCursorTracking)
    SetCursorFromSVG(X, Y);
}

void TVXSVGThreadImage::MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y)
{
  TVXCustomTransparentGraphicControl::MouseUp(Button, Shift, X, Y);
  DoElementClick(X, Y);
}

} // namespace vx
