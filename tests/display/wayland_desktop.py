"""Programs on a Wayland desktop with a person at it: wayland_desktop.py SCENARIO PROGRAM_FOLDER. The
compositor draws the titles; its places are its own, so that windows are brought where they are
wanted, and programs keep the places that they asked for."""

import glob
import os
import shutil
import subprocess
import sys
import time

from desktop import GROUND, LEFT, MIDDLE, RIGHT, Failure, Skipped, eventually, play

FACE, BLUE, YELLOW = "D8D8D8", "2060C0", "FFCB00"
PROGRAMS = sys.argv[2]


def program(desktop, name, *arguments, **environment):
    started = desktop.program(os.path.join(PROGRAMS, name), *arguments, **environment)
    started.expect("ready")
    return started


class Menus:
    """The program of display/menus.c, its window's content at a place of the screen."""

    def __init__(self, desktop, x=300, y=220, *arguments):
        self.desktop, self.x, self.y = desktop, x, y
        self.program = program(desktop, "display_menus", *arguments)
        eventually(lambda: len(desktop.windows()) == 1, "no window")
        self.title = desktop.windows()[0]["name"] or ""
        desktop.move(self.title, x, y)
        desktop.shows(FACE, x + 20, y + 50)

    def point(self, x, y):
        self.desktop.hands.move(self.x + x, self.y + y)

    def click(self, x, y, button=LEFT):
        self.desktop.hands.click(self.x + x, self.y + y, button)

    # The line around the menu of the first title, left of its items.
    def menu_shows(self):
        return self.desktop.picture().at(self.x, self.y + 60) != FACE

    def submenu_shows(self):
        return self.desktop.picture().at(self.x + 193, self.y + 80) != FACE

    def expect_open(self):
        eventually(self.menu_shows, "no menu below its title")

    def expect_closed(self):
        eventually(lambda: not self.menu_shows(), "the menu stays")

    def open_file(self):
        self.click(12, 11)
        self.expect_open()


def menu_click(desktop):
    menus = Menus(desktop)
    menus.open_file()
    menus.click(30, 33)
    menus.program.expect("choice 101")
    menus.expect_closed()
    menus.click(150, 130)
    menus.program.expect("press 150 108 1 1")


def menu_drag(desktop):
    menus = Menus(desktop)
    desktop.hands.drag(menus.x + 12, menus.y + 11, menus.x + 30, menus.y + 33)
    menus.expect_open()
    menus.point(30, 52)
    desktop.hands.release()
    menus.program.expect("choice 102")
    menus.expect_closed()


def menu_submenu(desktop):
    menus = Menus(desktop)
    menus.open_file()
    menus.point(30, 72)
    eventually(menus.submenu_shows, "no submenu beside its item")
    menus.click(150, 72)
    menus.program.expect("choice 103")
    menus.expect_closed()


def menu_keys(desktop):
    menus = Menus(desktop)
    desktop.focus(menus.title)
    menus.open_file()
    desktop.hands.key("right")  # to the next title
    menus.expect_closed()
    desktop.hands.key("down")
    desktop.hands.key("enter")
    menus.program.expect("choice 202")
    menus.open_file()
    desktop.hands.key("escape")
    desktop.hands.key("escape")
    menus.expect_closed()
    menus.program.mark()
    desktop.hands.key("control", "o")
    menus.program.expect("choice 101")


# On the ground, and on another program's window, whatever lies between.
def menu_outside(desktop):
    menus = Menus(desktop)
    other = program(desktop, "display_operations")
    desktop.move("first window", 700, 500)
    for x, y in ((950, 50), (750, 550)):
        desktop.focus(menus.title)
        menus.open_file()
        menus.point(30, 72)
        eventually(menus.submenu_shows, "no submenu beside its item")
        desktop.hands.click(x, y)
        menus.expect_closed()
    menus.program.expect_not("choice 101")
    desktop.hands.click(750, 550)
    other.expect("press 50 50")
    menus.open_file()
    menus.click(30, 33)
    menus.program.expect("choice 101")


def menu_pop_up(desktop):
    menus = Menus(desktop)
    menus.click(150, 130, RIGHT)
    shows = lambda: desktop.picture().at(menus.x + 150, menus.y + 150) != FACE
    eventually(shows, "no menu at the pointer")
    menus.click(175, 138)
    menus.program.expect("choice 301")


# The screen ends before the menu does: it lies on the other side of its corner, where its items are
# to be clicked.
def menu_edges(desktop):
    menus = Menus(desktop, 960, 690)
    menus.click(12, 11)
    desktop.shows(FACE, 950, 620)
    desktop.shows(FACE, 850, 700)
    menus.click(30 - 113, 33 - 100)
    menus.program.expect("choice 101")
    desktop.shows(GROUND, 950, 620)


# A compositor gives no input to a menu that nobody asked for: it shows all the same.
def menu_by_program(desktop, *arguments):
    shown = program(desktop, "display_shown_menu", *arguments)
    eventually(lambda: len(desktop.windows()) == 1, "no window")
    title = desktop.windows()[0]["name"] or ""
    desktop.move(title, 300, 220)
    desktop.shows(BLUE, 302, 222)
    shown.ask("", "shown")
    desktop.shows(FACE, 322, 272)
    for x, y in ((318, 272), (322, 268)):
        desktop.shows(BLUE, x, y)
    if len(desktop.windows()) != 1:
        raise Failure("the menu is a window like others")


# Even one that takes the input, before there has been any.
def menu_before_input(desktop):
    menu_by_program(desktop, "takes the input")


def tip(desktop):
    tips = program(desktop, "display_tips")
    eventually(lambda: len(desktop.windows()) == 1, "no window")
    title = desktop.windows()[0]["name"] or ""
    desktop.move(title, 300, 220)
    turn = 0

    def shows():
        nonlocal turn
        turn += 1
        if turn % 60 == 1:  # it is seen for three seconds after a move
            desktop.hands.move(340 + turn % 2, 250)
        return desktop.picture().at(342, 271) == YELLOW
    eventually(shows, lambda: "no tip below the pointer but " + desktop.picture().at(342, 271))
    desktop.hands.press()
    desktop.hands.release()
    tips.expect("pressed")
    eventually(lambda: desktop.picture().at(342, 271) != YELLOW, "the tip stays")


# The compositor draws it; none is none.
def titles(desktop):
    calls = program(desktop, "display_operations")
    desktop.window("first window")
    calls.tell("title 1 Ärger & 長い名前")
    desktop.window("Ärger & 長い名前")
    calls.tell("title 1 ")
    desktop.window(" ")


# A program with one window, whose content is brought to (300, 220).
def alone(desktop, name, **environment):
    started = program(desktop, name, **environment)
    eventually(lambda: len(desktop.windows()) == 1, "no window")
    title = desktop.windows()[0]["name"] or ""
    desktop.move(title, 300, 220)
    desktop.focus(title)
    return started, title


def clicks(desktop):
    listener, _ = alone(desktop, "display_listener")
    hands = desktop.hands
    hands.move(350, 270)
    listener.expect("pointer 50 50")
    with hands.quick():
        for count in (1, 2, 3):
            hands.click(350, 270)
            listener.expect("press 50 50 1 %d" % count)
    for button, number in ((RIGHT, 2), (MIDDLE, 4)):
        hands.click(350, 270, button)
        listener.expect("press 50 50 %d 1" % number)
    for x, y in ((0, 0), (299, 199)):
        hands.click(300 + x, 220 + y)
        listener.expect("press %d %d 1 1" % (x, y))
    listener.mark()
    hands.click(800, 600)
    hands.move(340, 260)
    listener.expect("pointer 40 40")
    if any(line.startswith("press") for line in listener.lines()[listener.from_here:]):
        raise Failure("a press outside of the window")


def keys(desktop):
    listener, _ = alone(desktop, "display_listener")
    desktop.hands.type("a1")
    listener.expect("key 97 0")
    listener.expect("key 49 0")
    for held, name, line in (("shift", "b", "66 1"), ("control", "g", "7 4")):
        desktop.hands.hold(held)
        desktop.hands.key(name)
        listener.expect("key " + line)  # handlers ask what is held at that moment
        desktop.hands.let_go(held)
    for name in ("up", "left", "backspace", "enter", "escape"):
        desktop.hands.key(name)
    for line in ("30 0", "28 0", "8 0", "10 0", "27 0"):
        listener.expect("key " + line)


# What the compositor makes of the window; the place stays that which the program asked for.
def sizes(desktop):
    listener, title = alone(desktop, "display_listener")
    window = "[con_id=%d]" % desktop.window(title)["id"]
    desktop.command(window, "resize set 354 287")
    width, height = eventually(lambda: desktop.place(title)[2:] != (300, 200) and
                               desktop.place(title)[2:], "it keeps its size")
    listener.expect("resized %d %d" % (width - 1, height - 1))
    listener.mark()
    desktop.command(window, "fullscreen enable")
    listener.expect("zoomed")
    listener.expect("resized 1023 767")

    def pointed():  # the compositor may still show it where it was
        desktop.hands.move(701, 600)
        desktop.hands.move(700, 600)
        return listener.said_soon("pointer 700 600", 2)
    eventually(pointed, "no pointer in its corner")
    desktop.hands.click(700, 600)
    listener.expect("press 700 600 1 1")
    listener.mark()
    desktop.command(window, "fullscreen disable")
    listener.expect("zoomed")
    listener.expect("resized %d %d" % (width - 1, height - 1))
    if any(line.startswith("moved") for line in listener.lines()):
        raise Failure("it has moved")


# What a program's own title asks of a compositor that knows it: one in a window of the other, which
# draws no titles.
def maximize(desktop):
    if shutil.which("weston") is None:
        raise Skipped("no weston")
    desktop.program("weston", "--backend=wayland-backend.so", "--use-pixman", "--no-config",
                    "--width=900", "--height=600", "--idle-time=0", "--socket=inner")
    eventually(lambda: os.path.exists(os.path.join(desktop.runtime, "inner")), "no compositor")
    desktop.move("Weston Compositor - wayland0", 50, 100)
    listener = program(desktop, "display_listener", WAYLAND_DISPLAY="inner")
    hands, place = desktop.hands, None

    def blue_box():
        """Left, top, width and height."""
        box = desktop.picture().box_of(BLUE)
        return box and (box[0], box[1], box[2] - box[0] + 1, box[3] - box[1] + 1)

    def settled():
        nonlocal place
        before, place = place, blue_box()
        return place == before and place is not None and place[2:] == (300, 200)
    eventually(settled, lambda: "blue is %r" % (place,))

    def click_button(width):
        listener.mark()
        hands.click(place[0] + width - 37, place[1] - 15)
        listener.expect("zoomed")

    def resized():
        lines = [line.split() for line in listener.lines()[listener.from_here:]]
        return [(int(line[1]), int(line[2])) for line in lines if line[0] == "resized"][-1:]
    click_button(300)
    width, height = eventually(resized, "it keeps its size")[0]
    if width < 880 or not 500 < height < 590:
        raise Failure("it fills %d by %d" % (width, height))
    old = place
    eventually(lambda: settled() and place != old, "it does not go to the corner")
    for x, y in ((700, 400), (width - 8, height - 8)):
        hands.click(place[0] + x, place[1] + y)
        listener.expect("press %d %d 1 1" % (x, y))
    click_button(width + 1)
    listener.expect("resized 299 199")
    old = place
    eventually(lambda: settled() and place != old, "it does not go back")
    hands.click(place[0] + 290, place[1] + 190)
    listener.expect("press 290 190 1 1")
    if any(line.startswith("moved") for line in listener.lines()):
        raise Failure("it has moved")


# Out of sight no picture is lost, and being seen again is told.
def covered(desktop):
    listener, title = alone(desktop, "display_listener")
    desktop.shows(BLUE, 310, 230)
    window = "[con_id=%d]" % desktop.window(title)["id"]
    desktop.command(window, "move scratchpad")
    desktop.shows(GROUND, 310, 230)
    desktop.command(window, "scratchpad show")
    eventually(lambda: desktop.focused() == title, "it does not come back")
    x, y = desktop.place(title)[:2]
    desktop.shows(BLUE, x + 10, y + 10)
    desktop.hands.click(x + 50, y + 50)
    listener.expect("press 50 50 1 1")


# Where the compositor draws no titles the program does: the whole of one that there is room for,
# the start of any other. The buttons are those of the window.
def own_titles(desktop):
    calls = program(desktop, "display_operations")
    calls.tell("title 2 other")
    for title in ("first window", "other"):
        desktop.dressed(desktop.window(title))
    desktop.border = "csd"
    for title in ("first window", "other"):
        desktop.command("[con_id=%d]" % desktop.window(title)["id"], "border csd")
    calls.expect("resized 293 166")  # which takes it from the room that the compositor gave
    desktop.move("first window", 300, 220)
    desktop.focus("first window")
    desktop.hands.click(300 + 300 - 16, 234)
    calls.expect("close requested")
    calls.mark()
    desktop.hands.click(300 + 300 - 61, 234)
    calls.expect("minimized 1")
    desktop.focus("other")
    desktop.focus("first window")
    calls.expect("minimized 0")
    desktop.hands.click(350, 300)
    eventually(lambda: any(line.startswith("press 4") for line in calls.lines()), "no press")
    calls.tell("title 1 " + "A title that says more than there is room for " * 4)
    eventually(lambda: any((each["name"] or "").endswith("\u2026") for each in desktop.windows()),
               "the title is not shortened")


# The cursor of a text is another one than that beside it.
def cursors(desktop):
    alone(desktop, "display_texts")

    def cursor_at(x, y):
        desktop.hands.move(x, y)
        picture = desktop.picture(cursor=True)
        return [picture.at(x + dx, y + dy) for dx in range(-8, 9) for dy in (-6, 0, 6)]
    eventually(lambda: len(set(cursor_at(580, 400))) > 1, "no cursor")
    arrow = cursor_at(580, 400)
    eventually(lambda: cursor_at(400, 380) != arrow, "the same cursor over a text")


def paste(desktop, primary=False):
    words = ["wl-paste", "--no-newline"] + ["--primary"] * primary
    return desktop.run(words).decode(errors="replace")


def copy(desktop, text, primary=False):
    desktop.run(["wl-copy"] + ["--primary"] * primary, text.encode())


def clipboard(desktop):
    texts, _ = alone(desktop, "display_texts")
    copy(desktop, "from another Ä")
    eventually(lambda: paste(desktop) == "from another Ä", "nothing is copied")
    desktop.hands.click(400, 380)
    desktop.hands.key("control", "v")
    texts.expect("changed 15 from another Ä")
    desktop.hands.key("control", "a")
    desktop.hands.key("control", "x")
    texts.expect("changed 0 ")
    eventually(lambda: paste(desktop) == "from another Ä", lambda: "there is " + paste(desktop))


# Selecting is enough for other programs, and theirs for the middle button.
def primary(desktop):
    texts, _ = alone(desktop, "display_texts")
    desktop.hands.click(400, 380)
    desktop.hands.type("one")
    desktop.hands.key("space")
    desktop.hands.type("two")
    texts.expect("changed 7 one two")
    desktop.hands.drag(311, 308, 500, 310)
    desktop.hands.release()
    eventually(lambda: paste(desktop, True) == "one two", "no selection")
    copy(desktop, "other ", True)
    eventually(lambda: paste(desktop, True) == "other ", "nothing is copied")
    desktop.hands.click(311, 308, MIDDLE)
    texts.expect("changed 13 other one two")


# Two programs beside each other, the first one's stripes at the left.
def two_draggers(desktop):
    first = program(desktop, "display_drag_user")
    eventually(lambda: len(desktop.windows()) == 1, "no window")
    desktop.move("drag user", 100, 220)
    desktop.command("[con_id=%d]" % desktop.window("drag user")["id"], "title_format moved")
    known = desktop.windows()[0]["id"]
    second = program(desktop, "display_drag_user")
    eventually(lambda: len(desktop.windows()) == 2, "no second window")
    other = next(each for each in desktop.windows() if each["id"] != known)
    desktop.dressed(other)
    desktop.command("[con_id=%d]" % other["id"], "move absolute position 600 220")
    desktop.shows(BLUE, 880, 400)
    return first, second


# A part of the picture that the cursor leaves free, wherever the compositor puts its hot spot.
def picture_at(desktop, x, y):
    return desktop.picture().at(x + 13, y + 2) not in (BLUE, GROUND)


# By steps, the first of them inside of the window: as a hand does, not before the drag is in sight.
def drag_from(desktop, program_, x, y, *places):
    program_.mark()
    desktop.hands.move(x, y)
    desktop.hands.press()
    program_.expect("drag")
    for at, place in enumerate(places):
        desktop.hands.move(*place)
        if at == 0:
            eventually(lambda: picture_at(desktop, *place), "no picture at the pointer")


# Drags until the line is there: who lets go before the other program has seen anything of it, on a
# machine that is busy, has to drag once more.
def drag_until(desktop, source, places, target, line):
    target.mark()
    for pause in range(1, 8):
        drag_from(desktop, source, 150, 300, *places)
        time.sleep(0.02 * 2 ** pause)
        desktop.hands.release()
        if target.said_soon(line, 2 * pause):
            break
    target.expect(line)


def drag_to_other(desktop):
    first, second = two_draggers(desktop)
    drag_until(desktop, first, ((200, 310), (500, 320), (700, 330), (710, 335)), second,
               "dropped text dragged ä")
    first.expect_not("dropped text dragged ä")
    second.expect_not("dropped here")  # an address


def drag_within(desktop):
    first, second = two_draggers(desktop)
    drag_until(desktop, first, ((200, 310), (700, 330), (300, 330), (310, 335)), first,
               "dropped here")
    second.expect_not("dropped here")


def drag_picture(desktop):
    first, _ = two_draggers(desktop)
    drag_from(desktop, first, 150, 300, (200, 310), (290, 310), (300, 320), (500, 400))
    eventually(lambda: picture_at(desktop, 500, 400), "the picture does not follow")
    desktop.shows(BLUE, 213, 312)
    desktop.hands.release()
    eventually(lambda: not picture_at(desktop, 500, 400), "the picture stays after the drop")


# Neither a click that is hardly a drag nor one that ends on the ground is in the way of the next.
def drag_to_nowhere(desktop):
    first, second = two_draggers(desktop)
    desktop.hands.click(150, 300)
    first.expect("drag")
    drag_from(desktop, first, 150, 300, (200, 310), (500, 600), (510, 610))
    desktop.hands.release()
    drag_until(desktop, first, ((200, 310), (700, 330), (710, 335)), second,
               "dropped text dragged ä")


# Out of another program; its window is the one at the right.
def drop_of_other(desktop, *arguments):
    ours = program(desktop, "display_drag_user")
    eventually(lambda: len(desktop.windows()) == 1, "no window")
    desktop.move("drag user", 100, 220)
    desktop.program(os.path.join(PROGRAMS, "display_drag_source"), *arguments,
                    QT_QPA_PLATFORM="wayland")
    desktop.window("drag source")
    desktop.move("drag source", 600, 220)
    for pause in range(1, 8):
        desktop.hands.drag(650, 270, 200, 320)
        time.sleep(0.02 * 2 ** pause)
        desktop.hands.release()
        if ours.said_soon("dropped at 200 220", 2 * pause):
            break
    return ours


def drop_text(desktop):
    drop_of_other(desktop, "--text").expect("dropped text fallen ü")


def drop_picture(desktop):
    drop_of_other(desktop, "--picture").expect("dropped image/png")


def drop_file(desktop):
    path = os.path.join(desktop.folder, "a file")
    open(path, "w").close()
    drop_of_other(desktop, path).expect("dropped file a file")


# What is blue fills a window of 300 by 200 on a screen, which begins at `left` and has so many pixels
# for each.
def fills(desktop, title, output, scale, left=0):
    inside = 0 if scale < 3 and scale == int(scale) else 2  # the compositor mixes pixels there
    desktop.hands.move(2, 2)

    def filled():
        x, y = [int(at * scale) for at in desktop.place(title)[:2]]
        x -= int(left * scale)
        right, bottom = x + int(300 * scale), y + int(200 * scale)
        picture = desktop.picture(output=output)
        return all(picture.at(*at) == BLUE for at in ((x + inside, y + inside),
                                                      (right - 1 - inside, bottom - 1 - inside))) \
            and all(picture.at(*at) == GROUND for at in ((x + 20, bottom + 8), (right + 8, y + 20)))
    eventually(filled, lambda: "it does not fill its place %r" % (desktop.place(title),))
    return desktop.place(title)[:2]


# Wherever it comes to lie when it is asked to go to a place near the one that is asked for.
def brought_to(desktop, title, x, y):
    def lies_there():
        left, top = desktop.place(title)[:2]
        if abs(left - x) < 30 and abs(top - y) < 50:
            return left, top
        desktop.command("[con_id=%d]" % desktop.window(title)["id"],
                        "move absolute position %d %d" % (x, y))
        return None
    return eventually(lies_there, lambda: "it lies at %r" % (desktop.place(title),))


# The user chooses another scale meanwhile; what the program counts stays.
def scale_changes(desktop):
    listener, title = alone(desktop, "display_listener")
    for scale in (2, 1.5, 3, 1):
        desktop.command("output HEADLESS-1 scale %g" % scale)
        brought_to(desktop, title, 20, 20)
        fills(desktop, title, "HEADLESS-1", scale)
        desktop.hands.extent = [10 * side for side in desktop.extent()]
        listener.mark()
        for where in ((50, 50), (2, 3), (297, 196)):
            line = "press %d %d 1 1" % where

            def lands():  # the compositor may just have brought it to another place
                x, y = desktop.place(title)[:2]
                desktop.hands.click((x + where[0]) * 10 + 5, (y + where[1]) * 10 + 5)
                return listener.said_soon(line, 2)
            eventually(lands, "no line " + line)
    if any(line.startswith(("resized", "moved")) for line in listener.lines()):
        raise Failure("its numbers have changed")


# Letters of the screen's pixels are not made of squares.
def expect_sharp(desktop, title, output, left=0):
    def broken_squares():
        x, y = [2 * at for at in desktop.place(title)[:2]]
        picture = desktop.picture(output=output)
        return sum(len({picture.at(column + dx - 2 * left, row + dy)
                        for dx in (0, 1) for dy in (0, 1)}) > 1
                   for row in range(y + 20, y + 68, 2) for column in range(x + 20, x + 120, 2))
    eventually(lambda: broken_squares() > 30, "the text is an enlarged one")


def sharp_after_change(desktop):
    _, title = alone(desktop, "display_texts")
    desktop.command("output HEADLESS-1 scale 2")
    brought_to(desktop, title, 20, 20)
    expect_sharp(desktop, title, "HEADLESS-1")


def sharp_on_other_output(desktop):
    _, title = alone(desktop, "display_texts")
    second_output(desktop, 2)
    brought_to(desktop, title, 1044, 60)
    expect_sharp(desktop, title, "HEADLESS-2", 1024)


def second_output(desktop, scale):
    desktop.command("create_output")
    desktop.command("output HEADLESS-2 resolution 1024x768 position 1024 0 scale %g "
                    "bg #406080 solid_color" % scale)
    desktop.hands.extent = 1024 + int(1024 / scale), 768
    desktop.shows(GROUND, 1, 1, output="HEADLESS-2")


# Each screen has its own scale: the window has its size on both.
def two_outputs(desktop):
    listener, title = alone(desktop, "display_listener")
    second_output(desktop, 2)
    brought_to(desktop, title, 1044, 60)
    x, y = fills(desktop, title, "HEADLESS-2", 2, 1024)
    desktop.hands.click(x + 299, y + 199)
    listener.expect("press 299 199 1 1")
    brought_to(desktop, title, 40, 60)
    x, y = fills(desktop, title, "HEADLESS-1", 1)
    desktop.hands.click(x + 50, y + 60)
    listener.expect("press 50 60 1 1")
    if any(line.startswith("resized") for line in listener.lines()):
        raise Failure("its size has changed")


def bad_scales(desktop):
    for number, word in enumerate(("0", "-2", "two", "nan")):
        started = program(desktop, "display_listener", QT_SCALE_FACTOR=word)
        eventually(lambda: len(desktop.windows()) == number + 1, "no window")

        def size():
            rect = max(desktop.windows(), key=lambda each: each["id"])["window_rect"]
            return rect["width"], rect["height"]
        eventually(lambda: size() == (300, 200), lambda: "with %s it is %r" % (word, size()))
        started.expect("ready")


def wheel(desktop):
    lists, _ = alone(desktop, "display_lists")
    desktop.hands.move(400, 240)
    for _ in range(5):
        desktop.hands.wheel(1)
    desktop.hands.click(401, 241)
    eventually(lambda: any(line.startswith("first") for line in lists.lines()), "no row")
    if lists.said("first 0 rows 0"):
        raise Failure("it has not scrolled")
    lists.mark()
    for _ in range(9):
        desktop.hands.wheel(-1)
    desktop.hands.click(440, 242)
    lists.expect("first 0 rows 0")


# Runs in memory where Qt has no way to the compositor.
def no_plugin(desktop):
    folders = glob.glob("/usr/lib/*/qt6/plugins/platforms")
    hidden = ["unshare", "-rm", "sh", "-c", 'mount -t tmpfs none "$0" && exec "$@"'] + folders[:1]
    if len(folders) != 1 or subprocess.run(hidden + ["true"], capture_output=True).returncode != 0:
        raise Skipped("nothing can be hidden from a program here")
    listener = desktop.program(*hidden, os.path.abspath(os.path.join(PROGRAMS, "display_listener")))
    listener.expect("ready")
    with open(listener.errors.name) as errors:
        if errors.read().count("in memory") != 1:
            raise Failure("it does not say where its windows are")


# The compositor of the tests has another protocol for it than this Qt: input methods come by the
# message bus.
def input_method(desktop):
    engine = os.path.join(os.path.dirname(os.path.abspath(__file__)), "input_engine.py")
    if shutil.which("ibus-daemon") is None or \
            subprocess.run(["/usr/bin/python3", "-B", engine, "check"]).returncode != 0:
        raise Skipped("no ibus")
    bus = os.path.join(desktop.folder, "bus")
    os.environ.update(DBUS_SESSION_BUS_ADDRESS="unix:path=" + bus, XDG_CACHE_HOME=desktop.folder)
    desktop.start(["dbus-daemon", "--session", "--nofork", "--nopidfile",
                   "--address=unix:path=" + bus])
    eventually(lambda: os.path.exists(bus), "no message bus")
    desktop.start(["ibus-daemon", "--panel=disable", "--emoji-extension=disable",
                   "--config=disable"])
    eventually(lambda: desktop.run(["ibus", "address"]).startswith(b"unix:"), "no ibus")
    method = desktop.program("/usr/bin/python3", "-B", engine)
    method.expect("ready")
    composer, _ = alone(desktop, "display_composer", QT_IM_MODULE="ibus")
    method.expect("focus")
    for letter in "nihao":
        desktop.hands.key(letter)
    composer.expect("opcode 0")
    composer.expect('opcode 2 "nihao" selection 5-5 clause 0-5')
    desktop.hands.key("space")
    eventually(lambda: any(line.startswith('opcode 2 "你好" confirmed')
                           for line in composer.lines()), "no word")
    composer.expect("opcode 1")
    composer.expect_not("key n")


play(globals())
