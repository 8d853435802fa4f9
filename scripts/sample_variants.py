#!/usr/bin/python3
"""Makes of the sample picture what the pictures of the documents need: it in a dim room, it small, it with red
spots painted on the face, and a mask.

    scripts/sample_variants.py SAMPLE DIRECTORY    writes dark.png, third.png, spots.png, mask.png
"""

import pathlib
import sys

import matplotlib.image
import numpy

FACE = (226, 126, 36, 44)  # column and row of its middle, half its width and height
SOFT = 0.3                 # of these: how wide the rim of the mask is
SPOTS = ((203, 121, 3), (209, 131, 2), (243, 127, 3), (250, 120, 2), (225, 101, 2), (236, 152, 2))  # place, radius


def light(levels):
    """sRGB levels from 0 to 1 to amounts of light."""
    return numpy.where(levels <= 0.04045, levels / 12.92, ((levels + 0.055) / 1.055) ** 2.4)


def levels(amount):
    return numpy.where(amount <= 0.0031308, amount * 12.92, 1.055 * amount ** (1 / 2.4) - 0.055)


def third(amount):
    """Each pixel the mean of 3 x 3."""
    height, width = (side // 3 for side in amount.shape[:2])
    return amount[:3 * height, :3 * width].reshape(height, 3, width, 3, 3).mean(axis=(1, 3))


def with_spots(amount):
    """Skin takes up to a third of green and blue less back where blood is nearer."""
    rows, columns = numpy.mgrid[:amount.shape[0], :amount.shape[1]]
    blood = sum(numpy.exp(-((columns - x) ** 2 + (rows - y) ** 2) / (2 * radius ** 2)) for x, y, radius in SPOTS)
    return amount * (1 - blood[:, :, None] * numpy.array((0, 0.33, 0.33)))


def face_mask(height, width):
    x, y, across, down = FACE
    rows, columns = numpy.mgrid[:height, :width]
    distance = numpy.hypot((columns - x) / across, (rows - y) / down)
    return numpy.clip((1 + SOFT - distance) / SOFT, 0, 1)[:, :, None].repeat(3, axis=2)


def save(path, picture):
    matplotlib.image.imsave(path, numpy.rint(picture * 255).astype(numpy.uint8))


def main():
    directory = pathlib.Path(sys.argv[2])
    amount = light(matplotlib.image.imread(sys.argv[1])[:, :, :3].astype(float))
    save(directory / "dark.png", levels(amount / 4))
    save(directory / "third.png", levels(third(amount)))
    save(directory / "spots.png", levels(with_spots(amount)))
    save(directory / "mask.png", face_mask(*amount.shape[:2]))


main()
