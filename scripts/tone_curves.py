#!/usr/bin/python3
"""Draws what whitening does to red, green and blue: ramps of colours sent through the program, output against input.

    scripts/tone_curves.py PROGRAM OUT.png
"""

import pathlib
import subprocess
import sys
import tempfile

import matplotlib
matplotlib.use("Agg")
import matplotlib.image
import matplotlib.lines
import matplotlib.pyplot as plot
import numpy

STRENGTHS = (0, 25, 50, 75, 100)
BLOCK = 8  # pixels of a colour each way, so that the halved resolution of chroma mixes none
RAMPS = ((1, 1, 1), (1, 0.76, 0.66), (0.7, 1, 0.5), (0.6, 0.8, 1))  # grey, skin, leaf, sky
LEVELS = numpy.arange(256)
CHANNELS = {"red and blue": ([0, 2], "-"), "green": ([1], ":")}


def ramps():
    """A row of colours for each ramp, from black to full brightness."""
    return numpy.rint(LEVELS[None, :, None] * numpy.array(RAMPS)[:, None, :]).astype(numpy.uint8)


def whitened(program, colors, strength, directory):
    """The colours that the program makes of `colors`."""
    before, after = directory / "before.png", directory / "after.png"
    matplotlib.image.imsave(before, colors.repeat(BLOCK, axis=0).repeat(BLOCK, axis=1))
    subprocess.run([program, "photo", before, after, "--soften", "0", "--whiten", str(strength)], check=True)
    pixels = numpy.rint(matplotlib.image.imread(after)[:, :, :3] * 255).astype(int)
    return pixels[BLOCK // 2::BLOCK, BLOCK // 2::BLOCK]


def curve(before, after, channels):
    """Output by input level: the mean over all colours, which rounding to video levels moves up or down by a few."""
    levels = before[:, :, channels].ravel()
    return numpy.bincount(levels, after[:, :, channels].ravel()) / numpy.bincount(levels)


def draw(before, after, path):
    figure, (curves, lifts) = plot.subplots(1, 2, figsize=(11, 4.6))
    shades = matplotlib.colormaps["viridis"](numpy.linspace(0, 0.85, len(STRENGTHS)))
    for strength, shade in zip(STRENGTHS, shades):
        for channels, style in CHANNELS.values():
            output = curve(before, after[strength], channels)
            if 1 not in channels:
                curves.plot(LEVELS, output, color=shade, label=f"{strength} %")
            lifts.plot(LEVELS, output - LEVELS, style, color=shade, linewidth=1.8)
    curves.set(title="Red or blue of a colour", xlabel="before", ylabel="after", ylim=(0, 256), yticks=range(0, 257, 32))
    curves.legend(*(entries[::-1] for entries in curves.get_legend_handles_labels()), title="whitening")
    lifts.set(title="Levels that are added: green gets two fewer", xlabel="before", ylabel="after - before")
    lifts.legend(handles=[matplotlib.lines.Line2D([], [], color="black", linestyle=style, label=name)
                          for name, (_, style) in CHANNELS.items()])
    for axes in (curves, lifts):
        axes.set(xlim=(0, 256), xticks=range(0, 257, 32))
        axes.grid(alpha=0.3)
    figure.tight_layout()
    figure.savefig(path, dpi=80, metadata={"Software": None})


def main():
    program, path = sys.argv[1:]
    colors = ramps()
    with tempfile.TemporaryDirectory() as directory:
        after = {strength: whitened(program, colors, strength, pathlib.Path(directory)) for strength in STRENGTHS}
    draw(colors.astype(int), after, path)


main()
