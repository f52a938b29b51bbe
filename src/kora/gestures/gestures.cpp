#include <kora/gestures/gestures.h>
bool KORA::koraGesturesInit()
{
    return true;
}
