#ifndef INTERFACE_REPLICANT_MESSAGES_H
#define INTERFACE_REPLICANT_MESSAGES_H

// What handles and shelves say to each other.

#include <SupportDefs.h>

class BDragger;
class BShelf;
class BView;

namespace [[gnu::visibility("hidden")]] BPrivate {

const uint32 kRemoveReplicant = '_RMR';  // to the handle
// Fields of a dragged archive: the handle beside its target; the replicant that is moved.
inline const char* const kDraggerField = "__widget";
inline const char* const kReplicantField = "_replicant";

// The replicant that a handle belongs to: the target, or the handle around it.
struct ReplicantIds {
    static int32 Of(const BShelf& shelf, const BView* target, const BDragger* handle);
    static int32 IndexOf(const BShelf& shelf, const BView* target, const BDragger* handle);
};

}  // namespace BPrivate

#endif  // INTERFACE_REPLICANT_MESSAGES_H
