// SPDX-License-Identifier: Apache-2.0
//
// racedetector WAY
//
// Two threads count together, guarded in the way that the argument names; or one hands a number to the other by an event.
// ThreadSanitizer has to find the unguarded ways, and must find nothing in the others.
#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QMutex>
#include <QtCore/QObject>

#include <cstdio>
#include <thread>

namespace {

constexpr int rounds = 20000;

int counter = 0; // on purpose neither atomic nor behind a mutex of its own

template<typename First, typename Second>
bool countTogether(First first, Second second)
{
    const auto countIn = [](auto &guarded) {
        for (int i = 0; i < rounds; ++i) {
            guarded([] { ++counter; });
        }
    };
    std::thread other([&] { countIn(second); });
    countIn(first);
    other.join();
    return counter == 2 * rounds;
}

template<typename Mutex>
auto lockedWith(Mutex &mutex)
{
    return [&mutex](auto work) {
        mutex.lock();
        work();
        mutex.unlock();
    };
}

bool countUnderOneMutexInEachWay()
{
    static QMutex mutex;
    const auto byLocker = [](auto work) {
        const QMutexLocker lock(&mutex);
        work();
    };
    const auto byTrying = [](auto work) {
        while (!mutex.tryLock(1)) {
        }
        work();
        mutex.unlock();
    };
    return countTogether(byLocker, byTrying);
}

template<typename Mutex>
bool countUnderOne()
{
    static Mutex mutex;
    return countTogether(lockedWith(mutex), lockedWith(mutex));
}

// Each of the threads holds a mutex, and the other one's is another.
bool countUnderTwo()
{
    static QMutex first;
    static QMutex second;
    countTogether(lockedWith(first), lockedWith(second));
    return true;
}

bool countUnguarded()
{
    const auto unguarded = [](auto work) { work(); };
    countTogether(unguarded, unguarded);
    return true;
}

class Receiver : public QObject
{
public:
    bool isReceived = false;
    int received = 0;

    void customEvent(QEvent *) override
    {
        received = counter;
        isReceived = true;
    }
};

void postTo(Receiver &receiver)
{
    QCoreApplication::postEvent(&receiver, new QEvent(QEvent::User));
}

template<typename Work>
void runInThreadUntilReceived(Work work, const bool &isReceived)
{
    std::thread other(work);
    while (!isReceived) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    other.join();
}

// A plain variable, written before the event is posted and read when it is handled.
bool handOverByEvent()
{
    Receiver receiver;
    const auto writeAndPost = [&] {
        counter = 1;
        postTo(receiver);
    };
    runInThreadUntilReceived(writeAndPost, receiver.isReceived);
    return receiver.received == 1;
}

// The same variable, written when the event may be handled already.
bool writeAfterEvent()
{
    Receiver receiver;
    const auto postAndWrite = [&] {
        postTo(receiver);
        counter = 1;
    };
    runInThreadUntilReceived(postAndWrite, receiver.isReceived);
    return true;
}

// As by an event; the receiver of the signal lives in the other thread.
bool handOverBySignal()
{
    QObject sender;
    Receiver receiver;
    QObject::connect(
        &sender, &QObject::objectNameChanged, &receiver, [&] { receiver.customEvent(nullptr); },
        Qt::QueuedConnection);
    const auto writeAndEmit = [&] {
        counter = 1;
        sender.setObjectName(QStringLiteral("emits"));
    };
    runInThreadUntilReceived(writeAndEmit, receiver.isReceived);
    return receiver.received == 1;
}

struct Way
{
    const char *name;
    bool (*run)();
};

constexpr Way ways[] = {
    {"qmutex", countUnderOneMutexInEachWay},
    {"qrecursivemutex", countUnderOne<QRecursiveMutex>},
    {"qbasicmutex", countUnderOne<QBasicMutex>},
    {"event", handOverByEvent},
    {"signal", handOverBySignal},
    {"unguarded", countUnguarded},
    {"twomutexes", countUnderTwo},
    {"afterevent", writeAfterEvent},
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    for (const Way &way : ways) {
        if (argc == 2 && qstrcmp(argv[1], way.name) == 0) {
            return way.run() ? 0 : 1;
        }
    }
    std::fprintf(stderr, "usage: racedetector WAY\n");
    return 2;
}
