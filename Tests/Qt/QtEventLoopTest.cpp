#include <unistd.h>

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include "Network/QNHTTPPost.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Qt/QtDesktop.h"
#include "Qt/Widgets/QtEventLoop.h"
#include "Support/RawServer.h"
#include "Support/Testing.h"

namespace {

using namespace std::chrono_literals;
using Clock = EventLoop::Clock;

NSRunLoop& mainLoop() { return NSRunLoop::currentRunLoop(); }

TEST(QtEventLoop, PostsInTheBackgroundFinishWhileTheApplicationRuns) {
  struct Delegate : QNHTTPPostDelegate {
    void postFinished(QNHTTPPost&) override { QCoreApplication::quit(); }
    void postFailed(QNHTTPPost&, const Ref<NSError>&) override { QCoreApplication::exit(1); }
  } delegate;
  RawServer server([](RawPeer& peer) {
    RawRequest request;
    if (peer.read(request)) peer.drip(answer("200 OK", "thanks"), 1);
  });
  QNHTTPPost post(textFromUTF8(server.base()), &delegate);
  post.postAndNotify(nullptr);
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_EQ(post.response(), u"thanks");
  // The application has been told to quit, which keeps nobody from waiting for more.
  post.postAndNotify(nullptr);
  mainLoop().run();
  EXPECT_EQ(post.response(), u"thanksthanks");
}

// A dialog opened by a call is a loop within the loop: what stood behind the call happens there.
TEST(QtEventLoop, CallsAreMadeWhileADialogIsOpen) {
  std::string heard;
  QDialog dialog;
  const auto note = [&](char what) {
    return [&, what] {
      heard += what;
      if (heard.size() == 4) dialog.accept();
    };
  };
  mainLoop().eventLoop().callAt(Clock::now(), [&] {
    note('a')();
    dialog.exec();
    heard += '.';
  });
  mainLoop().eventLoop().callAt(Clock::now(), note('b'));
  mainLoop().performBlock([&] { mainLoop().performBlock(note('c')); });
  mainLoop().performBlock(note('d'));
  mainLoop().run();
  EXPECT_THAT(heard, UnorderedElementsAre('a', 'b', 'c', 'd', '.'));
  EXPECT_EQ(heard.back(), '.');
}

TEST(QtEventLoop, IsLeftWhenTheApplicationIsToldToQuit) {
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  mainLoop().eventLoop().watch(pipe[0], EventLoop::Readable,
                               [&](unsigned) { mainLoop().eventLoop().unwatch(pipe[0]); });
  QTimer::singleShot(0, [] {
    QTimer::singleShot(0, [] { QCoreApplication::exit(3); });
    mainLoop().run();
  });
  EXPECT_EQ(QApplication::exec(), 3) << "and what the application ran itself did not keep it";
  ASSERT_EQ(write(pipe[1], "x", 1), 1);
  mainLoop().run();
  close(pipe[0]);
  close(pipe[1]);
}

TEST(QtEventLoop, WhatNobodyWaitsForIsLoggedWhenItThrows) {
  CapturedSystemLog log;
  mainLoop().performBlock([] { throw std::runtime_error("oh"); });
  mainLoop().performBlock([] { QCoreApplication::quit(); });
  EXPECT_EQ(QApplication::exec(), 0);
  const std::vector<Text> lines = log.takeWithoutPlaces();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0], u"ERROR - Exception occurred: oh");
}

// As at the application's end.
TEST(QtEventLoop, GoesOnWithoutQt) {
  QtEventLoop loop;
  std::string heard;
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  loop.watch(pipe[0], EventLoop::Readable, [&](unsigned) {
    heard += 'r';
    loop.unwatch(pipe[0]);
  });
  loop.callAt(Clock::now(), [&] { heard += 't'; });
  loop.callSoon([&] { heard += 's'; });
  loop.detach();
  ASSERT_EQ(write(pipe[1], "x", 1), 1);
  QCoreApplication::processEvents();
  EXPECT_EQ(heard, "");
  while (loop.wait(Clock::time_point::max())) continue;
  EXPECT_EQ(heard, "srt");
  loop.watch(pipe[0], EventLoop::Readable, [&](unsigned) { heard += 'R'; });
  loop.attach();
  while (heard.back() != 'R') QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  close(pipe[0]);
  close(pipe[1]);
}

}  // namespace
