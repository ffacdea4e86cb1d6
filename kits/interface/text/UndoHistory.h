#ifndef INTERFACE_UNDO_HISTORY_H
#define INTERFACE_UNDO_HISTORY_H

// What was done to a text, step by step, to be taken back and brought back. What there is no memory
// for is forgotten, and all before it. One thread.

#include <TextView.h>

#include <deque>
#include <string>
#include <vector>

#include "interface/text/StyleRuns.h"
#include "interface/text/TextBuffer.h"

namespace [[gnu::visibility("hidden")]] BPrivate {

// One change: bytes in the place of others, or styles in the place of others.
struct TextEdit {
    int32 offset = 0;
    std::string removed, inserted;
    std::vector<StyleRun> removedRuns, insertedRuns;
    bool styles = false;  // the bytes stay

    size_t Size() const;
};

struct TextSelection {
    int32 start = 0, end = 0;
};

struct UndoStep {
    undo_state kind = B_UNDO_UNAVAILABLE;
    std::vector<TextEdit> edits;
    TextSelection before, after;
    bool open = false;   // typing may go on
    bool blank = false;  // what was typed last
    size_t size = 0;
};

class UndoHistory {
public:
    bool Enabled() const { return fEnabled; }
    void Enable(bool enabled);
    void Clear();
    // What is done is not written down; counts.
    void Suspend(bool suspend) { fSuspended += suspend ? 1 : -1; }
    bool Records() const { return fEnabled && fSuspended == 0; }

    const UndoStep* Last() const { return fDone.empty() ? nullptr : &fDone.back(); }
    const UndoStep* Next() const { return fUndone.empty() ? nullptr : &fUndone.back(); }

    // What is added between Begin() and End() is one step. A step of typing goes on with the one
    // before if that is of typing, and ended where this one begins.
    void Begin(undo_state kind, TextSelection selection);
    void End(TextSelection selection);
    bool IsOpen() const { return fDepth > 0; }
    // Typing that follows is a step of its own.
    void Close();

    void AddInsertion(int32 offset, const char* text, int32 length);
    void AddRemoval(int32 offset, const TextBuffer& buffer, const StyleRuns& runs, int32 length);
    // The styles of a part that had these before.
    void AddStyles(int32 offset, const std::vector<StyleRun>& before, const StyleRuns& runs);

    // Takes the last step that was done, or taken back, out: for the caller to carry out, and to
    // put on the other side, unless all was cleared meanwhile.
    enum class Side { Done, Undone };
    UndoStep Take(Side side);
    void Put(Side side, UndoStep step);
    uint32 Generation() const { return fGeneration; }  // changes with Clear()

private:
    template <class Fill>
    void _Add(int32 offset, Fill fill);
    void _Forget();
    void _Keep(UndoStep& step);
    bool _GoesOn(const UndoStep& step) const;
    void _Trim();

    bool fEnabled = true;
    int32 fSuspended = 0;
    uint32 fGeneration = 0;
    int32 fDepth = 0;      // of Begin() without End()
    UndoStep fStep;        // the one being made
    bool fForgot = false;  // part of it
    std::deque<UndoStep> fDone, fUndone;
    size_t fSize = 0;  // of fDone
};

}  // namespace BPrivate

#endif  // INTERFACE_UNDO_HISTORY_H
