// A picture played as calls of a program's own functions, in their order and with their arguments.

#include "Drawing.h"

#include <Picture.h>
#include <Region.h>
#include <Shape.h>

#include <sstream>
#include <string>

namespace {

// What was called, a line each.
struct Log {
    std::ostringstream lines;

    void Put(float number) { lines << ' ' << number; }
    void Put(int32 number) { lines << ' ' << number; }
    void Put(int16 number) { lines << ' ' << number; }
    void Put(bool claim) { lines << (claim ? " yes" : " no"); }
    void Put(BPoint point) { lines << ' ' << point.x << ',' << point.y; }
    void Put(BRect r)
    {
        lines << ' ' << r.left << ',' << r.top << ',' << r.right << ',' << r.bottom;
    }
    void Put(rgb_color c) { lines << ' ' << +c.red << ',' << +c.green << ',' << +c.blue; }
    void Put(pattern p) { lines << ' ' << (p == B_SOLID_HIGH ? "high" : "mixed"); }
    void Put(const char* text) { lines << " \"" << text << '"'; }
};

// The function of a table entry: logs its name and arguments.
template <int entry>
const char* sName;

template <int entry, class... Args>
void enter(void** table, const char* name)
{
    sName<entry> = name;
    table[entry] = reinterpret_cast<void*>(+[](void* user, Args... args) {
        Log& log = *static_cast<Log*>(user);
        log.lines << sName<entry>;
        (log.Put(args), ...);
        log.lines << '\n';
    });
}

// Places that come as an array and its length.
template <int entry, class... More>
void enter_polygon(void** table, const char* name)
{
    sName<entry> = name;
    table[entry] =
        reinterpret_cast<void*>(+[](void* user, int32 count, BPoint* points, More... more) {
            Log& log = *static_cast<Log*>(user);
            log.lines << sName<entry>;
            for (int32 i = 0; i < count; i++)
                log.Put(points[i]);
            (log.Put(more), ...);
            log.lines << '\n';
        });
}

template <int entry>
void enter_bezier(void** table, const char* name)
{
    sName<entry> = name;
    table[entry] = reinterpret_cast<void*>(+[](void* user, BPoint* points) {
        Log& log = *static_cast<Log*>(user);
        log.lines << sName<entry>;
        for (int i = 0; i < 4; i++)
            log.Put(points[i]);
        log.lines << '\n';
    });
}

const int32 kEntries = 48;

// The state of a fresh view, which every picture brings along.
const std::string kStart = "high 0,0,0\nlow 255,255,255\nmode 0\npen size 1\npen at 0,0\n";

void fill_table(void** table)
{
    enter<2, BPoint, BPoint>(table, "line");
    enter<3, BRect>(table, "rect");
    enter<4, BRect>(table, "fill rect");
    enter<5, BRect, BPoint>(table, "round");
    enter<6, BRect, BPoint>(table, "fill round");
    enter_bezier<7>(table, "bezier");
    enter_bezier<8>(table, "fill bezier");
    enter<9, BPoint, BPoint, float, float>(table, "arc");
    enter<10, BPoint, BPoint, float, float>(table, "fill arc");
    enter<11, BPoint, BPoint>(table, "ellipse");
    enter<12, BPoint, BPoint>(table, "fill ellipse");
    enter_polygon<13, bool>(table, "polygon");
    enter_polygon<14>(table, "fill polygon");
    enter<17, const char*, float, float>(table, "text");
    enter<22>(table, "push");
    enter<23>(table, "pop");
    enter<28, BPoint>(table, "origin");
    enter<29, BPoint>(table, "pen at");
    enter<30, int16>(table, "mode");
    enter<32, float>(table, "pen size");
    enter<33, rgb_color>(table, "high");
    enter<34, rgb_color>(table, "low");
    enter<35, pattern>(table, "pattern");
    enter<36, float>(table, "scale");
}

std::string played(BPicture& picture)
{
    void* table[kEntries] = {};
    fill_table(table);
    Log log;
    EXPECT_EQ(B_OK, picture.Play(table, kEntries, &log));
    return log.lines.str();
}

}  // namespace

TEST(PictureTable, CallsArriveWithTheirArguments)
{
    Board board;
    BView& view = *board.view;
    const BPoint points[] = {{1, 2}, {3, 4}, {5, 6}};
    BPoint curve[] = {{0, 1}, {2, 3}, {4, 5}, {6, 7}};
    BPicture picture;
    view.BeginPicture(&picture);
    view.MovePenTo(9, 8);
    view.StrokeLine(BPoint(1, 1), BPoint(2, 3));
    view.BeginLineArray(1);
    view.AddLine(BPoint(4, 4), BPoint(5, 5), rgb_color{7, 8, 9, 255});
    view.EndLineArray();
    view.StrokeRect(BRect(1, 2, 3, 4), B_MIXED_COLORS);
    view.FillRect(BRect(1, 2, 3, 4));
    view.StrokeRoundRect(BRect(1, 2, 30, 40), 5, 6);
    view.FillRoundRect(BRect(1, 2, 30, 40), 7, 8);
    view.StrokeBezier(curve);
    view.FillBezier(curve);
    view.StrokeArc(BPoint(1, 2), 3, 4, 10, 20);
    view.FillArc(BPoint(1, 2), 3, 4, 30, 40);
    view.StrokeEllipse(BPoint(1, 2), 3, 4);
    view.FillEllipse(BPoint(5, 6), 7, 8);
    view.StrokePolygon(points, 3, true);
    view.StrokePolygon(points, 2, false);
    view.FillPolygon(points, 3);
    view.DrawString("Hi", BPoint(3, 9));
    view.PushState();
    view.SetOrigin(2, 3);
    view.SetScale(2);
    view.SetDrawingMode(B_OP_INVERT);
    view.SetPenSize(4);
    view.SetHighColor(1, 2, 3);
    view.SetLowColor(4, 5, 6);
    view.PopState();
    view.EndPicture();
    EXPECT_EQ(kStart +
                  "pen at 9,8\n"
                  "pattern high\nline 1,1 2,3\n"
                  "high 7,8,9\nline 4,4 5,5\n"
                  "pattern mixed\nrect 1,2,3,4\n"
                  "pattern high\nfill rect 1,2,3,4\n"
                  "pattern high\nround 1,2,30,40 5,6\n"
                  "pattern high\nfill round 1,2,30,40 7,8\n"
                  "pattern high\nbezier 0,1 2,3 4,5 6,7\n"
                  "pattern high\nfill bezier 0,1 2,3 4,5 6,7\n"
                  "pattern high\narc 1,2 3,4 10 20\n"
                  "pattern high\nfill arc 1,2 3,4 30 40\n"
                  "pattern high\nellipse 1,2 3,4\n"
                  "pattern high\nfill ellipse 5,6 7,8\n"
                  "pattern high\npolygon 1,2 3,4 5,6 yes\n"
                  "pattern high\npolygon 1,2 3,4 no\n"
                  "pattern high\nfill polygon 1,2 3,4 5,6\n"
                  "pen at 3,9\ntext \"Hi\" 0 0\n"
                  "push\norigin 2,3\nscale 2\nmode " +
                  std::to_string(B_OP_INVERT) + "\npen size 4\nhigh 1,2,3\nlow 4,5,6\npop\n",
              played(picture));
}

TEST(PictureTable, PassesOverWhatItHasNoEntryFor)
{
    Board board;
    BView& view = *board.view;
    BShape shape;
    shape.MoveTo(BPoint(0, 0));
    shape.LineTo(BPoint(9, 9));
    BRegion region(BRect(0, 0, 5, 5));
    BBitmap bitmap(BRect(0, 0, 1, 1), B_RGBA32);
    BPicture inner, picture;
    view.BeginPicture(&inner);
    view.FillRect(BRect(1, 1, 2, 2));
    view.EndPicture();
    view.BeginPicture(&picture);
    view.InvertRect(BRect(0, 0, 1, 1));
    view.CopyBits(BRect(0, 0, 1, 1), BRect(2, 2, 3, 3));
    view.FillShape(&shape);
    view.ClipToShape(&shape);
    view.ClipToRect(BRect(0, 0, 9, 9));
    view.ClipToPicture(&inner);
    view.ConstrainClippingRegion(&region);
    view.ConstrainClippingRegion(nullptr);
    view.DrawBitmap(&bitmap, BPoint(1, 1));
    view.SetBlendingMode(B_PIXEL_ALPHA, B_ALPHA_OVERLAY);
    view.SetLineMode(B_ROUND_CAP, B_ROUND_JOIN, 5);
    view.SetFillRule(B_NONZERO);
    view.SetTransform(BAffineTransform::AffineScaling(2));
    view.SetFontSize(20);
    const BPoint places[] = {{1, 1}, {9, 1}};
    view.DrawString("ab", places, 2);
    view.DrawPicture(&inner, BPoint(4, 5));
    view.EndPicture();
    EXPECT_EQ(kStart + "push\norigin 4,5\n" + kStart + "pattern high\nfill rect 1,1,2,2\npop\n",
              played(picture));
}
