package com.velmira.VKMakeup;

import java.nio.ByteBuffer;

/** Where the engine works: a plane of weights, read by each frame. */
final class Mask {
    final ByteBuffer plane;
    final int[] layout; // width, height, stride

    Mask(ByteBuffer mask, int stride, int width, int height) {
        plane = Planes.direct("mask", mask, "put its bytes into a direct buffer");
        if (width < 1 || height < 1 || stride < width) {
            throw new IllegalArgumentException("a mask of " + width + " x " + height + " values with stride " + stride);
        }
        Planes.requireBytes("mask", plane, height, width, stride, 0);
        layout = new int[] {width, height, stride};
    }

    @Override
    public String toString() {
        return layout[0] + " x " + layout[1] + ", stride " + layout[2];
    }
}
