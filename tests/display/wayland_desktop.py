"""Programs on a Wayland desktop with a person at it: wayland_desktop.py SCENARIO PROGRAM_FOLDER. The
compositor draws the titles; its places are its own, so that windows are brought where they are
wanted, and programs keep the places that they asked for."""

import os
import sys

from desktop import GROUND, LEFT, MIDDLE, RIGHT, Failure, eventually, play

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
    desktop.hands.key("right")  # the keys begin with the first item
    desktop.hands.key("right")
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
def menu_by_program(desktop):
    shown = program(desktop, "display_shown_menu")
    eventually(lambda: len(desktop.windows()) == 1, "no window")
    title = desktop.windows()[0]["name"] or ""
    desktop.move(title, 300, 220)
    desktop.shows(BLUE, 302, 222)
    shown.ask("", "shown")
    desktop.shows(FACE, 322, 272)
    for x, y in ((318, 272), (322, 268)):
        desktop.shows(BLUE, x, y)


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
    desktop.hands.move(700, 600)
    listener.expect("pointer 700 600")
    desktop.hands.click(700, 600)
    listener.expect("press 700 600 1 1")
    listener.mark()
    desktop.command(window, "fullscreen disable")
    listener.expect("zoomed")
    listener.expect("resized %d %d" % (width - 1, height - 1))
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
    desktop.hands.click(311, 308, MIDDLE)
    texts.expect("changed 13 other one two")


play(globals())
