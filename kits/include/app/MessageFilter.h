#ifndef _MESSAGEFILTER_H
#define _MESSAGEFILTER_H

#include <Handler.h>
#include <SupportDefs.h>

class BLooper;
class BMessage;
class BMessageFilter;

enum filter_result { B_SKIP_MESSAGE = 0, B_DISPATCH_MESSAGE = 1 };

enum message_delivery { B_ANY_DELIVERY = 0, B_DROPPED_DELIVERY = 1, B_PROGRAMMED_DELIVERY = 2 };

enum message_source { B_ANY_SOURCE = 0, B_REMOTE_SOURCE = 1, B_LOCAL_SOURCE = 2 };

typedef filter_result (*filter_hook)(BMessage*, BHandler**, BMessageFilter*);

/* Sees the messages of a handler, or as a common filter those of a looper, before they are
   dispatched; on the looper's thread, locked. Input and window messages come from a local source,
   as those of the program itself. */
class BMessageFilter {
public:
    BMessageFilter(uint32 what, filter_hook func = nullptr);
    BMessageFilter(message_delivery delivery, message_source source, filter_hook func = nullptr);
    BMessageFilter(message_delivery delivery, message_source source, uint32 what,
                   filter_hook func = nullptr);
    BMessageFilter(const BMessageFilter& filter);
    BMessageFilter(const BMessageFilter* filter);
    virtual ~BMessageFilter();

    /* The tests and the function; not the place where `from` is installed. */
    BMessageFilter& operator=(const BMessageFilter& from);

    /* Hook, called if there is no function: B_SKIP_MESSAGE drops the message. May change the
       target to another handler of the looper, whose filters run then. */
    virtual filter_result Filter(BMessage* message, BHandler** _target);

    message_delivery MessageDelivery() const;
    message_source MessageSource() const;
    uint32 Command() const;
    bool FiltersAnyCommand() const;
    BLooper* Looper() const;  // null while not installed

private:
    friend class BHandler;
    friend class BLooper;

    bool _Takes(const BMessage* message) const;
    void _SetOwner(BHandler* owner);

    bool fAnyCommand;
    uint32 fCommand;
    message_delivery fDelivery;
    message_source fSource;
    filter_hook fFunction;
    BHandler* fOwner;  // looper or handler where it is installed
};

#endif  // _MESSAGEFILTER_H
