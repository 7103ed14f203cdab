#!/usr/bin/python3
"""Holds a session with the real program by the accessibility bus, as blind users would.

hold_session.py FOLDER PROGRAM [--pictures]: starts the program, a file or a desktop entry that is
installed beside it, and checks what a screen reader finds in both windows, what the window manager
knows, what the sound device receives, and the results file. Target, results and recording stay in
FOLDER. To be called by scripts/hold-session.
"""
# SPDX-License-Identifier: GPL-3.0-or-later
import array
import math
import os
import pathlib
import re
import shlex
import subprocess
import sys
import time
import wave

from gi.repository import Gio

from screen_reader import Failure, Program, wait_for
import window_texts

SAMPLING_RATE = 40000
TARGET_SAMPLES = 4000
# Requests of a listener who approaches the target's pitch from above and from below.
REQUESTS_HZ = [616, 338, 440]


def compare(what, found, expected):
    """Fails where two things differ."""
    if found != expected:
        differences = ""
        if isinstance(expected, list) and expected and isinstance(expected[0], tuple):
            differences = "".join(f"\n  missing: {one}" for one in expected if one not in found)
            differences += "".join(f"\n  too many: {one}" for one in found if one not in expected)
        raise Failure(f"{what}: {differences or f'{found!r} instead of {expected!r}'}")


def sinusoid(frequency_hz, amplitude=1.0):
    """Returns samples as the program computes them."""
    angular = frequency_hz * (2 * math.pi)
    return [amplitude * math.sin(i * angular / SAMPLING_RATE) for i in range(TARGET_SAMPLES)]


def write_target(path):
    """Writes a short tone and returns the samples that should be heard."""
    values = array.array("h", (round(32767 * x) for x in sinusoid(440, 0.5)))
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(values.itemsize)
        file.setframerate(SAMPLING_RATE)
        file.writeframes(values.tobytes())
    return array.array("f", (value / 32768 for value in values))


class Recorder:
    """Records what the sound device receives."""

    def __init__(self, path):
        self.path = path
        with open(path, "wb") as file:
            self.process = subprocess.Popen(
                ["parec", "--device=lab.monitor", "--latency-msec=20", "--rate=40000",
                 "--channels=1", "--format=float32le", "--raw"], stdout=file)
        wait_for("sound device to record", lambda: path.stat().st_size)

    def stop(self):
        """Returns the samples, once the last ones have arrived."""
        before = len(self.samples())
        silent = SAMPLING_RATE * 3 // 10
        wait_for("silence at the sound device",
                 lambda: (len(self.samples()) >= before + silent
                          and not any(self.samples()[-silent:])))
        self.process.terminate()
        self.process.wait()
        return self.samples()

    def samples(self):
        """Returns what has been written so far."""
        data = self.path.read_bytes()
        return array.array("f", data[:len(data) // 4 * 4])


def compare_sounds(recording, sounds):
    """Fails unless the recording holds these sounds in this order, and silence between them."""
    position = 0
    for number, sound in enumerate(sounds, 1):
        onset = next((i for i in range(position, len(recording)) if recording[i]), None)
        if onset is None:
            raise Failure(f"sound {number} was not heard")
        # Each begins with a zero, which is as silent as what comes before it.
        start = onset - next(i for i, sample in enumerate(sound) if sample)
        if recording[start:start + len(sound)] != sound:
            raise Failure(f"sound {number} was heard otherwise than it should be")
        position = start + len(sound)
    if any(recording[position:]):
        raise Failure("a sound too many was heard")


def compare_frame(title):
    """Compares the program's class and icon sizes as the window manager reads them."""
    found = subprocess.run(["xprop", "-len", "10000000", "-notype", "-name", title,
                            "32c", "_NET_WM_ICON", "WM_CLASS"],
                           check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout
    icon, wm_class = re.search(r"_NET_WM_ICON = ([^\n]*)\nWM_CLASS = ([^\n]*)", found).groups()
    compare("class of the window", wm_class, '"pellion", "pellion"')
    numbers = [int(number) for number in icon.split(", ")]
    sizes = set()
    while numbers:
        width, height = numbers[:2]
        sizes.add(width)
        compare("icon's sides", width, height)
        del numbers[:2 + width * height]
    compare("sizes of the icon", sizes, {16, 22, 24, 32, 48, 64, 128, 256})


def compare_sound_mixer():
    """Compares the program's name at the sound server."""
    found = subprocess.run(["pactl", "list", "clients"], check=True, stdout=subprocess.PIPE,
                           encoding="utf-8").stdout
    client = next((client for client in found.split("\n\n")
                   if 'application.process.binary = "pellion"' in client), "")
    compare("name in sound mixers", re.findall('application.name = "(.*)"', client), ["Pellion"])


class Session:
    """A practice session with its experimenter and its listener."""

    def __init__(self, folder, command, takes_pictures):
        self.folder = folder
        self.takes_pictures = takes_pictures
        self.target = write_target(folder / "tone.wav")
        with open(folder / "log.txt", "wb") as log:
            self.program = Program(command, stderr=log)
        self.main = self.program.window(window_texts.MAIN_TITLE)
        self.listener = None
        self.sounds = []

    def hold(self):
        """Runs all steps from the program's start to its end."""
        self.look_at_main_window()
        recorder = Recorder(self.folder / "heard.f32")
        self.prepare()
        self.open_listeners_window()
        self.match()
        self.save()
        compare_sounds(recorder.stop(), self.sounds)
        self.main.press("Quit")
        compare("exit status", self.program.await_end(), 0)

    def look(self, window, name):
        """Checks the places of a window's controls, and takes a picture if requested."""
        if self.takes_pictures:
            time.sleep(0.5)
            subprocess.run(["import", "-window", "root", self.folder / f"{name}.png"], check=True)
        misplaced = window.misplaced()
        if misplaced:
            raise Failure(f"{name}: {misplaced}")

    def look_at_main_window(self):
        """Checks the main window before any input."""
        compare("main window", self.main.controls(), window_texts.MAIN)
        self.look(self.main, "main-window-start")
        compare_frame(window_texts.MAIN_TITLE)
        enabled = [name for name in ("Practice", "Experiment", "Go", "Quit")
                   if self.main.is_enabled("button", name)]
        compare("buttons enabled", enabled, ["Practice", "Quit"])
        compare("frequency matched", self.main.text("Frequency matched (Hz)"), "not started yet")

    def prepare(self):
        """Experimenter: "Practice", and a target."""
        self.main.press("Practice")
        dialog = self.program.window("Select a target sound file")
        dialog.type("File name:", str(self.folder / "tone.wav"))
        dialog.press("Open")
        self.main.await_enabled("button", "Go")
        compare("WAV filename", self.main.text("WAV filename"), "tone.wav")
        compare("sound duration", self.main.text("Sound duration (ms)"), "100.00")

    def open_listeners_window(self):
        """Experimenter: "Go"; listener: "I am ready"."""
        self.main.press("Go")
        self.listener = self.program.window(window_texts.SUBJECT_TITLE)
        compare("subject window at first", self.listener.controls(), window_texts.READY)
        self.look(self.listener, "subject-window-start")
        compare_frame(window_texts.SUBJECT_TITLE)
        compare("main window enabled", self.main.is_enabled("button", "Go"), False)
        self.listener.press("I am ready")
        self.listener.find("button", "Play target")
        compare("subject window", self.listener.controls(), window_texts.LISTENING)
        compare("frequency can be set", self.listener.is_enabled("spin button", "Current Value"),
                False)

    def play(self, button, sound):
        """Presses a button and waits until its sound has ended."""
        self.listener.press(button)
        self.listener.await_enabled("button", button, False)
        self.listener.await_enabled("button", button)
        self.sounds.append(sound)

    def match(self):
        """Listener: the target, then sinusoids."""
        self.play("Play target", self.target)
        compare_sound_mixer()
        for frequency_hz in REQUESTS_HZ:
            self.listener.set_number("Current Value", frequency_hz)
            compare("slider", self.listener.number("Frequency", "slider"), frequency_hz)
            self.play("Play sinusoid", array.array("f", sinusoid(frequency_hz)))
        compare("subject window at last", self.listener.controls(),
                window_texts.LISTENING + [window_texts.DONE])
        self.look(self.listener, "subject-window")
        compare("frequency matched", self.main.text("Frequency matched (Hz)"),
                str(REQUESTS_HZ[-1]))

    def save(self):
        """Listener: "Done"; experimenter: saves."""
        self.listener.press("Done")
        self.program.window("Confirmation MessageBox").press("Yes")
        results = self.folder / "SUB001_practice001.txt"
        dialog = self.program.window("Save a file")
        dialog.type("File name:", str(results))
        dialog.press("Save")
        self.main.await_enabled("button", "Experiment")
        lines = [f"tone.wav\t{number}\t{frequency_hz}"
                 for number, frequency_hz in enumerate(REQUESTS_HZ, 1)]
        expected = "".join(line + "\r\n" for line in
                           ["filename\tnTrials\tfrequency matched (Hz)", *lines])
        compare("results file", results.read_bytes().decode(), expected)
        compare("file number", self.main.number("File number"), 2)
        self.look(self.main, "main-window")


def command_of(program):
    """Returns the command of a desktop entry, found beside it; or the program itself."""
    if program.suffix != ".desktop":
        return [str(program)]
    prefix = program.parents[2]
    os.environ["PATH"] = f"{prefix / 'bin'}:{os.environ['PATH']}"
    entry = Gio.DesktopAppInfo.new_from_filename(str(program))
    if entry is None:
        raise Failure(f"{program} does not name a program that is there")
    compare("icon", entry.get_string("Icon"), "pellion")
    return shlex.split(entry.get_commandline())


def main():
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    folder, program = (pathlib.Path(argument) for argument in sys.argv[1:3])
    session = None
    try:
        session = Session(folder, command_of(program), len(sys.argv) == 4)
        executable = pathlib.Path(f"/proc/{session.program.process.pid}/exe").readlink()
        if program.suffix == ".desktop":
            compare("program", executable.parent, program.parents[2] / "bin")
        session.hold()
    except Failure as failure:
        log = folder / "log.txt"
        sys.exit(f"FAILED: {failure}\n{log.read_text() if log.exists() else ''}")
    finally:
        if session is not None:
            session.program.stop()
    print("A session was held by the accessibility bus; windows, sounds and results are right.")


main()
