#ifndef RUNTIME_GUARDED_H
#define RUNTIME_GUARDED_H

// Where memory may fail. A compiled program knows nothing of exceptions, and its handlers may have
// no tables to pass one through: none leaves an exported function.

#include <exception>

// The result of `act`, `failed` where its memory failed.
template <class Result, class Act>
Result guarded(Result failed, Act&& act)
{
    try {
        return act();
    } catch (const std::exception&) {  // not what ends a thread
        return failed;
    }
}

// Does `act` as far as there is memory for it.
template <class Act>
void guarded(Act&& act)
{
    try {
        act();
    } catch (const std::exception&) {
    }
}

#endif  // RUNTIME_GUARDED_H
