#ifndef _STORAGE_KIT_H
#define _STORAGE_KIT_H

// Everything of the Storage Kit.

#include <AppFileInfo.h>
#include <Directory.h>
#include <Entry.h>
#include <EntryList.h>
#include <File.h>
#include <FindDirectory.h>
#include <Mime.h>
#include <MimeType.h>
#include <Node.h>
#include <NodeInfo.h>
#include <NodeMonitor.h>
#include <Path.h>
#include <Statable.h>
#include <StorageDefs.h>
#include <SymLink.h>
#include <Volume.h>
#include <VolumeRoster.h>

#endif  // _STORAGE_KIT_H
