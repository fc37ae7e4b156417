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

    def runs(self, words, environment=None):
        """Starts the program that is used from now on."""
        self._program = subprocess.Popen(words, env=environment)
        return self._program

    def starts(self, words, environment=None):
        """The same, and waits for its window."""
        self.runs(words, environment)
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

    def reads(self, beginning):
        """A text of which only the beginning matters: what changes every moment may be missed on a busy machine."""
        self.waits_for(f'"{beginning}…"', lambda: any(
            element.name.startswith(beginning) for element, _ in self.everything()))

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

    def waits_in_front(self, role, name):
        """Until that window, or that control of one, is what keys are struck for."""
        def in_front():
            states = self.find(role, name).getState()
            return states.contains(pyatspi.STATE_FOCUSED) or states.contains(pyatspi.STATE_ACTIVE)
        self.waits_for(f'{role} "{name}" in front', in_front)

    def clicks(self, element, right, below):
        """Clicks at a place within an element; a negative one is told from the other side."""
        place = element.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        x = place.x + right + (place.width if right < 0 else 0)
        y = place.y + below + (place.height if below < 0 else 0)
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "1"], check=True)

    def window(self, title="Tarnby cleaner"):
        """A window of the program, as the window manager knows it."""
        found = _told("search", "--all", "--onlyvisible", "--pid", str(self._program.pid), "--name",
                      f"^{title}$").split()
        return found[0] if found else ""

    def has_in_front(self, window):
        """Whether it is that window which the window manager gives the keys to."""
        return _told("getactivewindow").strip() == window

    def waits_for_end(self, program=None):
        """The exit status."""
        return (program or self._program).wait(max(1.0, self._deadline - time.monotonic()))

    def closes_window(self):
        """The exit status. The window manager may still be busy with a window that came to the front, and miss a key."""
        while True:
            self.strikes("alt+F4")
            try:
                return self._program.wait(3)
            except subprocess.TimeoutExpired:
                if time.monotonic() > self._deadline:
                    raise

    def find(self, role, name):
        """None when it is not shown. What goes away while it is looked at is looked for anew."""
        for attempts_left in reversed(range(50)):
            try:
                return next((element for element, _ in self.everything()
                             if element.getRoleName() == role and element.name == name), None)
            except gi.repository.GLib.Error:
                if attempts_left == 0:
                    raise

    def everything(self):
        """All that the program shows, from the top, each with its depth."""
        if self._program is None:
            return
        for program in pyatspi.Registry.getDesktop(0):
            if program is not None and program.get_process_id() == self._program.pid:
                yield from self.below(program)

    def below(self, element, depth=0):
        """All that is shown within an element, each with its depth."""
        for child in element:
            if child is not None and child.getState().contains(pyatspi.STATE_SHOWING):
                yield child, depth
                yield from self.below(child, depth + 1)

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


def _told(*words):
    return subprocess.run(["xdotool", *words], check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          text=True).stdout
