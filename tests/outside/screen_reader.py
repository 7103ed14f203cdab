"""A program as a screen reader uses it: by the accessibility bus alone."""
# SPDX-License-Identifier: GPL-3.0-or-later
import collections
import itertools
import os
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

TIMEOUT_SECONDS = 15

# The texts that a person hears of a control; "label" is that of the label that names it, if any.
Control = collections.namedtuple("Control", "role name description label", defaults=[""])


class Failure(Exception):
    """A control that does not appear, or a text that differs."""


def wait_for(what, look, timeout=TIMEOUT_SECONDS):
    """Returns the result of look() once it is true; fails with `what` after the timeout."""
    deadline = time.monotonic() + timeout
    while True:
        try:
            found = look()
        except GLib.Error:
            found = None  # It disappeared meanwhile.
        if found:
            return found
        if time.monotonic() > deadline:
            raise Failure(f"timeout while waiting for: {what}")
        time.sleep(0.02)


def children(node):
    """Returns the nodes right below a node."""
    nodes = (node.get_child_at_index(i) for i in range(node.get_child_count()))
    return [child for child in nodes if child is not None]


def has(node, state):
    """Whether a node is in a state, by its name in Atspi.StateType."""
    return node.get_state_set().contains(getattr(Atspi.StateType, state))


def role_of(node):
    """Returns the role of a node by its newer name: a button is called "push button" by the
    libraries of Debian 12, "button" by those of Debian 13."""
    role = node.get_role_name()
    return "button" if role == "push button" else role


def label_of(node):
    """Returns the text of the label that names a node."""
    for relation in node.get_relation_set():
        if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY:
            return relation.get_target(0).get_name()
    return ""


class Window:
    """One window of the program; what can be seen in it can be read and operated."""

    def __init__(self, node):
        self.node = node

    def _seen(self, node=None):
        """Yields the nodes that are on the screen, in the order in which they are read."""
        for child in children(node or self.node):
            if has(child, "SHOWING"):
                yield child
                yield from self._seen(child)

    def controls(self):
        """Returns everything that has a name."""
        return [Control(role_of(node), node.get_name(), node.get_description(),
                        label_of(node)) for node in self._seen() if node.get_name()]

    def misplaced(self):
        """Returns the misplaced controls: those that leave the window or cover another."""
        def place(node):
            box = node.get_extents(Atspi.CoordType.SCREEN)
            return (box.x, box.y, box.x + box.width, box.y + box.height)

        places = [(node.get_name(), *place(node)) for node in self._seen() if node.get_name()]
        window = place(self.node)
        wrong = [f"\"{name}\" leaves the window" for name, *box in places
                 if box[0] < window[0] or box[1] < window[1] or box[2] > window[2]
                 or box[3] > window[3]]
        for (first, *one), (second, *other) in itertools.combinations(places, 2):
            if (one[0] < other[2] and other[0] < one[2] and one[1] < other[3]
                    and other[1] < one[3]):
                wrong.append(f"\"{first}\" and \"{second}\" overlap")
        return ", ".join(wrong)

    def find(self, role, name):
        """Waits for a control."""
        def look():
            return next((node for node in self._seen()
                         if role_of(node) == role and node.get_name() == name), None)
        return wait_for(f"{role} \"{name}\"", look)

    def is_enabled(self, role, name):
        """Whether a control takes input."""
        return has(self.find(role, name), "ENABLED")

    def await_enabled(self, role, name, enabled=True):
        """Waits until a control takes input, or no longer does."""
        wait_for(f"{role} \"{name}\" {'enabled' if enabled else 'disabled'}",
                 lambda: self.is_enabled(role, name) == enabled)

    def press(self, name):
        """Presses a button; fails where it is locked."""
        button = self.find("button", name)
        if not has(button, "ENABLED"):
            raise Failure(f"button \"{name}\" is locked")
        names = [button.get_action_name(i) for i in range(button.get_n_actions())]
        button.do_action(names.index("Press"))

    def type(self, name, text):
        """Puts a text into a field."""
        self.find("text", name).set_text_contents(text)

    def text(self, name, role="text"):
        """Returns what a field shows."""
        field = self.find(role, name)
        # By the interface: newer libraries have another get_text() for every node.
        return Atspi.Text.get_text(field, 0, Atspi.Text.get_character_count(field))

    def set_number(self, name, number):
        """Sets a spin box."""
        self.find("spin button", name).set_current_value(number)

    def number(self, name, role="spin button"):
        """Returns the number that a spin box or slider shows."""
        return int(self.find(role, name).get_current_value())


class Program:
    """A program that was started to be read by a screen reader."""

    def __init__(self, command, **options):
        # Before the program, which looks for the bus only once. No cache: nothing here handles the
        # events that report changes.
        self.desktop = Atspi.get_desktop(0)
        self.desktop.set_cache_mask(Atspi.Cache.NONE)
        self.desktop.get_child_count()
        # By default Qt is silent until a screen reader is announced.
        environment = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.process = subprocess.Popen(command, env=environment, **options)

    def _windows(self):
        for program in children(self.desktop):
            if program.get_process_id() == self.process.pid:
                return children(program)
        return []

    def window(self, title):
        """Waits for the window with a title."""
        def look():
            if self.process.poll() is not None:
                raise Failure(f"the program has ended with {self.process.returncode}")
            return next((node for node in self._windows()
                         if node.get_name() == title and has(node, "SHOWING")), None)
        return Window(wait_for(f"window \"{title}\"", look))

    def await_end(self):
        """Returns the exit status."""
        return self.process.wait(TIMEOUT_SECONDS)

    def stop(self):
        """Ends the program where it has not ended by itself."""
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
