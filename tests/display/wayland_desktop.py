"""Programs on a Wayland desktop with a person at it: wayland_desktop.py SCENARIO PROGRAM_FOLDER. The
compositor draws the titles; its places are its own, so that windows are brought where they are
wanted, and programs keep the places that they asked for."""

import os
import sys

from desktop import KEYS, LEFT, RIGHT, Failure, eventually, play

GROUND, FACE, BLUE, YELLOW = "406080", "D8D8D8", "2060C0", "FFCB00"
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


play(globals())
