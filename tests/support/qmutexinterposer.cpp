// SPDX-License-Identifier: Apache-2.0
//
// Tells ThreadSanitizer what Qt's mutexes and events order; part of every program of a thread-sanitizer build.
//
// Qt itself is not built with the sanitizer, which sees nothing of a lock inside libQt5Core and takes correct code for a
// race. A program's functions come before those of its libraries: these stand between Qt and the library, its plugins and
// the tests. Calls inside libQt5Core do not come here.
//
// QMutexLocker and QRecursiveMutex come to QMutex. QBasicMutex is locked inline, by an atomic operation that the sanitizer
// sees; only where two threads meet it calls lockInternal() and unlockInternal(). An event is released when it is posted,
// and acquired when Qt is about to deliver it.
#include <QtCore/QCoreApplication>
#include <QtCore/QMutex>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace {

// The function of that name in Qt. Libraries lock before the program's static objects are made: this needs no making.
template<typename Function>
class QtFunction
{
public:
    constexpr explicit QtFunction(const char *symbol)
        : m_symbol(symbol)
    {}

    Function *get()
    {
        Function *function = m_function.load(std::memory_order_relaxed);
        if (!function) {
            function = reinterpret_cast<Function *>(dlsym(RTLD_NEXT, m_symbol));
            if (!function) {
                std::fprintf(stderr, "%s is not in Qt\n", m_symbol);
                std::abort();
            }
            m_function.store(function, std::memory_order_relaxed);
        }
        return function;
    }

private:
    const char *m_symbol;
    std::atomic<Function *> m_function{nullptr};
};

// The second of the arguments is the event, after its receiver.
bool acquireEvent(void **arguments)
{
    __tsan_acquire(arguments[1]);
    return false; // it is delivered
}

const bool isRegistered = QInternal::registerCallback(QInternal::EventNotifyCallback, acquireEvent);

} // namespace

void QMutex::lock() noexcept
{
    static QtFunction<void(QMutex *)> lockOfQt("_ZN6QMutex4lockEv");
    lockOfQt.get()(this);
    __tsan_acquire(this);
}

bool QMutex::tryLock(int timeout) noexcept
{
    static QtFunction<bool(QMutex *, int)> tryLockOfQt("_ZN6QMutex7tryLockEi");
    const bool isLocked = tryLockOfQt.get()(this, timeout);
    if (isLocked) {
        __tsan_acquire(this);
    }
    return isLocked;
}

void QMutex::unlock() noexcept
{
    static QtFunction<void(QMutex *)> unlockOfQt("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    unlockOfQt.get()(this);
}

void QBasicMutex::lockInternal() noexcept
{
    static QtFunction<void(QBasicMutex *)> lockOfQt("_ZN11QBasicMutex12lockInternalEv");
    lockOfQt.get()(this);
    __tsan_acquire(this);
}

void QBasicMutex::unlockInternal() noexcept
{
    static QtFunction<void(QBasicMutex *)> unlockOfQt("_ZN11QBasicMutex14unlockInternalEv");
    __tsan_release(this);
    unlockOfQt.get()(this);
}

void QCoreApplication::postEvent(QObject *receiver, QEvent *event, int priority)
{
    static QtFunction<void(QObject *, QEvent *, int)> postEventOfQt(
        "_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    __tsan_release(event);
    postEventOfQt.get()(receiver, event, priority);
}
