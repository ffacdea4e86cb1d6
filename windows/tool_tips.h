#ifndef WINDOWS_TOOL_TIPS_H
#define WINDOWS_TOOL_TIPS_H

// What the windows and the gadgets of a program have to say to their tool tips. Any thread.

#include <string>

class BView;
class MyWinClass;

// The text that a view has itself, if it has one.
bool tip_of(const BView* view, std::string* text);
// Drops the text of a view that goes, in whatever window it has one, and takes it off the screen.
void forget_tip(const BView* view);
// Takes the tool tips off a window that goes.
void release_tool_tips(MyWinClass* window);

#endif  // WINDOWS_TOOL_TIPS_H
