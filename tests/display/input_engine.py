"""An input method of the tests' own for ibus: letters are composed, underlined, until a space makes
a word of them ("nihao" is 你好) or Escape drops them; Return keeps the letters, having taken them
back first, as some methods do. Prints where the program says that its caret is. With "check" it
only tells by its status whether there is an ibus."""

import sys

try:
    import gi
    gi.require_version("IBus", "1.0")
    from gi.repository import GLib, IBus
except (ImportError, ValueError):
    sys.exit(77)

NAME = "test-words"
WORDS = {"nihao": "你好"}


class Engine(IBus.Engine):
    __gtype_name__ = "TestWordsEngine"

    def __init__(self, **properties):
        super().__init__(**properties)
        self.letters = ""

    def show(self):
        text = IBus.Text.new_from_string(self.letters)
        text.append_attribute(IBus.AttrType.UNDERLINE, IBus.AttrUnderline.SINGLE, 0,
                              len(self.letters))
        self.update_preedit_text(text, len(self.letters), bool(self.letters))

    def keep(self, word):
        self.commit_text(IBus.Text.new_from_string(word))
        self.letters = ""
        self.show()

    def keep_late(self, word):
        self.letters = ""
        self.show()
        self.commit_text(IBus.Text.new_from_string(word))

    def do_process_key_event(self, value, code, state):
        if state & (IBus.ModifierType.RELEASE_MASK | IBus.ModifierType.CONTROL_MASK):
            return False
        if ord("a") <= value <= ord("z"):
            self.letters += chr(value)
            self.show()
            return True
        if not self.letters:
            return False
        if value == IBus.KEY_space:
            self.keep(WORDS.get(self.letters, self.letters))
        elif value == IBus.KEY_Return:
            self.keep_late(self.letters)
        elif value in (IBus.KEY_BackSpace, IBus.KEY_Escape):
            self.letters = self.letters[:-1] if value == IBus.KEY_BackSpace else ""
            self.show()
        return True

    def do_set_cursor_location(self, x, y, width, height):
        print("caret %d %d %d %d" % (x, y, width, height), flush=True)

    def do_focus_in(self):
        print("focus", flush=True)

    def do_reset(self):
        self.letters = ""
        print("reset", flush=True)


def main():
    IBus.init()
    bus = IBus.Bus()
    if not bus.is_connected():
        sys.exit("no ibus")
    loop = GLib.MainLoop()
    bus.connect("disconnected", lambda _: loop.quit())
    factory = IBus.Factory.new(bus.get_connection())
    factory.add_engine(NAME, Engine)
    component = IBus.Component.new("org.test.Words", "Words", "1", "", "", "", "", "")
    component.add_engine(IBus.EngineDesc.new(NAME, NAME, "", "zh", "", "", "", "us"))
    bus.register_component(component)

    # Not to be waited for: ibus asks this process for the engine.
    def chosen(source, result):
        try:
            source.set_global_engine_async_finish(result)
            print("ready", flush=True)
        except GLib.Error:
            choose()

    def choose():
        bus.set_global_engine_async(NAME, -1, None, chosen)
    choose()
    loop.run()


if "check" not in sys.argv:
    main()
