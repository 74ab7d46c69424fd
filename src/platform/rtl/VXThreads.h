#pragma once
// The thread classes of the host framework over QThread: TThread with its Terminated flag and the
// hand-over to the main thread (Synchronize), and TSimpleEvent, a manual-reset event to sleep on.
//
// Synchronize does not use a blocking queued connection: its calls wait in a queue of their own
// that the main thread runs from its event loop and from WaitFor. So a main thread that waits for
// a thread which is itself waiting in Synchronize runs the call instead of deadlocking.
#include "platform/rtl/VXClasses.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

namespace vx {

enum TThreadPriority : std::uint8_t { tpIdle, tpLowest, tpLower, tpNormal, tpHigher, tpHighest, tpTimeCritical };

// True on the thread of the Qt application object (without one, on the thread that loaded vxsvg).
bool IsMainThread();
// Runs the Synchronize calls that wait for the main thread; called on the main thread. The event
// loop calls it by itself; a main thread without an event loop calls it while it waits.
void CheckSynchronize();

// A thread that runs Execute once. Execute must not be running while the fields it reads are
// destroyed: a class that adds such fields calls Terminate and WaitFor first in its destructor
// (the base destructor comes too late, after the derived fields are gone). For the same reason a
// constructor never starts the thread itself before the most derived class is complete: classes
// whose constructors take CreateSuspended call Start at their end.
class TThread : public TObject
{
public:
  TThread();
  ~TThread() override;
  QString ClassName() const override { return QStringLiteral("TThread"); }

  // Starts a thread made suspended; once only.
  void Start();
  // Sets Terminated and calls TerminatedSet; Execute decides when to stop.
  void Terminate();
  bool Terminated() const { return FTerminated.load(); }
  // Returns once Execute has ended (at once for a thread never started). On the main thread it
  // runs pending Synchronize calls while it waits.
  void WaitFor();
  bool Finished() const;
  TThreadPriority Priority() const { return FPriority; }
  void SetPriority(TThreadPriority Value);
  // The message of the exception that ended Execute; empty when none did.
  QString FatalException() const;

protected:
  // The thread's work. An exception that leaves it ends the thread and is kept in FatalException.
  virtual void Execute() = 0;
  // Called by Terminate, on the terminating thread: the place to wake an Execute that sleeps.
  virtual void TerminatedSet() {}
  // Runs Method on the main thread and returns when it has run; directly when already there. An
  // exception of Method is raised again here.
  static void Synchronize(const std::function<void()> &Method);

private:
  class TQtThread;
  void Run();

  std::unique_ptr<TQtThread> FThread;
  std::atomic<bool> FTerminated = false;
  bool FStarted = false;
  // Written by the thread at its end under the Synchronize lock, which WaitFor waits on.
  bool FFinished = false;
  QString FFatalException;
  TThreadPriority FPriority = tpNormal;
};

// A manual-reset event: SetEvent wakes every waiter and stays set until ResetEvent.
class TSimpleEvent : public TObject
{
public:
  enum TWaitResult : std::uint8_t { wrSignaled, wrTimeout };
  QString ClassName() const override { return QStringLiteral("TSimpleEvent"); }

  void SetEvent();
  void ResetEvent();
  TWaitResult WaitFor(int Milliseconds);

private:
  std::mutex FLock;
  std::condition_variable FChanged;
  bool FSet = false;
};

} // namespace vx
