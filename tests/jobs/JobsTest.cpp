// The job server and the one-shot threads: which queued jobs run, what comes back to the main
// thread, how quickly an idle server ends, and what becomes of failures. Nothing here sleeps for a
// fixed time: the tests wait for the hand-over, with a deadline.
#include "jobs/VXSVGSyncObjs.h"
#include "support/EventLoopWait.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace vx {
namespace {

using vxtest::WaitUntil;

const char Picture[] = "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20' viewBox='0 0 40 20'>"
                       "<rect id='r' width='40' height='20' fill='#00f'/><desc id='d'/></svg>";


std::unique_ptr<QIODevice> Stream(const QByteArray &Text)
{
  auto Buffer = std::make_unique<QBuffer>();
  Buffer->setData(Text);
  Buffer->open(QIODevice::ReadOnly);
  return Buffer;
}

TSVGDocumentPtr Loaded(const char *Text)
{
  auto Document = std::make_shared<TSVGDocument>();
  Document->LoadFromText(QString::fromUtf8(Text));
  return Document;
}

// A server whose finished jobs are collected on the main thread.
struct TCollectingServer
{
  explicit TCollectingServer(bool Suspended) : Server(Suspended)
  {
    Server.OnJobComplete = [this](TObject *Sender) {
      EXPECT_EQ(Sender, &Server);
      auto Locked = Server.OutJobs().Lock();
      for (TSVGServerJobPtr &Job : Locked.Items())
        Done.push_back(std::move(Job));
      Locked.Items().clear();
    };
  }
  TSVGPaintJob *Paint(std::size_t Index) { return dynamic_cast<TSVGPaintJob *>(Done.at(Index).get()); }

  // Before the server, which may still hand a job over while it ends.
  std::vector<TSVGServerJobPtr> Done;
  TSVGServerThread Server;
};

TEST(JobServerTest, OnlyTheNewestQueuedJobOnADocumentRuns)
{
  TCollectingServer Collector(true);
  const TSVGDocumentPtr Shared = Loaded(Picture), Other = Loaded(Picture);
  for (const float Width : {10.0f, 20.0f, 30.0f})
    Collector.Server.Jobs().Add(std::make_unique<TSVGPaintJob>(Shared, Width, 100));
  Collector.Server.Jobs().Add(std::make_unique<TSVGPaintJob>(Other, 8, 100));
  Collector.Server.Start();
  ASSERT_TRUE(WaitUntil([&] { return Collector.Done.size() == 2; }));
  ASSERT_NE(Collector.Paint(0)->Bitmap(), nullptr);
  EXPECT_EQ(Collector.Paint(0)->SVG(), Shared);
  EXPECT_EQ(Collector.Paint(0)->Bitmap()->GetWidth(), 30) << "the last of the three ran, in the first one's turn";
  EXPECT_EQ(Collector.Paint(1)->SVG(), Other);
  EXPECT_EQ(Collector.Paint(1)->Bitmap()->GetWidth(), 8);
  EXPECT_EQ(Collector.Server.Jobs().Lock().Items().size(), 0u);
  EXPECT_EQ(Shared.use_count(), 2) << "the dropped jobs let go of the document, the survivor holds it";
}

TEST(JobServerTest, PaintsWithoutAreaOrRootComeBackWithoutBitmap)
{
  TCollectingServer Collector(false);
  const TSVGDocumentPtr Document = Loaded(Picture);
  struct TCase
  {
    float Width, Height;
    const char *RootID;
    bool Result;
  };
  const TCase Cases[] = {{0, 50, "", true}, {50, 0, "", true}, {50, 50, "missing", false}, {50, 50, "d", false}};
  for (const TCase &Case : Cases) {
    auto Job = std::make_unique<TSVGPaintJob>(Document, Case.Width, Case.Height);
    Job->SetSVGRootID(QString::fromLatin1(Case.RootID));
    EXPECT_EQ(Job->Execute(), Case.Result) << Case.RootID;
    EXPECT_EQ(Job->Bitmap(), nullptr);
  }
  Collector.Server.Jobs().Add(std::make_unique<TSVGPaintJob>(Document, 0, 50));
  ASSERT_TRUE(WaitUntil([&] { return Collector.Done.size() == 1; }));
  EXPECT_EQ(Collector.Paint(0)->Bitmap(), nullptr);
}

TEST(JobServerTest, PaintJobRendersTheNamedElementAsTheWrapModeSizesIt)
{
  auto Job = std::make_unique<TSVGPaintJob>(Loaded(Picture), 100, 100);
  ASSERT_TRUE(Job->Execute());
  EXPECT_EQ(Job->Bitmap()->GetWidth(), 100);
  EXPECT_EQ(Job->Bitmap()->GetHeight(), 50) << "fitted, the proportions kept";
  EXPECT_EQ(Job->Bitmap()->Image().pixel(50, 25), 0xFF0000FFu);
  Job->SetWrapMode(iwOriginal);
  Job->SetScaleFactor(0.5f);
  Job->SetSVGRootID(QStringLiteral("r"));
  ASSERT_TRUE(Job->Execute());
  EXPECT_EQ(Job->Bitmap()->GetWidth(), 20);
  EXPECT_EQ(Job->Bitmap()->GetHeight(), 10);
}

TEST(JobServerTest, TerminationWakesAnIdleServerAtOnce)
{
  TCollectingServer Collector(false);
  Collector.Server.Jobs().Add(std::make_unique<TSVGPaintJob>(Loaded(Picture), 10, 10));
  ASSERT_TRUE(WaitUntil([&] { return Collector.Done.size() == 1; }));
  // The server has nothing left: it is asleep, or about to be.
  QElapsedTimer Timer;
  Timer.start();
  Collector.Server.Terminate();
  Collector.Server.WaitFor();
  EXPECT_LT(Timer.elapsed(), TSVGServerThread::IdleWait);
  EXPECT_TRUE(Collector.Server.Finished());
}

TEST(JobServerTest, JobsLeftAtTerminationAreFreedWithTheServer)
{
  const TSVGDocumentPtr Document = Loaded(Picture);
  {
    TSVGServerThread Server(true);
    Server.Jobs().Add(std::make_unique<TSVGPaintJob>(Document, 10, 10));
    Server.OutJobs().Add(std::make_unique<TSVGPaintJob>(Document, 10, 10));
    Server.Start();
  }
  EXPECT_EQ(Document.use_count(), 1);
}

TEST(LoadJobTest, FailuresAreReportedByTheResultNotRaised)
{
  const TSVGDocumentPtr Document = std::make_shared<TSVGDocument>();
  EXPECT_TRUE(TSVGLoadJob(Stream(Picture), Document).Execute());
  EXPECT_NE(Document->FindElement(QStringLiteral("r")), nullptr);
  EXPECT_FALSE(TSVGLoadJob(Stream("<svg xmlns='http://www.w3.org/2000/svg'><rect"), Document).Execute());
  EXPECT_NE(Document->FindElement(QStringLiteral("r")), nullptr) << "a failed load leaves the old content";
  EXPECT_TRUE(TSVGLoadJob(std::unique_ptr<QIODevice>(), Document).Execute()) << "no stream, nothing to do";

  TSVGLoadJob Fresh(Stream(Picture), nullptr);
  EXPECT_TRUE(Fresh.Execute());
  ASSERT_NE(Fresh.SVG(), nullptr) << "a job without a document makes one";
  EXPECT_THROW(TSVGLoadJob(QStringLiteral("/nonexistent/picture.svg"), Document), EFOpenError);
}

TEST(ThreadTest, LoadThreadTellsWhetherTheLoadSucceeded)
{
  QTemporaryDir Dir;
  const QString Name = Dir.filePath(QStringLiteral("p.svg"));
  QFile File(Name);
  ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  File.write(Picture);
  File.close();

  TSVGLoadThread Good(Name, 80, 80, false);
  TSVGLoadThread Broken(Stream("<svg"), 80, 80, false);
  Good.WaitFor();
  Broken.WaitFor();
  EXPECT_TRUE(Good.IsValidSVG());
  ASSERT_NE(Good.Bitmap(), nullptr);
  EXPECT_EQ(Good.Bitmap()->GetHeight(), 40);
  EXPECT_FALSE(Broken.IsValidSVG());
  EXPECT_EQ(Broken.Bitmap(), nullptr);
  EXPECT_TRUE(Broken.FatalException().isEmpty()) << "the failure was swallowed, not fatal";
}

TEST(ThreadTest, SettersClampSizesAndScales)
{
  TSVGThread Thread(-5, 10, true);
  TSVGPaintJob Job(nullptr, 10, -1);
  EXPECT_EQ(Thread.DefaultWidth(), 0);
  EXPECT_EQ(Job.DefaultHeight(), 0);
  const std::pair<float, float> Scales[] = {{0, 0.01f}, {-3, 0.01f}, {0.5f, 0.5f}, {100, 100}, {250, 100}};
  for (const auto &[Given, Stored] : Scales) {
    Thread.SetScaleFactor(Given);
    Job.SetScaleFactor(Given);
    EXPECT_EQ(Thread.ScaleFactor(), Stored) << Given;
    EXPECT_EQ(Job.ScaleFactor(), Stored) << Given;
  }
  EXPECT_TRUE(Thread.IsValidSVG());
}

// A thread that hands a value to the main thread and notes what it saw there.
class TSynchronizingThread : public TThread
{
public:
  ~TSynchronizingThread() override
  {
    Terminate();
    WaitFor();
  }
  bool RanOnMainThread = false;
  bool RethrownHere = false;

protected:
  void Execute() override
  {
    Synchronize([this] { RanOnMainThread = IsMainThread(); });
    try {
      Synchronize([] { throw EAbort(); });
    } catch (const EAbort &) {
      RethrownHere = true;
    }
  }
};

TEST(ThreadTest, SynchronizeRunsOnTheMainThreadEvenWhileItWaitsForTheThread)
{
  TSynchronizingThread Thread;
  Thread.Start();
  // No event loop runs here: WaitFor itself must run the calls, or this would never return.
  Thread.WaitFor();
  EXPECT_TRUE(Thread.RanOnMainThread);
  EXPECT_TRUE(Thread.RethrownHere);
}

} // namespace
} // namespace vx
