// SPDX-License-Identifier: Apache-2.0
#include "endsignals.h"

#include <QtCore/QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int endPipe[2] = {-1, -1};

extern "C" void noteEnd(int)
{
    const int error = errno;
    const char byte = 0;
    if (::write(endPipe[1], &byte, 1) < 0) {
        // Full: the end is noted already.
    }
    errno = error;
}

} // namespace

EndSignals::EndSignals(QObject *parent)
    : QObject(parent)
{
    if (::pipe2(endPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals keep their default action
    }
    auto *notifier = new QSocketNotifier(endPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char bytes[16];
        if (::read(endPipe[0], bytes, sizeof bytes) > 0) {
            emit endRequested();
        }
    });
    struct sigaction action = {};
    action.sa_handler = noteEnd;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(number, &action, nullptr);
    }
}
