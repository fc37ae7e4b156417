"""Someone who uses a program by what it shows to assistive technology: finds controls by role and name, presses them,
types, clicks. Waiting looks again and again until something is so; one deadline holds for everything."""

import subprocess
import time

import gi.repository.GLib
import pyatspi

DEADLINE_SECONDS = 90
LOOK_AGAIN_SECONDS = 0.001


class Person:
    def __init__(self):
        self._deadline = time.monotonic() + DEADLINE_SECONDS
        self._program = None

    def starts(self, words):
        """Starts the program that is used from now on, and waits for its window."""
        self._program = subprocess.Popen(words)
        self.sees("frame", "Tarnby cleaner")
        return self._program

    def waits_for(self, what, condition):
        """Waits until the condition holds, and gives what it returned."""
        while True:
            try:
                if found := condition():
                    return found
            except (gi.repository.GLib.Error, AttributeError, ValueError, FileNotFoundError):
                pass  # what was looked at went away meanwhile
            ended = self._program is not None and self._program.poll() is not None
            if ended or time.monotonic() > self._deadline:
                why = f", the program ended with {self._program.returncode}" if ended else ""
                raise AssertionError(f"waited in vain for {what}{why}")
            time.sleep(LOOK_AGAIN_SECONDS)

    def sees(self, role, name):
        return self.waits_for(f'{role} "{name}"', lambda: self.find(role, name))

    def presses(self, name, role="push button"):
        """Presses the button of that name as soon as it is there and can be pressed."""
        def enabled():
            button = self.find(role, name)
            return button if button and button.getState().contains(pyatspi.STATE_ENABLED) else None
        self.waits_for(f'enabled {role} "{name}"', enabled).queryAction().doAction(0)

    def types_into(self, field, text):
        field.queryEditableText().setTextContents(text)

    def strikes(self, *keys):
        subprocess.run(["xdotool", "key", *keys], check=True)

    def clicks(self, element, right, below):
        """Clicks at a place within an element; a negative one is told from the other side."""
        place = element.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        x = place.x + right + (place.width if right < 0 else 0)
        y = place.y + below + (place.height if below < 0 else 0)
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "1"], check=True)

    def window(self):
        """The program's window, as the window manager knows it."""
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(self._program.pid), "--name",
                                "^Tarnby cleaner$"], check=False, capture_output=True, text=True).stdout.split()
        return found[0] if found else ""

    def waits_for_end(self, program=None):
        """The exit status."""
        return (program or self._program).wait(max(1.0, self._deadline - time.monotonic()))

    def find(self, role, name):
        for element, _ in self.everything():
            if element.getRoleName() == role and element.name == name:
                return element
        return None

    def everything(self):
        """All that the program shows, from the top, each with its depth."""
        if self._program is None:
            return
        for program in pyatspi.Registry.getDesktop(0):
            if program is not None and program.get_process_id() == self._program.pid:
                yield from _below(program, 0)

    def tells(self):
        """What is shown, as an indented text."""
        lines = []
        try:
            for element, depth in self.everything():
                focused = " (focused)" if element.getState().contains(pyatspi.STATE_FOCUSED) else ""
                lines.append(f'{"  " * depth}{element.getRoleName()} "{element.name}" {element.description}{focused}')
        except gi.repository.GLib.Error as error:
            lines.append(str(error))
        return "\n".join(lines)


def _below(element, depth):
    for child in element:
        if child is not None and child.getState().contains(pyatspi.STATE_SHOWING):
            yield child, depth
            yield from _below(child, depth + 1)
