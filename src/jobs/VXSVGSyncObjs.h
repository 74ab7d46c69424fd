#pragma once
// Loading and rasterising documents away from the main thread: the one-shot threads TSVGThread and
// TSVGLoadThread, and TSVGServerThread, a long-lived server that runs load and paint jobs one after
// the other and hands each finished job back on the main thread.
//
// What keeps this safe without locks in the tree: a document is touched only by the thread that
// runs its job, and the jobs of one server never run side by side. A job holds its document by
// shared ownership, so a client may drop its own reference (load another picture) while a job still
// draws the old one: the document lives until the job lets go.
#include "platform/rtl/VXThreads.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGVocabulary.h"

#include <QIODevice>

#include <memory>
#include <mutex>
#include <vector>

namespace vx {

using TSVGDocumentPtr = std::shared_ptr<TSVGDocument>;

// The setters' clamps: sizes are never negative, scales stay within 0.01 .. 100.
float ClampDefaultSize(float Value);
float ClampScaleFactor(float Value);

// Renders its document into a bitmap of DefaultWidth by DefaultHeight as WrapMode places it. Set
// the document and the sizes before the thread starts; read Bitmap after WaitFor.
class TSVGThread : public TThread
{
public:
  TSVGThread(float DefaultWidth, float DefaultHeight, bool CreateSuspended);
  ~TSVGThread() override;
  QString ClassName() const override { return QStringLiteral("TSVGThread"); }

  TSVGDocument &SVG() { return *FSVG; }
  // Frees the old document and keeps Value.
  void SetSVG(std::unique_ptr<TSVGDocument> Value);
  // The picture; nil until a rendering made it.
  TVXGPBitmap *Bitmap() const { return FBitmap.get(); }
  float DefaultWidth() const { return FDefaultWidth; }
  void SetDefaultWidth(float Value) { FDefaultWidth = ClampDefaultSize(Value); }
  float DefaultHeight() const { return FDefaultHeight; }
  void SetDefaultHeight(float Value) { FDefaultHeight = ClampDefaultSize(Value); }
  float ScaleFactor() const { return FScaleFactor; }
  void SetScaleFactor(float Value) { FScaleFactor = ClampScaleFactor(Value); }
  TSVGImageWrapMode WrapMode() const { return FWrapMode; }
  void SetWrapMode(TSVGImageWrapMode Value) { FWrapMode = Value; }
  // Whether the thread's document is usable; always here, after a successful load in a load thread.
  virtual bool IsValidSVG() const { return true; }

protected:
  void Execute() override;
  // The rendering alone, nothing when the target size has no area.
  void Render();

private:
  std::unique_ptr<TVXGPBitmap> FBitmap;
  std::unique_ptr<TSVGDocument> FSVG;
  float FScaleFactor = 1.0f;
  TSVGImageWrapMode FWrapMode = iwFit;
  float FDefaultHeight = 0;
  float FDefaultWidth = 0;
};

// Loads its stream into the document, then renders it unless terminated in between. A failure of
// either step ends the thread quietly: IsValidSVG tells whether the load succeeded.
class TSVGLoadThread : public TSVGThread
{
public:
  // Opens the file for reading; EFOpenError when it cannot.
  TSVGLoadThread(const QString &FileName, float DefaultWidth, float DefaultHeight, bool CreateSuspended);
  TSVGLoadThread(std::unique_ptr<QIODevice> Stream, float DefaultWidth, float DefaultHeight, bool CreateSuspended);
  ~TSVGLoadThread() override;
  QString ClassName() const override { return QStringLiteral("TSVGLoadThread"); }

  // Frees the old stream and keeps Value.
  void SetStream(std::unique_ptr<QIODevice> Value) { FStream = std::move(Value); }
  bool IsValidSVG() const override { return FIsSVGValid.load(); }

protected:
  void Execute() override;

private:
  std::atomic<bool> FIsSVGValid = false;
  std::unique_ptr<QIODevice> FStream;
};

// One unit of work of a server. Execute runs on the server thread and never raises: its result
// says whether it succeeded.
class TSVGServerJob : public TPersistent
{
public:
  explicit TSVGServerJob(TSVGDocumentPtr SVG = nullptr) : FSVG(std::move(SVG)) {}
  QString ClassName() const override { return QStringLiteral("TSVGServerJob"); }

  const TSVGDocumentPtr &SVG() const { return FSVG; }
  void SetSVG(TSVGDocumentPtr Value) { FSVG = std::move(Value); }
  // Hands the document over and leaves the job without one.
  TSVGDocumentPtr TakeSVG() { return std::move(FSVG); }

  virtual bool Execute() { return false; }

private:
  TSVGDocumentPtr FSVG;
};

// Loads a stream into the job's document, a new one when the job has none.
class TSVGLoadJob : public TSVGServerJob
{
public:
  TSVGLoadJob(std::unique_ptr<QIODevice> Stream, TSVGDocumentPtr SVG);
  // Opens the file for reading; EFOpenError when it cannot.
  TSVGLoadJob(const QString &FileName, TSVGDocumentPtr SVG);
  QString ClassName() const override { return QStringLiteral("TSVGLoadJob"); }

  // True without a stream; false only when the load raised.
  bool Execute() override;

private:
  std::unique_ptr<QIODevice> FStream;
};

// Renders the job's document (or the graphic element SVGRootID names in it) into a new bitmap of
// DefaultWidth by DefaultHeight as WrapMode places it.
class TSVGPaintJob : public TSVGServerJob
{
public:
  TSVGPaintJob(TSVGDocumentPtr SVG, float DefaultWidth, float DefaultHeight);
  QString ClassName() const override { return QStringLiteral("TSVGPaintJob"); }

  float DefaultWidth() const { return FDefaultWidth; }
  void SetDefaultWidth(float Value) { FDefaultWidth = ClampDefaultSize(Value); }
  float DefaultHeight() const { return FDefaultHeight; }
  void SetDefaultHeight(float Value) { FDefaultHeight = ClampDefaultSize(Value); }
  float ScaleFactor() const { return FScaleFactor; }
  void SetScaleFactor(float Value) { FScaleFactor = ClampScaleFactor(Value); }
  TSVGImageWrapMode WrapMode() const { return FWrapMode; }
  void SetWrapMode(TSVGImageWrapMode Value) { FWrapMode = Value; }
  const QString &SVGRootID() const { return FSVGRootID; }
  void SetSVGRootID(const QString &Value) { FSVGRootID = Value; }

  // The picture; nil when nothing was rendered (no area, or a failure).
  TVXGPBitmap *Bitmap() const { return FBitmap.get(); }
  std::unique_ptr<TVXGPBitmap> TakeBitmap() { return std::move(FBitmap); }

  // True at once when the target size has no area; false when there is nothing to draw or the
  // rendering raised.
  bool Execute() override;

private:
  TSVGGraphicElement *GetRoot() const;

  float FDefaultHeight;
  std::unique_ptr<TVXGPBitmap> FBitmap;
  float FScaleFactor = 1.0f;
  float FDefaultWidth;
  TSVGImageWrapMode FWrapMode = iwFit;
  QString FSVGRootID;
};

using TSVGServerJobPtr = std::unique_ptr<TSVGServerJob>;

// A queue of jobs that owns them, with one lock of its own. Lock gives the items for as long as
// the returned guard lives; Add wakes whoever listens through OnAdd (called outside the lock).
class TSVGJobList
{
public:
  class TLocked
  {
  public:
    explicit TLocked(TSVGJobList &List) : FLock(List.FLock), FItems(List.FItems) {}
    std::vector<TSVGServerJobPtr> &Items() { return FItems; }

  private:
    std::unique_lock<std::mutex> FLock;
    std::vector<TSVGServerJobPtr> &FItems;
  };

  TLocked Lock() { return TLocked(*this); }
  void Add(TSVGServerJobPtr Job);

  std::function<void()> OnAdd;

private:
  std::mutex FLock;
  std::vector<TSVGServerJobPtr> FItems;
};

// Runs the jobs of Jobs one at a time and puts each finished one into OutJobs, then calls
// OnJobComplete on the main thread (the handler takes the job out). Among the queued jobs on one
// document only the newest runs. An idle server sleeps 100 ms at a time; a new job or
// termination wakes it at once.
class TSVGServerThread : public TThread
{
public:
  explicit TSVGServerThread(bool CreateSuspended);
  // Ends the thread (a running job finishes first), then frees the jobs left in both lists.
  ~TSVGServerThread() override;
  QString ClassName() const override { return QStringLiteral("TSVGServerThread"); }

  TSVGJobList &Jobs() { return FJobs; }
  TSVGJobList &OutJobs() { return FOutJobs; }

  // Set and called on the main thread only.
  TNotifyEvent OnJobComplete;

  static constexpr int IdleWait = 100;

protected:
  void Execute() override;
  void TerminatedSet() override { FWaitEvent.SetEvent(); }

private:
  // The first queued job, replaced by the newest job on the same document; the others on it go.
  TSVGServerJobPtr TakeNextJob();
  void DoJobComplete();

  TSVGJobList FJobs;
  TSVGJobList FOutJobs;
  TSimpleEvent FWaitEvent;
};

} // namespace vx
