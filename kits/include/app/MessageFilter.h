#ifndef _MESSAGEFILTER_H
#define _MESSAGEFILTER_H

#include <SupportDefs.h>

class BHandler;
class BLooper;
class BMessage;
class BMessageFilter;

enum filter_result {
    B_SKIP_MESSAGE = 0,
    B_DISPATCH_MESSAGE = 1
};

enum message_delivery {
    B_ANY_DELIVERY = 0,
    B_DROPPED_DELIVERY = 1,
    B_PROGRAMMED_DELIVERY = 2
};

enum message_source {
    B_ANY_SOURCE = 0,
    B_REMOTE_SOURCE = 1,
    B_LOCAL_SOURCE = 2
};

typedef filter_result (*filter_hook)(BMessage *, BHandler **, BMessageFilter *);

class BMessageFilter {
public:
    BMessageFilter(uint32 what, filter_hook func = nullptr);
    BMessageFilter(message_delivery delivery, message_source source, filter_hook func = nullptr);
    BMessageFilter(message_delivery delivery, message_source source, uint32 what, filter_hook func = nullptr);
    BMessageFilter(const BMessageFilter& filter);
    BMessageFilter(const BMessageFilter* filter);
    virtual ~BMessageFilter();
    BMessageFilter& operator=(const BMessageFilter& from);
    virtual filter_result Filter(BMessage* message, BHandler** _target);
    message_delivery MessageDelivery() const;
    message_source MessageSource() const;
    uint32 Command() const;
    bool FiltersAnyCommand() const;
    BLooper* Looper() const;

private:
};

#endif  // _MESSAGEFILTER_H
