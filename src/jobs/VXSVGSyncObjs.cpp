#include "jobs/VXSVGSyncObjs.h"

#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGRaster.h"
#include "values/VXSVGDataURI.h"

#include <QFile>

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

std::unique_ptr<QIODevice> OpenForReading(const QString &FileName)
{
  auto File = std::make_unique<QFile>(FileName);
  if (!File->open(QIODevice::ReadOnly))
    throw EFOpenError(QStringLiteral("Cannot open file \"%1\". %2").arg(FileName, File->errorString()));
  return File;
}

// Renders Root into Bitmap (made when nil) at the size a picture of Root's bounds takes in a box of
// Width by Height under WrapMode. The canvas ends here, on the thread that drew.
void RenderInto(std::unique_ptr<TVXGPBitmap> &Bitmap, TSVGGraphicElement &Root, const TRectF &Bounds, float Width,
                float Height, TSVGImageWrapMode WrapMode, float Scale)
{
  const TSizeF Size = ScaleSize(Width, Height, Bounds.Width(), Bounds.Height(), WrapMode, Scale);
  if (!Bitmap)
    Bitmap = std::make_unique<TVXGPBitmap>();
  Bitmap->SetSize(int(std::lround(Size.cx)), int(std::lround(Size.cy)));
  DrawSVGToBitmap(*Bitmap, &Root, VXSmoothingModeHighQuality, true);
  Bitmap->EndCanvas();
}

bool HasArea(float Width, float Height)
{
  return double(Width) * Height > 0;
}

} // namespace

float ClampDefaultSize(float Value)
{
  return std::max(Value, 0.0f);
}

float ClampScaleFactor(float Value)
{
  return Value <= 0 ? 0.01f : std::min(Value, 100.0f);
}

// --- one-shot threads ----------------------------------------------------------------------------

TSVGThread::TSVGThread(float DefaultWidth, float DefaultHeight, bool CreateSuspended)
    : FSVG(std::make_unique<TSVGDocument>()), FDefaultHeight(ClampDefaultSize(DefaultHeight)),
      FDefaultWidth(ClampDefaultSize(DefaultWidth))
{
  if (!CreateSuspended)
    Start();
}

TSVGThread::~TSVGThread()
{
  Terminate();
  WaitFor();
}

void TSVGThread::SetSVG(std::unique_ptr<TSVGDocument> Value)
{
  FSVG = std::move(Value);
}

void TSVGThread::Execute()
{
  Render();
}

void TSVGThread::Render()
{
  if (!FSVG || !HasArea(FDefaultWidth, FDefaultHeight))
    return;
  RenderInto(FBitmap, *FSVG, FSVG->GetBoundsRect(), FDefaultWidth, FDefaultHeight, FWrapMode, FScaleFactor);
}

TSVGLoadThread::TSVGLoadThread(const QString &FileName, float DefaultWidth, float DefaultHeight,
                               bool CreateSuspended)
    : TSVGLoadThread(OpenForReading(FileName), DefaultWidth, DefaultHeight, CreateSuspended)
{
}

TSVGLoadThread::TSVGLoadThread(std::unique_ptr<QIODevice> Stream, float DefaultWidth, float DefaultHeight,
                               bool CreateSuspended)
    : TSVGThread(DefaultWidth, DefaultHeight, true), FStream(std::move(Stream))
{
  if (!CreateSuspended)
    Start();
}

TSVGLoadThread::~TSVGLoadThread()
{
  Terminate();
  WaitFor();
}

void TSVGLoadThread::Execute()
{
  try {
    if (FStream)
      SVG().LoadFromStream(*FStream);
    FIsSVGValid = true;
    if (!Terminated())
      Render();
  } catch (...) {
    // Reported by IsValidSVG (a failed load) or by the missing bitmap (a failed rendering).
  }
}

// --- jobs ----------------------------------------------------------------------------------------

TSVGLoadJob::TSVGLoadJob(std::unique_ptr<QIODevice> Stream, TSVGDocumentPtr SVG)
    : TSVGServerJob(std::move(SVG)), FStream(std::move(Stream))
{
}

TSVGLoadJob::TSVGLoadJob(const QString &FileName, TSVGDocumentPtr SVG)
    : TSVGLoadJob(OpenForReading(FileName), std::move(SVG))
{
}

bool TSVGLoadJob::Execute()
{
  if (!FStream)
    return true;
  try {
    if (!SVG())
      SetSVG(std::make_shared<TSVGDocument>());
    SVG()->LoadFromStream(*FStream);
    return true;
  } catch (...) {
    return false;
  }
}

TSVGPaintJob::TSVGPaintJob(TSVGDocumentPtr SVG, float DefaultWidth, float DefaultHeight)
    : TSVGServerJob(std::move(SVG)), FDefaultHeight(ClampDefaultSize(DefaultHeight)),
      FDefaultWidth(ClampDefaultSize(DefaultWidth))
{
}

TSVGGraphicElement *TSVGPaintJob::GetRoot() const
{
  if (!SVG())
    return nullptr;
  if (FSVGRootID.isEmpty())
    return SVG().get();
  return SVG()->FindElement<TSVGGraphicElement>(FSVGRootID);
}

bool TSVGPaintJob::Execute()
{
  if (!HasArea(FDefaultWidth, FDefaultHeight))
    return true;
  try {
    TSVGGraphicElement *Root = GetRoot();
    if (!Root)
      return false;
    RenderInto(FBitmap, *Root, Root->GetBoundsRect(VXIdentityMatrix), FDefaultWidth, FDefaultHeight, FWrapMode,
               FScaleFactor);
    return true;
  } catch (...) {
    FBitmap.reset();
    return false;
  }
}

// --- the server ----------------------------------------------------------------------------------

void TSVGJobList::Add(TSVGServerJobPtr Job)
{
  {
    std::lock_guard Guard(FLock);
    FItems.push_back(std::move(Job));
  }
  if (OnAdd)
    OnAdd();
}

TSVGServerThread::TSVGServerThread(bool CreateSuspended)
{
  FJobs.OnAdd = [this] { FWaitEvent.SetEvent(); };
  if (!CreateSuspended)
    Start();
}

TSVGServerThread::~TSVGServerThread()
{
  Terminate();
  WaitFor();
}

TSVGServerJobPtr TSVGServerThread::TakeNextJob()
{
  TSVGJobList::TLocked Locked = FJobs.Lock();
  std::vector<TSVGServerJobPtr> &Items = Locked.Items();
  if (Items.empty())
    return nullptr;
  TSVGServerJobPtr Job = std::move(Items.front());
  Items.erase(Items.begin());
  // Jobs without a document have nothing in common: each loads a document of its own.
  if (!Job->SVG())
    return Job;
  bool Replaced = false;
  for (auto It = Items.end(); It != Items.begin();) {
    --It;
    if ((*It)->SVG() != Job->SVG())
      continue;
    if (!Replaced) {
      Job = std::move(*It);
      Replaced = true;
    }
    It = Items.erase(It);
  }
  return Job;
}

void TSVGServerThread::Execute()
{
  while (!Terminated()) {
    TSVGServerJobPtr Job = TakeNextJob();
    if (!Job) {
      FWaitEvent.WaitFor(IdleWait);
      // Reset before the queue is looked at again, so that a job added meanwhile is not missed.
      if (!Terminated())
        FWaitEvent.ResetEvent();
      continue;
    }
    try {
      Job->Execute();
    } catch (...) {
      // The result of Execute is not the server's business; a job that raises is handed back too.
    }
    // A job caught by termination is freed here with the queue's others, not handed back.
    if (Terminated())
      return;
    FOutJobs.Add(std::move(Job));
    try {
      Synchronize([this] { DoJobComplete(); });
    } catch (...) {
      // The handler's failure must not end the server.
    }
  }
}

void TSVGServerThread::DoJobComplete()
{
  if (OnJobComplete)
    OnJobComplete(this);
}

} // namespace vx
