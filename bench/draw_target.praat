# Draws the first quarter of a second of a target and its spectrum up to 2000 Hz, and saves them as
# a picture of the size of the program's two charts on a screen of 1920 x 1080.
# SPDX-License-Identifier: GPL-3.0-or-later
form Draw a target
    sentence Target target.wav
    sentence Picture picture.png
endform
Read from file: target$
Font size: 4
Select outer viewport: 0, 3.34, 0, 1.05
Draw: 0, 0.25, 0, 0, "yes", "curve"
To Spectrum: "yes"
Select outer viewport: 0, 3.34, 1.05, 2.1
Draw: 0, 2000, 0, 0, "yes"
Select outer viewport: 0, 3.34, 0, 2.1
Save as 300-dpi PNG file: picture$
