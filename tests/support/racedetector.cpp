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

constexpr int eventCount = 2000;

class NumberEvent : public QEvent
{
public:
    NumberEvent()
        : QEvent(QEvent::User)
    {}

    int number = 0;
};

class Receiver : public QObject
{
public:
    int count = 0;
    int sum = 0;

    void customEvent(QEvent *event) override
    {
        sum += static_cast<NumberEvent *>(event)->number;
        ++count;
    }
};

// Posts events from another thread until all are received.
template<typename Post>
int sumOfEvents(Post post)
{
    Receiver receiver;
    std::thread poster([&] {
        for (int i = 0; i < eventCount; ++i) {
            post(receiver);
        }
    });
    while (receiver.count < eventCount) {
        QCoreApplication::processEvents();
    }
    poster.join();
    return receiver.sum;
}

// Plain numbers, written before their event is posted and read when it is handled.
bool handOverByEvent()
{
    const auto writeAndPost = [](Receiver &receiver) {
        auto *event = new NumberEvent;
        event->number = 1;
        QCoreApplication::postEvent(&receiver, event);
    };
    return sumOfEvents(writeAndPost) == eventCount;
}

// A plain number, written by one thread after the event that the other reads it at.
bool writeAfterEvent()
{
    const auto postAndWrite = [](Receiver &receiver) {
        QCoreApplication::postEvent(&receiver, new NumberEvent);
        ++receiver.sum;
    };
    sumOfEvents(postAndWrite);
    return true;
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
