package com.velmira.VKMakeup;

import java.nio.ByteBuffer;
import java.util.Random;

/** A YUV frame in the midst of noise, whose buffers begin somewhere and end with the last byte that they must have. */
final class Arena {
    private static final int MARGIN = 7;

    final ByteBuffer memory;
    final Frame frame;
    private final int width;
    private final int height;
    private final int step;
    private final int[] begins = new int[3]; // of Y, U, V
    private final int[] strides = new int[3];

    Arena(String format, int width, int height, int padding, byte[] nv21) {
        this.width = width;
        this.height = height;
        int columns = (width + 1) / 2;
        int rows = (height + 1) / 2;
        step = format.equals("I420") ? 1 : 2;
        strides[0] = width + padding;
        strides[1] = strides[2] = step * columns + padding;
        int[] spans = {(height - 1) * strides[0] + width, (rows - 1) * strides[1] + step * (columns - 1) + 1, 0};
        spans[2] = spans[1];
        begins[0] = MARGIN;
        int chroma = MARGIN + spans[0] + MARGIN;
        int second = step == 2 ? chroma + 1 : chroma + spans[1] + MARGIN;
        begins[1] = format.equals("NV21") ? second : chroma;
        begins[2] = format.equals("NV21") ? chroma : second;
        memory = ByteBuffer.allocateDirect(second + spans[1] + MARGIN);
        byte[] noise = new byte[memory.capacity()];
        new Random(padding).nextBytes(noise);
        memory.put(noise);
        ByteBuffer[] planes = new ByteBuffer[3];
        for (int i = 0; i < 3; ++i) {
            planes[i] = memory.duplicate();
            planes[i].limit(begins[i] + spans[i]).position(begins[i]);
        }
        copy(nv21, true);
        frame = Frame.ofYuv420(planes[0], strides[0], planes[1], planes[2], strides[1], step, width, height,
                Colorimetry.BT601_LIMITED);
    }

    byte[] nv21() {
        byte[] nv21 = new byte[Nv21.size(width, height)];
        copy(nv21, false);
        return nv21;
    }

    /** The bytes that belong to no sample, in their places. */
    byte[] rest() {
        byte[] rest = new byte[memory.capacity()];
        ByteBuffer all = memory.duplicate();
        all.rewind();
        all.get(rest);
        for (int i = 0; i < 3; ++i) {
            for (int y = 0; y < (i == 0 ? height : (height + 1) / 2); ++y) {
                for (int x = 0; x < (i == 0 ? width : (width + 1) / 2); ++x) {
                    rest[offset(i, x, y)] = 0;
                }
            }
        }
        return rest;
    }

    private int offset(int plane, int x, int y) {
        return begins[plane] + y * strides[plane] + x * (plane == 0 ? 1 : step);
    }

    /** Copies all samples; the U that an array of odd width has not is that beside it. */
    private void copy(byte[] nv21, boolean put) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                copy(offset(0, x, y), nv21, y * width + x, put);
            }
        }
        for (int y = 0; y < (height + 1) / 2; ++y) {
            for (int x = 0; x < width + width % 2; ++x) {
                int to = offset(2 - x % 2, x / 2, y);
                if (x < width) {
                    copy(to, nv21, (height + y) * width + x, put);
                } else if (put) {
                    memory.put(to, width > 1 ? nv21[(height + y) * width + x - 2] : (byte) 128);
                }
            }
        }
    }

    private void copy(int offset, byte[] array, int index, boolean put) {
        if (put) {
            memory.put(offset, array[index]);
        } else {
            array[index] = memory.get(offset);
        }
    }
}
