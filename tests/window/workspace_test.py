"""What the desktop does for the window: showing an entry in the file viewer, and our own panels about one."""

import json
import os
import pathlib
import shutil
import subprocess
import urllib.parse

import desktop
import window
from window import BUILD, OUTLINE, PROGRAM, run

FILE_MANAGER = "org.freedesktop.FileManager1"
REVEAL, PREVIEW, INFORMATION = 1, 2, 3  # how far down in the menu of a row

# A name that is no UTF-8 and full of what means something in an address, of a picture in one colour.
PICTURE = b"caf\xe9 #1%41?&;'\"\xc3\xa9~.ppm"
MAGENTA = b"\xff\x00\xff"
PANEL = b"\x50\x45\x42"  # what lies behind a list; no screen before has it

# Who answers in the name of the file manager is told to the bus in files; these come before the installed ones.
SERVICE = pathlib.Path(os.environ.get("XDG_RUNTIME_DIR", "/nowhere"), "dbus-1", "services", f"{FILE_MANAGER}.service")


class FileManager:
    """Stands in for a file manager on the session bus and keeps what it was asked to show."""

    def __init__(self):
        from gi.repository import Gio, GLib
        self._variant, self._take_turn = GLib.Variant, GLib.MainContext.default().iteration
        self.shown = []
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(
            f'<node><interface name="{FILE_MANAGER}"><method name="ShowItems"><arg type="as" direction="in"/>'
            '<arg type="s" direction="in"/></method></interface></node>').interfaces[0]
        self._bus.register_object("/org/freedesktop/FileManager1", interface, self._show, None, None)
        self._ask_bus("RequestName", self._variant("(su)", (FILE_MANAGER, 4)))

    def _show(self, _bus, _sender, _path, _interface, _method, arguments, call):
        self.shown.append(arguments.unpack())
        call.return_value(None)

    def _ask_bus(self, method, arguments=None):
        self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments,
                            None, 0, -1, None)

    def was_asked(self):
        self._take_turn(False)
        return self.shown

    def leaves_to(self, program):
        """From now on the bus starts that program when it wants a file manager; none stands for the installed one."""
        if program:
            SERVICE.parent.mkdir(parents=True, exist_ok=True)
            SERVICE.write_text(f"[D-BUS Service]\nName={FILE_MANAGER}\nExec={program}\n")
        else:
            SERVICE.unlink()
        self._ask_bus("ReloadConfig")
        self._ask_bus("ReleaseName", self._variant("(s)", (FILE_MANAGER,)))


class Road(window.Window):
    def setUp(self):
        super().setUp()
        self.grant_both()
        trash = self.home / ".Trash"
        shutil.rmtree(trash)
        (trash / "a folder").mkdir(parents=True)
        (trash / "a folder" / "within").write_bytes(b"x" * 1500)
        (trash / "gone.txt").write_text("soon")
        (trash / "words.txt").write_text("Some words.\n")
        (trash / os.fsdecode(PICTURE)).write_bytes(b"P6 400 300 255\n" + MAGENTA * 400 * 300)
        self.trash = trash

    def scan(self):
        """To the list, with the Trash open."""
        scanned = json.loads(run(BUILD / "tarnby-cleaner-cli", "scan", "--json"))
        self.labels = [item["label"] for item in scanned["groups"][-1]["items"]]
        self.person.presses("Scan")
        self.person.waits_in_front("tree", OUTLINE)
        self.person.strikes("End", "Return")
        self.person.waits_for("the rows", lambda: self.rows()[-1].startswith(self.labels[-1]))

    def choose(self, label, choice):
        """From the menu of a row in the Trash."""
        self.person.waits_in_front("tree", OUTLINE)
        up = len(self.labels) - 1 - self.labels.index(label)
        self.person.strikes("End", *["Up"] * up, "Menu", *["Down"] * choice, "Return")

    def close_panel(self, name):
        self.person.waits_in_front("dialog", name)
        self.person.strikes("Escape")
        self.person.waits_for("the panel to go", lambda: not self.person.find("dialog", name))

    def expect_information(self, label, **expected):
        self.choose(label, INFORMATION)
        panel = self.person.sees("dialog", label)
        def said():
            return {line.name: line.description for line in panel if line.description}
        self.person.waits_for(f"{expected} of {label}", lambda: expected.items() <= said().items())
        self.close_panel(label)

    def expect_preview(self, label, text):
        self.choose(label, PREVIEW)
        def said():
            parts = self.person.below(self.person.find("dialog", label))
            return [part.queryText().getText(0, -1) if part.getRoleName() == "text" else part.name for part, _ in parts]
        self.person.waits_for(f"{text} in the preview of {label}", lambda: text in said())
        self.close_panel(label)

    def test_what_is_known_of_an_entry_and_what_is_in_it(self):
        picture = PICTURE.decode(errors="replace")
        self.start()
        self.scan()
        (self.trash / "gone.txt").unlink()
        where = {"Where": str(self.trash)}
        self.expect_information("words.txt", Name="words.txt", Kind="File", Size="12 bytes", **where)
        self.expect_information("a folder", Kind="Folder", Size="2 KB (1,500)", **where)
        self.expect_information(picture, Name=picture, Kind="File", Size="360 KB (360,015)", **where)
        self.expect_information("gone.txt", Kind="Not there any more", Size="–", Changed="–", **where)
        self.expect_preview("words.txt", "Some words.\n")
        self.expect_preview("a folder", "within")
        self.expect_preview("gone.txt", "gone.txt\nNot there any more")
        self.choose(picture, PREVIEW)
        self.person.sees("dialog", picture)
        self.person.waits_for("the picture on the screen", lambda: desktop.Screen().shows(
            MAGENTA, 400, 250))  # the pointer may lie over the rest
        self.close_panel(picture)
        self.close_window()

    def test_an_entry_is_shown_in_the_file_manager_or_else_in_the_nearest_way(self):
        picture = PICTURE.decode(errors="replace")
        file_manager = FileManager()
        self.start()
        self.scan()
        self.choose(picture, REVEAL)
        self.person.waits_for("the file manager to be asked", file_manager.was_asked)
        self.assertEqual(file_manager.shown, [([address(self.trash / os.fsdecode(PICTURE))], "")])

        file_manager.leaves_to("/bin/false")
        self.choose("words.txt", REVEAL)
        self.expect_opened(address(self.trash))  # the nearest there is
        self.opener.unlink()
        self.choose("words.txt", REVEAL)
        notice = self.person.sees("dialog", "This could not be opened")
        self.assertEqual(notice.description, f"Nothing on this desktop opens {self.trash}.")
        self.person.presses("Close")
        if shutil.which("thunar"):
            file_manager.leaves_to(None)
            self.choose("words.txt", REVEAL)
            self.person.waits_for("the folder in the file manager", lambda: subprocess.run(
                ["xdotool", "search", "--onlyvisible", "--name", r"^\.Trash - Thunar$"], check=False,
                stdout=subprocess.DEVNULL).returncode == 0)
            run("xdotool", "windowactivate", "--sync", self.person.window())
        self.close_window()

    def test_without_a_session_bus_the_window_works(self):
        """It tells assistive technology nothing then, so what it does must show on the desktop."""
        someone = self.person
        someone.runs([PROGRAM], {key: value for key, value in os.environ.items() if key != "DBUS_SESSION_BUS_ADDRESS"})
        main = someone.waits_for("the window", someone.window)
        someone.waits_for("the window in front", lambda: someone.has_in_front(main))

        someone.strikes("Return")
        someone.waits_for("what was found", lambda: desktop.Screen().shows(PANEL, 200, 200))

        def reveals():
            someone.strikes("End", "Right", "End", "Menu", "Down", "Return")
            return (self.folder / "opened").read_text().splitlines()
        self.assertEqual(set(someone.waits_for("the folder opened", reveals)), {address(self.trash)})
        someone.strikes("End", "shift+space")
        preview = someone.waits_for("the preview", lambda: someone.window("words.txt.*"))
        someone.waits_for("the preview in front", lambda: someone.has_in_front(preview))
        someone.strikes("Escape")
        someone.waits_for("the window in front again", lambda: someone.has_in_front(main))
        self.assertEqual(someone.closes_window(), 0)


def address(path):
    return "file://" + urllib.parse.quote(os.fsencode(path))


if __name__ == "__main__":
    window.main(__file__)
