// BEntryList: the interface of what lists entries.

#include <EntryList.h>

BEntryList::BEntryList() {}

BEntryList::~BEntryList() {}
