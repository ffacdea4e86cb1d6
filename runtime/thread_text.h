#ifndef RUNTIME_THREAD_TEXT_H
#define RUNTIME_THREAD_TEXT_H

// Results that each thread has a text of its own for.

#include <string>

// The calling thread's text at `place`, which is thread-local and null at first; it goes with the
// thread. Null if there is no memory for it: a thread-local object with a destructor would end the
// process then.
//
//     static thread_local std::string* tText = nullptr;
//     std::string* text = thread_text(&tText);
std::string* thread_text(std::string** place);

#endif  // RUNTIME_THREAD_TEXT_H
