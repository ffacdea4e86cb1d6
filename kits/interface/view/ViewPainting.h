#ifndef INTERFACE_VIEW_PAINTING_H
#define INTERFACE_VIEW_PAINTING_H

#include <interface/drawing/FinePicture.h>
#include <interface/view/ViewPrivate.h>

namespace BPrivate {

// Draws on the view's window or bitmap by paint(target), which gives the box that it has changed;
// on a bitmap that has a finer picture on that as well. The view is ready.
template <class Paint>
inline void paint_on(ViewData& data, const Paint& paint)
{
    data.canvas->Touched(paint(data.target));
    if (FinePicture* fine = data.canvas->Fine()) [[unlikely]]
        fine->DrawAlong(data.target, paint);
}

}  // namespace BPrivate

#endif  // INTERFACE_VIEW_PAINTING_H
