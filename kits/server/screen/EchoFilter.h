#ifndef SERVER_ECHO_FILTER_H
#define SERVER_ECHO_FILTER_H

#include <OS.h>

#include <deque>
#include <utility>

namespace server {

// Tells the screen's answer to a change of our own from a change made by somebody else. Whoever
// changes the value guards it.
template <class Value>
class EchoFilter {
public:
    // The value from the start, which nobody asked for.
    void Start(Value value) { fNewest = value; }
    void Asked(Value value)
    {
        fNewest = value;
        fAsked.push_back({value, system_time()});
    }
    // What was asked for last, or came from the screen after it.
    Value Newest() const { return fNewest; }
    // True if the program knows of `value` already, or has asked for another one since.
    bool IsEcho(Value value)
    {
        while (!fAsked.empty() && system_time() - fAsked.front().second > kPatience_us)
            fAsked.pop_front();
        for (size_t i = 0; i < fAsked.size(); i++) {
            if (fAsked[i].first == value) {
                fAsked.erase(fAsked.begin(), fAsked.begin() + i + 1);
                return true;
            }
        }
        if (value == fNewest)
            return true;
        fNewest = value;
        fAsked.clear();  // an answer that comes later is news again
        return false;
    }

private:
    static constexpr bigtime_t kPatience_us = 10000000;  // then the screen never answers it

    Value fNewest{};
    std::deque<std::pair<Value, bigtime_t>> fAsked;
};

}  // namespace server

#endif  // SERVER_ECHO_FILTER_H
