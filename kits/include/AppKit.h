#ifndef _APP_KIT_H
#define _APP_KIT_H

// Everything of the App Kit.

#include <AppDefs.h>
#include <Application.h>
#include <Clipboard.h>
#include <Cursor.h>
#include <Handler.h>
#include <Invoker.h>
#include <Looper.h>
#include <Message.h>
#include <MessageFilter.h>
#include <MessageQueue.h>
#include <MessageRunner.h>
#include <Messenger.h>
#include <PropertyInfo.h>
#include <Roster.h>

#endif  // _APP_KIT_H
