"""The controls that a screen reader finds in both windows, in their order."""
# SPDX-License-Identifier: GPL-3.0-or-later
from screen_reader import Control

MAIN_TITLE = "Vantaro Lab | Pellion (v014) | Main Window"
SUBJECT_TITLE = "Vantaro Lab | Pellion (v014) | Subject Window"


def field(name, description, role="text"):
    """Returns a label and the field that it names."""
    return [Control("label", name, ""), Control(role, name, description, name)]


MAIN = [
    Control("label", "Sound File Information", ""),
    *field("WAV filepath", "Folder of the target"),
    *field("WAV filename", "File of the target"),
    *field("Sampling rate", "Samples per second at which everything is played"),
    *field("Sound duration (ms)", "Duration of the target"),
    *field("Silent interval (ms)",
           "Silence before each sound, in addition to the duration of one sound"),
    Control("button", "Practice", "Chooses a target and prepares a practice session"),
    Control("button", "Experiment", "Chooses a target and prepares an experiment session"),
    Control("button", "Go", "Opens the listener's window and locks this one"),
    Control("button", "Quit", "Ends the program"),
    *field("Subject code", "Names the listener in the name of the results file"),
    Control("check box", "Save data to file",
            "Whether the responses are written to a file after the session"),
    *field("File number", "Number of the session in the name of the results file", "spin button"),
    *field("Output filepath", "Folder proposed for the results file"),
    *field("Output filename", "Name proposed for the results file"),
    *field("Frequency matched (Hz)", "Frequency of the sinusoid that the listener has heard last"),
    Control("chart", "Time Waveform",
            "Chart of the target's first stretch: amplitude over milliseconds"),
    Control("chart", "Amplitude Spectrum", "Chart of the target's spectrum: amplitude over hertz"),
    Control("chart", "Response Trend",
            "Chart of the session's requests: frequency over their count"),
]

READY = [Control("button", "I am ready", "Shows the controls of the session")]

LISTENING = [
    Control("button", "Play target", "Plays the sound whose pitch is to be matched"),
    *field("Current Value", "Frequency of the sinusoid in hertz", "spin button"),
    Control("button", "Play sinusoid", "Plays a sinusoid at the frequency that is set"),
    Control("slider", "Frequency",
            "Frequency of the sinusoid in hertz; always that of Current Value"),
]

DONE = Control("button", "Done", "Ends the session once both sounds match")
