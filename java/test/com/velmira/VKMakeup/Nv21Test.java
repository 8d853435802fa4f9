package com.velmira.VKMakeup;

import static org.junit.Assert.assertArrayEquals;
import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertThrows;

import java.nio.ByteBuffer;
import java.util.Arrays;
import java.util.Random;
import org.junit.Test;

public class Nv21Test {
    private static final int BEFORE = 3; // bytes in front of a plane

    private final Random random = new Random(4);

    /** A buffer that ends with the last sample; direct or on the heap, writable or not. */
    private ByteBuffer buffer(int rows, int samples, int rowStride, int pixelStride, int kind) {
        int size = BEFORE + (rows - 1) * rowStride + (samples - 1) * pixelStride + 1;
        byte[] bytes = new byte[size];
        random.nextBytes(bytes);
        ByteBuffer buffer = kind % 2 == 0 ? ByteBuffer.allocate(size + 9) : ByteBuffer.allocateDirect(size + 9);
        buffer.put(bytes).flip().position(BEFORE);
        return kind < 2 ? buffer : buffer.asReadOnlyBuffer();
    }

    private static byte sample(ByteBuffer plane, int row, int column, int rowStride, int pixelStride) {
        return plane.get(BEFORE + row * rowStride + column * pixelStride);
    }

    private void checkPack(int width, int height, int[] strides, int kind) {
        int chromaRows = (height + 1) / 2;
        int chromaColumns = (width + 1) / 2;
        int[] pixel = Arrays.copyOf(strides, 3);
        int more = strides[3];
        int[] row = {width * pixel[0] + more, chromaColumns * pixel[1] + more, chromaColumns * pixel[2] + 1};
        ByteBuffer y = buffer(height, width, row[0], pixel[0], kind);
        ByteBuffer u = buffer(chromaRows, Math.max(1, width / 2), row[1], pixel[1], kind);
        ByteBuffer v = buffer(chromaRows, chromaColumns, row[2], pixel[2], kind);
        byte[] expected = new byte[width * height + width * chromaRows + 5];
        for (int i = 0; i < height; ++i) {
            for (int j = 0; j < width; ++j) {
                expected[i * width + j] = sample(y, i, j, row[0], pixel[0]);
                expected[(height + i / 2) * width + j] = j % 2 == 0 ? sample(v, i / 2, j / 2, row[2], pixel[2])
                        : sample(u, i / 2, j / 2, row[1], pixel[1]);
            }
        }
        byte[] frame = new byte[expected.length];
        Nv21.pack(new Nv21.Plane(y, row[0], pixel[0]), new Nv21.Plane(u, row[1], pixel[1]),
                new Nv21.Plane(v, row[2], pixel[2]), width, height, frame);
        String what = width + " x " + height + ", strides " + Arrays.toString(strides) + ", kind " + kind;
        assertArrayEquals(what, expected, frame);
        for (ByteBuffer buffer : new ByteBuffer[] {y, u, v}) {
            assertEquals(what, BEFORE, buffer.position());
            assertEquals(what, buffer.capacity() - 9, buffer.limit());
        }
    }

    @Test
    public void packsPlanesOfEveryShape() {
        int[][] sizes = {{1, 1}, {1, 4}, {2, 1}, {2, 2}, {7, 5}, {8, 6}, {640, 480}};
        int[][] strides = {{1, 1, 1, 0}, {1, 2, 2, 0}, {1, 2, 2, 24}, {2, 3, 1, 7}, {1, 1, 2, 1}, {3, 2, 3, 2}};
        for (int[] size : sizes) {
            for (int[] stride : strides) {
                for (int kind = 0; kind < 4; ++kind) {
                    checkPack(size[0], size[1], stride, kind);
                }
            }
        }
    }

    /** U and V in one buffer, one byte apart, as cameras deliver them. */
    @Test
    public void packsPlanesThatShareABuffer() {
        byte[] chroma = {1, 2, 3, 4, -1, -1, 5, 6, 7, 8};
        ByteBuffer v = ByteBuffer.wrap(chroma, 0, 9).slice();
        ByteBuffer u = ByteBuffer.wrap(chroma, 1, 9).slice();
        byte[] frame = new byte[24];
        Nv21.pack(new Nv21.Plane(ByteBuffer.allocate(16), 4, 1), new Nv21.Plane(u, 6, 2), new Nv21.Plane(v, 6, 2), 4, 4,
                frame);
        assertArrayEquals(new byte[] {1, 2, 3, 4, 5, 6, 7, 8}, Arrays.copyOfRange(frame, 16, 24));
    }

    @Test
    public void refusesPlanesThatEndTooEarly() {
        byte[] frame = new byte[48];
        Nv21.Plane luma = new Nv21.Plane(ByteBuffer.allocate(32), 8, 1);
        Nv21.Plane chroma = new Nv21.Plane(ByteBuffer.allocate(17), 10, 2);
        Nv21.pack(luma, chroma, chroma, 8, 4, frame);
        Nv21.Plane early = new Nv21.Plane(ByteBuffer.allocate(16), 10, 2);
        String chromaNeeds = ": 2 rows of 4 samples with row stride 10 and pixel stride 2 take 17 bytes, but the buffer"
                + " has 16";
        assertRefused("plane U" + chromaNeeds, luma, early, chroma, frame);
        assertRefused("plane V" + chromaNeeds, luma, chroma, early, frame);
        assertRefused("plane Y: 4 rows of 8 samples with row stride 7 and pixel stride 1 overlap",
                new Nv21.Plane(ByteBuffer.allocate(99), 7, 1), chroma, chroma, frame);
        assertRefused("plane Y: 4 rows of 8 samples with row stride 8 and pixel stride 0 overlap",
                new Nv21.Plane(ByteBuffer.allocate(99), 8, 0), chroma, chroma, frame);
        assertRefused("plane Y: 4 rows of 8 samples with row stride 2147483647 and pixel stride 1 take 6442450949"
                + " bytes, but the buffer has 99", new Nv21.Plane(ByteBuffer.allocate(99), Integer.MAX_VALUE, 1),
                chroma, chroma, frame);
        assertRefused("a frame of 8 x 4 pixels takes 48 bytes, but the array has 47", luma, chroma, chroma,
                new byte[47]);
    }

    private static void assertRefused(String message, Nv21.Plane y, Nv21.Plane u, Nv21.Plane v, byte[] frame) {
        byte[] before = frame.clone();
        assertEquals(message,
                assertThrows(IllegalArgumentException.class, () -> Nv21.pack(y, u, v, 8, 4, frame)).getMessage());
        assertArrayEquals(before, frame);
    }

    @Test
    public void sizesCountOddRows() {
        assertEquals(12, Nv21.size(4, 2));
        assertEquals(3 * 5 + 3 * 3, Nv21.size(3, 5));
        assertThrows(IllegalArgumentException.class, () -> Nv21.size(Integer.MAX_VALUE, 1));
    }
}
