#include "platform/rtl/VXThreads.h"

#include <QCoreApplication>
#include <QThread>

#include <chrono>
#include <deque>
#include <exception>
#include <thread>

namespace vx {

namespace {

const std::thread::id LoadingThread = std::this_thread::get_id();

struct TSyncRequest
{
  const std::function<void()> &Method;
  std::exception_ptr Error;
  bool Done = false;
};

// One queue for all threads: the calls waiting for the main thread, and the thread ends that a
// waiting main thread must hear of. Both are signalled through SyncQueued.
std::mutex SyncLock;
std::condition_variable SyncQueued;
std::condition_variable SyncDone;
std::deque<TSyncRequest *> SyncQueue;

QThread::Priority QtPriority(TThreadPriority Priority)
{
  static constexpr QThread::Priority Map[] = {QThread::IdlePriority, QThread::LowestPriority,
                                              QThread::LowPriority,  QThread::NormalPriority,
                                              QThread::HighPriority, QThread::HighestPriority,
                                              QThread::TimeCriticalPriority};
  return Map[Priority];
}

QString MessageOf(const std::exception_ptr &Error)
{
  try {
    std::rethrow_exception(Error);
  } catch (const std::exception &E) {
    return QString::fromUtf8(E.what());
  } catch (...) {
    return QStringLiteral("Unknown exception");
  }
}

} // namespace

bool IsMainThread()
{
  if (const QCoreApplication *App = QCoreApplication::instance())
    return App->thread() == QThread::currentThread();
  return std::this_thread::get_id() == LoadingThread;
}

void CheckSynchronize()
{
  for (;;) {
    TSyncRequest *Request;
    {
      std::lock_guard Lock(SyncLock);
      if (SyncQueue.empty())
        return;
      Request = SyncQueue.front();
      SyncQueue.pop_front();
    }
    try {
      Request->Method();
    } catch (...) {
      Request->Error = std::current_exception();
    }
    {
      std::lock_guard Lock(SyncLock);
      Request->Done = true;
    }
    SyncDone.notify_all();
  }
}

class TThread::TQtThread : public QThread
{
public:
  explicit TQtThread(TThread &Owner) : FOwner(Owner) {}

protected:
  void run() override { FOwner.Run(); }

private:
  TThread &FOwner;
};

TThread::TThread() : FThread(std::make_unique<TQtThread>(*this)) {}

TThread::~TThread()
{
  Terminate();
  WaitFor();
}

void TThread::Start()
{
  if (FStarted)
    return;
  FStarted = true;
  FThread->start(QtPriority(FPriority));
}

void TThread::Run()
{
  std::exception_ptr Error;
  try {
    Execute();
  } catch (...) {
    Error = std::current_exception();
  }
  {
    std::lock_guard Lock(SyncLock);
    if (Error)
      FFatalException = MessageOf(Error);
    FFinished = true;
  }
  SyncQueued.notify_all();
}

void TThread::Terminate()
{
  if (FTerminated.exchange(true))
    return;
  TerminatedSet();
}

bool TThread::Finished() const
{
  std::lock_guard Lock(SyncLock);
  return FFinished;
}

QString TThread::FatalException() const
{
  std::lock_guard Lock(SyncLock);
  return FFatalException;
}

void TThread::WaitFor()
{
  if (!FStarted)
    return;
  if (IsMainThread()) {
    std::unique_lock Lock(SyncLock);
    while (!FFinished) {
      SyncQueued.wait(Lock, [this] { return FFinished || !SyncQueue.empty(); });
      Lock.unlock();
      CheckSynchronize();
      Lock.lock();
    }
  } else {
    std::unique_lock Lock(SyncLock);
    SyncQueued.wait(Lock, [this] { return FFinished; });
  }
  // Execute has ended; what is left is Qt's own end of the thread.
  FThread->wait();
}

void TThread::SetPriority(TThreadPriority Value)
{
  FPriority = Value;
  if (FThread->isRunning())
    FThread->setPriority(QtPriority(Value));
}

void TThread::Synchronize(const std::function<void()> &Method)
{
  if (IsMainThread()) {
    Method();
    return;
  }
  TSyncRequest Request{Method, nullptr, false};
  {
    std::lock_guard Lock(SyncLock);
    SyncQueue.push_back(&Request);
  }
  SyncQueued.notify_all();
  if (QCoreApplication *App = QCoreApplication::instance())
    QMetaObject::invokeMethod(App, [] { CheckSynchronize(); }, Qt::QueuedConnection);
  {
    std::unique_lock Lock(SyncLock);
    SyncDone.wait(Lock, [&Request] { return Request.Done; });
  }
  if (Request.Error)
    std::rethrow_exception(Request.Error);
}

void TSimpleEvent::SetEvent()
{
  {
    std::lock_guard Lock(FLock);
    FSet = true;
  }
  FChanged.notify_all();
}

void TSimpleEvent::ResetEvent()
{
  std::lock_guard Lock(FLock);
  FSet = false;
}

TSimpleEvent::TWaitResult TSimpleEvent::WaitFor(int Milliseconds)
{
  std::unique_lock Lock(FLock);
  return FChanged.wait_for(Lock, std::chrono::milliseconds(Milliseconds), [this] { return FSet; }) ? wrSignaled
                                                                                                   : wrTimeout;
}

} // namespace vx
