#pragma once
// Waiting for work that other threads hand over through the event loop, without sleeping for a
// fixed time: the loop runs until the condition holds, and fails after a generous deadline.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <functional>

namespace vxtest {

// Runs the event loop (which delivers the hand-overs) until Done holds or DeadlineMs pass.
inline bool WaitUntil(const std::function<bool()> &Done, int DeadlineMs = 20000)
{
  // The ticks only wake the loop to look at the deadline; a hand-over wakes it at once.
  QTimer Tick;
  Tick.start(50);
  QElapsedTimer Timer;
  Timer.start();
  while (!Done()) {
    if (Timer.elapsed() > DeadlineMs)
      return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

} // namespace vxtest
