#ifndef _SUPPORT_KIT_H
#define _SUPPORT_KIT_H

// Everything of the Support Kit.

#include <Archivable.h>
#include <Autolock.h>
#include <Beep.h>
#include <BlockCache.h>
#include <BufferedDataIO.h>
#include <BufferIO.h>
#include <ByteOrder.h>
#include <ClassInfo.h>
#include <DataIO.h>
#include <Debug.h>
#include <Errors.h>
#include <Flattenable.h>
#include <FormatMacros.h>
#include <List.h>
#include <Locker.h>
#include <parsedate.h>
#include <StopWatch.h>
#include <String.h>
#include <StringList.h>
#include <SupportDefs.h>
#include <TLS.h>
#include <TypeConstants.h>
#include <UTF8.h>

#endif  // _SUPPORT_KIT_H
