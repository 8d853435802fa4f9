package com.velmira.VKMakeup;

import static com.velmira.VKMakeup.Fixtures.*;
import static org.junit.Assert.*;

import java.nio.ByteBuffer;
import java.util.*;
import org.junit.Test;

public class Nv21Test {
    private static final int BEFORE = 3; // bytes in front of a plane

    private final Random random = new Random(4);

    /** A buffer that ends with the last sample, short of its capacity; direct or on the heap, writable or not. */
    private ByteBuffer buffer(int size, int kind) {
        byte[] bytes = new byte[BEFORE + size];
        random.nextBytes(bytes);
        ByteBuffer buffer = kind % 2 == 0 ? ByteBuffer.allocate(size + 12) : ByteBuffer.allocateDirect(size + 12);
        buffer.put(bytes).flip().position(BEFORE);
        return kind < 2 ? buffer : buffer.asReadOnlyBuffer();
    }

    private void checkPack(int width, int height, int[] strides, int kind) {
        String what = width + " x " + height + ", strides " + Arrays.toString(strides) + ", kind " + kind;
        int[] rows = {height, (height + 1) / 2, (height + 1) / 2}; // of the planes Y, U, V
        int[] columns = {width, width / 2, (width + 1) / 2};
        byte[] expected = new byte[width * (rows[0] + rows[1]) + 5];
        Nv21.Plane[] planes = new Nv21.Plane[3];
        for (int i = 0; i < 3; ++i) {
            int samples = Math.max(1, columns[i]);
            int row = samples * strides[i] + strides[3];
            ByteBuffer buffer = buffer((rows[i] - 1) * row + (samples - 1) * strides[i] + 1, kind);
            planes[i] = new Nv21.Plane(buffer, row, strides[i]);
            for (int y = 0; y < rows[i]; ++y) {
                for (int x = 0; x < columns[i]; ++x) {
                    int to = i == 0 ? y * width + x : (height + y) * width + 2 * x + 2 - i;
                    expected[to] = buffer.get(BEFORE + y * row + x * strides[i]);
                }
            }
        }
        byte[] frame = new byte[expected.length];
        Nv21.pack(planes[0], planes[1], planes[2], width, height, frame);
        Nv21.pack(planes[0], planes[1], planes[2], width, height, frame); // buffers stay where they stood
        assertArrayEquals(what, expected, frame);
    }

    @Test
    public void packsPlanesOfEveryShape() {
        int[][] strides = {{1, 1, 1, 0}, {1, 2, 2, 0}, {1, 2, 2, 24}, {2, 3, 1, 7}, {1, 1, 2, 1}, {3, 2, 3, 2}};
        for (int[] size : new int[][] {{1, 1}, {1, 4}, {2, 1}, {2, 2}, {7, 5}, {8, 6}, {640, 480}}) {
            for (int i = 0; i < 4 * strides.length; ++i) {
                checkPack(size[0], size[1], strides[i / 4], i % 4);
            }
        }
    }

    private static Nv21.Plane plane(int size, int rowStride, int pixelStride) {
        return new Nv21.Plane(ByteBuffer.allocate(size), rowStride, pixelStride);
    }

    @Test
    public void refusesPlanesThatEndTooEarlyAndSizesBeyondArrays() {
        byte[] frame = new byte[48];
        Nv21.Plane luma = plane(32, 8, 1);
        Nv21.Plane chroma = plane(17, 10, 2);
        Nv21.pack(luma, chroma, chroma, 8, 4, frame);
        random.nextBytes(frame);
        byte[] before = frame.clone();
        String uv = ": 2 rows of 4 samples with row stride 10 and pixel stride 2 take 17 bytes, but the buffer has 16"
                + " from position to limit";
        assertRefused(WRONG, "plane U" + uv, () -> Nv21.pack(luma, plane(16, 10, 2), chroma, 8, 4, frame));
        assertRefused(WRONG, "plane V" + uv, () -> Nv21.pack(luma, chroma, plane(16, 10, 2), 8, 4, frame));
        String format = "plane Y: 4 rows of 8 samples with row stride %d and pixel stride %d %s";
        for (Object[] y : new Object[][] {{7, 1, "overlap"}, {8, 0, "overlap"},
                {Integer.MAX_VALUE, 1, "take 6442450949 bytes, but the buffer has 99 from position to limit"}}) {
            assertRefused(WRONG, String.format(format, y),
                    () -> Nv21.pack(plane(99, (int) y[0], (int) y[1]), chroma, chroma, 8, 4, frame));
        }
        assertArrayEquals(before, frame);
        assertThrows(WRONG, () -> Nv21.pack(luma, chroma, chroma, 8, 4, new byte[47]));
        assertRefused(WRONG, "a frame of 0 x 5 pixels", () -> Nv21.size(0, 5));
        assertRefused(WRONG, "a frame of 5 x -3 pixels", () -> Nv21.size(5, -3));
        String most = "2147483647 x 2147483647 pixels takes 6917529022272372737 bytes, too many for an array";
        assertRefused(WRONG, "a frame of " + most, () -> Nv21.size(Integer.MAX_VALUE, Integer.MAX_VALUE));
    }
}
