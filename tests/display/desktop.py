"""A Wayland desktop of a test's own, whose screen is in memory, and the hands and eyes of the person
at it: a pointer and a keyboard that the compositor takes for real ones, and pictures of the screen.
Everything waits with a deadline, and what was started is ended."""

import array
import atexit
import contextlib
import json
import os
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time

PATIENCE_S = 30  # only a fault reaches that
GROUND = "406080"
NOBODY = 65534   # the compositor refuses to run as root

CONFIGURATION = """
xwayland disable
output HEADLESS-1 resolution 1024x768 position 0 0 scale {scale} bg #406080 solid_color
for_window [shell=".*"] floating enable, border {border}
focus_follows_mouse no
floating_modifier none
floating_minimum_size 1 x 1
"""

KEYMAP = """xkb_keymap {
xkb_keycodes { include "evdev+aliases(qwerty)" };
xkb_types { include "complete" };
xkb_compat { include "complete" };
xkb_symbols { include "pc+us+inet(evdev)" };
};
"""

MODIFIERS = {42: 1, 29: 4, 56: 8}  # evdev's Shift, Control and Alt in XKB's bits
KEYS = {"escape": 1, "tab": 15, "enter": 28, "control": 29, "shift": 42, "alt": 56, "f4": 62,
        "up": 103, "left": 105, "right": 106, "down": 108, "backspace": 14, "space": 57}
for row, first in (("1234567890", 2), ("qwertyuiop", 16), ("asdfghjkl", 30), ("zxcvbnm", 44)):
    KEYS.update({letter: first + place for place, letter in enumerate(row)})
LEFT, RIGHT, MIDDLE = 0x110, 0x111, 0x112


class Failure(Exception):
    pass


class Skipped(Exception):
    """Something is not there that only this scenario needs."""


def eventually(claim, what):
    """Waits until `claim` is true and returns what it is; `what` may be a function as well."""
    end = time.monotonic() + PATIENCE_S
    while True:
        found = claim()
        if found:
            return found
        if time.monotonic() > end:
            raise Failure(what() if callable(what) else what)
        time.sleep(0.02)


def word(text):
    data = text.encode() + b"\0"
    return struct.pack("I", len(data)) + data + b"\0" * (-len(data) % 4)


def fixed(number):
    return int(number * 256)


class Hands:
    """A pointer and a keyboard, by the protocols that virtual ones have."""

    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(PATIENCE_S)
        self.socket.connect(path)
        self.rest = b""
        self.last = 1
        self.held = 0
        self.extent = 1024, 768  # of all screens
        self.start = time.monotonic()
        self.clock = None  # seconds from there, where it stands still
        registry = self._make(1, 1)
        self.globals = {}
        self._roundtrip(registry)
        seat = self._bind(registry, "wl_seat", 1)
        pointers = self._bind(registry, "zwlr_virtual_pointer_manager_v1", 1)
        keyboards = self._bind(registry, "zwp_virtual_keyboard_manager_v1", 1)
        self.pointer = self._make(pointers, 0, struct.pack("I", seat))
        self.keyboard = self._make(keyboards, 0, struct.pack("I", seat))
        keymap = KEYMAP.encode() + b"\0"
        memory = os.memfd_create("keymap")
        os.write(memory, keymap)
        self._send(self.keyboard, 0, struct.pack("II", 1, len(keymap)), memory)
        os.close(memory)
        self._roundtrip()

    def _send(self, target, opcode, data=b"", file=None):
        message = struct.pack("II", target, (len(data) + 8) << 16 | opcode) + data
        ancillary = []
        if file is not None:
            ancillary = [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [file]))]
        self.socket.sendmsg([message], ancillary)

    def _new(self):
        self.last += 1
        return self.last

    def _make(self, target, opcode, data=b""):
        made = self._new()
        self._send(target, opcode, data + struct.pack("I", made))
        return made

    def _bind(self, registry, name, version):
        if name not in self.globals:
            raise Failure("the compositor has no " + name)
        made = self._new()
        self._send(registry, 0, struct.pack("I", self.globals[name]) + word(name) +
                   struct.pack("II", version, made))
        return made

    def _event(self):
        while len(self.rest) < 8 or len(self.rest) < struct.unpack_from("I", self.rest, 4)[0] >> 16:
            data = self.socket.recv(65536)
            if not data:
                raise Failure("the compositor has hung up")
            self.rest += data
        sender, head = struct.unpack_from("II", self.rest)
        size = head >> 16
        body, self.rest = self.rest[8:size], self.rest[size:]
        return sender, head & 0xffff, body

    def _roundtrip(self, registry=None):
        callback = self._make(1, 0)
        while True:
            sender, opcode, body = self._event()
            if sender == callback:
                return
            if sender == 1 and opcode == 0:
                raise Failure("the compositor complains: %r" % body)
            if sender == registry and opcode == 0:
                name, length = struct.unpack_from("II", body)
                self.globals[body[8:7 + length].decode()] = name

    def _now(self):
        return int((self.clock or time.monotonic() - self.start) * 1000) & 0xffffffff

    def _pointer(self, opcode, *numbers):
        self._send(self.pointer, opcode, struct.pack("I%di" % len(numbers), self._now(), *numbers))
        self._send(self.pointer, 4)
        self._roundtrip()

    def move(self, x, y):
        self._pointer(1, int(x), int(y), *self.extent)

    def press(self, button=LEFT):
        self._pointer(2, button, 1)

    def release(self, button=LEFT):
        self._pointer(2, button, 0)

    def click(self, x, y, button=LEFT):
        self.move(x, y)
        self.press(button)
        self.release(button)

    @contextlib.contextmanager
    def quick(self):
        """However slow the machine is, what is done meanwhile is done at once."""
        self.clock = time.monotonic() - self.start
        yield
        self.clock = None

    def drag(self, x, y, to_x, to_y):
        """Goes there in steps, the button held."""
        self.move(x, y)
        self.press()
        for step in range(1, 11):
            self.move(x + (to_x - x) * step / 10, y + (to_y - y) * step / 10)

    def wheel(self, notches):
        self._send(self.pointer, 5, struct.pack("I", 0))
        self._pointer(7, 0, fixed(15 * notches), notches)

    def _key(self, code, down):
        self._send(self.keyboard, 1, struct.pack("III", self._now(), code, down))
        if code in MODIFIERS:
            self.held = self.held | MODIFIERS[code] if down else self.held & ~MODIFIERS[code]
            self._send(self.keyboard, 2, struct.pack("IIII", self.held, 0, 0, 0))
        self._roundtrip()

    def key(self, *names):
        """The last of the keys, with the others held."""
        codes = [KEYS[name] for name in names]
        for code in codes:
            self._key(code, 1)
        for code in reversed(codes):
            self._key(code, 0)

    def hold(self, name):
        self._key(KEYS[name], 1)

    def let_go(self, name):
        self._key(KEYS[name], 0)

    def type(self, text):
        for letter in text:
            self.key(letter)


class Picture:
    def __init__(self, ppm):
        head, numbers, depth, self.data = ppm.split(b"\n", 3)
        if head != b"P6" or depth != b"255":
            raise Failure("no picture of the screen")
        self.width, self.height = (int(number) for number in numbers.split())

    def at(self, x, y):
        """The colour there, as "2060C0"."""
        if not (0 <= x < self.width and 0 <= y < self.height):
            return "outside"
        start = (y * self.width + x) * 3
        return self.data[start:start + 3].hex().upper()

    def box_of(self, color):
        """Left, top, right and bottom of what has that colour, or None."""
        pixel = bytes.fromhex(color)
        left, top, right, bottom = self.width, None, -1, -1
        for y in range(self.height):
            row = self.data[y * self.width * 3:(y + 1) * self.width * 3]
            places = [at for at in self._places(row, pixel)]
            if places:
                top = y if top is None else top
                bottom = y
                left, right = min(left, places[0]), max(right, places[-1])
        return None if top is None else (left, top, right, bottom)

    @staticmethod
    def _places(row, pixel):
        at = row.find(pixel)
        while at >= 0:
            if at % 3 == 0:
                yield at // 3
            at = row.find(pixel, at + 1)


class Program:
    """A program whose lines are read, and which is told others."""

    def __init__(self, desktop, arguments, **environment):
        self.log = open(os.path.join(desktop.folder, "log%d" % len(desktop.started)), "w+b")
        self.errors = open(self.log.name + ".errors", "w+b")
        self.process = desktop.start(arguments, stdin=subprocess.PIPE, stdout=self.log,
                                     stderr=self.errors, **environment)
        desktop.programs.append(self)
        self.from_here = 0

    def lines(self):
        with open(self.log.name, errors="replace") as file:
            return file.read().split("\n")[:-1]

    def mark(self):
        self.from_here = len(self.lines())

    def said(self, line):
        return line in self.lines()[self.from_here:]

    def expect(self, line):
        def complaint():
            return "no line %r" % line
        eventually(lambda: self.said(line) or self._ended(line), complaint)

    def _ended(self, line):
        if self.process.poll() is not None and not self.said(line):
            raise Failure("no line %r: it has ended with %d" % (line, self.process.returncode))
        return False

    def said_soon(self, line, seconds):
        end = time.monotonic() + seconds
        while not self.said(line) and time.monotonic() < end:
            time.sleep(0.02)
        return self.said(line)

    def expect_not(self, line):
        if self.said(line):
            raise Failure("a line %r" % line)

    def tell(self, line):
        self.mark()
        self.process.stdin.write((line + "\n").encode())
        self.process.stdin.flush()

    def ask(self, line, answer):
        self.tell(line)
        self.expect(answer)


class Desktop:
    def __init__(self, scale=1, border="normal"):
        self.folder = tempfile.mkdtemp()
        self.border = border  # that windows are going to have
        self.started = []
        self.programs = []
        atexit.register(self.end)
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            signal.signal(number, lambda *_: sys.exit(1))
        os.chmod(self.folder, 0o755)
        runtime = os.path.join(self.folder, "run")
        os.mkdir(runtime, 0o700)
        configuration = os.path.join(self.folder, "configuration")
        with open(configuration, "w") as file:
            file.write(CONFIGURATION.format(scale=scale, border=border))
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "SWAYSOCK", "QT_QPA_PLATFORM",
                     "DBUS_SESSION_BUS_ADDRESS"):
            os.environ.pop(name, None)
        os.environ.update(XDG_RUNTIME_DIR=runtime, HOME=self.folder, XDG_CONFIG_HOME=self.folder)
        command = ["sway", "--config", configuration]
        if os.getuid() == 0:
            os.chown(runtime, NOBODY, NOBODY)
            user = str(NOBODY)
            command = ["setpriv", "--reuid", user, "--regid", user, "--clear-groups"] + command
        self.log = os.path.join(self.folder, "compositor")
        with open(self.log, "wb") as log:
            self.compositor = self.start(command, stdout=log, stderr=log, WLR_BACKENDS="headless",
                                         WLR_RENDERER="pixman", WLR_LIBINPUT_NO_DEVICES="1")
        eventually(lambda: self._find("wayland-", "") and self._find("sway-ipc", ".sock"),
                   "no compositor")
        os.environ["WAYLAND_DISPLAY"] = self._find("wayland-", "")
        os.environ["SWAYSOCK"] = os.path.join(runtime, self._find("sway-ipc", ".sock"))
        self.runtime = runtime
        eventually(lambda: self.tree() is not None, "no compositor that answers")
        self.hands = Hands(os.path.join(runtime, os.environ["WAYLAND_DISPLAY"]))
        eventually(lambda: self.picture().at(1, 1) == GROUND, "no ground on the screen")

    def _find(self, start, end):
        runtime = os.path.join(self.folder, "run")
        for name in os.listdir(runtime):
            if name.startswith(start) and name.endswith(end) and not name.endswith(".lock"):
                return name
        return None

    def start(self, arguments, stdin=subprocess.DEVNULL, stdout=None, stderr=None, **environment):
        process = subprocess.Popen(arguments, stdin=stdin, stdout=stdout, stderr=stderr,
                                   env=dict(os.environ, **environment))
        self.started.append(process)
        return process

    def run(self, arguments, text=None):
        """What another program says, which is given some text to read."""
        done = subprocess.run(arguments, input=text, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, timeout=PATIENCE_S)
        return done.stdout

    def program(self, *arguments, **environment):
        return Program(self, list(arguments), **environment)

    def end(self):
        for process in reversed(self.started):
            if process.poll() is None:
                process.terminate()
        for process in reversed(self.started):
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def tree(self):
        try:
            return json.loads(self.run(["swaymsg", "-r", "-t", "get_tree"]))
        except ValueError:
            return None

    def windows(self):
        """The compositor's windows, the focused ones among them marked."""
        found, open_nodes = [], [self.tree() or {}]
        while open_nodes:
            node = open_nodes.pop()
            open_nodes += node.get("nodes", []) + node.get("floating_nodes", [])
            if node.get("pid") and node.get("type") in ("con", "floating_con"):
                found.append(node)
        return found

    def window(self, title):
        return eventually(lambda: next((each for each in self.windows()
                                        if (each["name"] or "") == title), None),
                          lambda: "no window %r among %r" % (title, [each["name"]
                                                                     for each in self.windows()]))

    def place(self, title):
        """Left, top, width and height of a window's content."""
        node = self.window(title)
        rect, inner = node["rect"], node["window_rect"]
        return (rect["x"] + inner["x"], rect["y"] + inner["y"], inner["width"], inner["height"])

    def command(self, *words):
        self.run(["swaymsg", " ".join(words)])

    def dressed(self, node):
        """The same window once the compositor has drawn what it draws around it, which shifts the
        content, and moves it no more."""
        seen = []

        def rests():
            now = next((each for each in self.windows() if each["id"] == node["id"]), None)
            seen.append(now and [now[key] for key in ("border", "rect", "deco_rect", "window_rect")])
            if now is None or now["border"] != self.border or seen[-2:] != seen[-1:] * 2:
                return None
            return now if self.border != "normal" or now["deco_rect"]["height"] > 0 else None
        return eventually(rests, lambda: "a window comes to no rest: %r" % seen[-2:])

    def move(self, title, x, y):
        """Brings the left top of a window's content there."""
        self.dressed(self.window(title))
        identity = "[con_id=%d]" % self.window(title)["id"]
        asked = [x, y]  # of its corner with what the compositor draws around it

        def lies_there():
            left, top = self.place(title)[:2]
            if (left, top) == (x, y):
                return True
            self.command(identity, "move absolute position %d %d" % tuple(asked))
            left, top = self.place(title)[:2]
            asked[:] = [asked[0] + x - left, asked[1] + y - top]
            return False
        eventually(lies_there, lambda: "it lies at %r" % (self.place(title),))
        eventually(lambda: self.picture().at(x + 1, y + 1) != GROUND, "it does not show there")

    def extent(self):
        """Width and height of the first screen, as windows count them."""
        rect = json.loads(self.run(["swaymsg", "-r", "-t", "get_outputs"]))[0]["rect"]
        return rect["width"], rect["height"]

    def focused(self):
        return next((each["name"] for each in self.windows() if each["focused"]), None)

    def focus(self, title):
        self.command('[con_id=%d]' % self.window(title)["id"], "focus")
        eventually(lambda: self.focused() == title, "it does not get the keys")

    def picture(self, cursor=False, output=None):
        """All screens, or one in its own pixels."""
        data = self.run(["grim"] + ["-c"] * cursor + (["-o", output] if output else []) +
                        ["-t", "ppm", "-"])
        return Picture(data) if data else Picture(b"P6\n0 0\n255\n")

    def shows(self, color, x, y, output=None):
        seen = []

        def looks_so():
            seen.append(self.picture(output=output).at(x, y))
            return seen[-1] == color
        eventually(looks_so, lambda: "at %d, %d is %s, not %s" % (x, y, seen[-1], color))


def play(scenarios, **options):
    """Runs the scenario that the first argument names: a function of a desktop."""
    name = sys.argv[1]
    desktop = None
    try:
        desktop = Desktop(**options)
        scenarios[name](desktop)
    except Skipped as skipped:
        print("%s: %s" % (name, skipped), file=sys.stderr)
        sys.exit(77)
    except (Failure, subprocess.TimeoutExpired) as failure:
        print("%s: %s" % (name, failure), file=sys.stderr)
        for program in desktop.programs if desktop is not None else []:
            print("--- %s said:" % program.process.args[0], file=sys.stderr)
            for path in (program.log.name, program.errors.name):
                with open(path, errors="replace") as file:
                    print(file.read(), file=sys.stderr)
        sys.exit(1)
