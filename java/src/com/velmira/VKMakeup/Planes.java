package com.velmira.VKMakeup;

import java.nio.ByteBuffer;
import java.util.Objects;

/** Checks of the memory of frames and masks. */
final class Planes {
    private static final int MAX_SIDE = 65535; // of the native library

    private Planes() {}

    /** Returns a buffer's bytes from position to limit, as a buffer of their own whose position never moves. */
    static ByteBuffer direct(String name, ByteBuffer buffer, String remedy) {
        Objects.requireNonNull(buffer, name);
        if (!buffer.isDirect()) {
            throw new IllegalArgumentException(name + ": the buffer is on the heap, where the collector may move it"
                    + " while native code works on it. Use ByteBuffer.allocateDirect, or make a copy: " + remedy);
        }
        return buffer.slice();
    }

    /** Requires a size that the engine has, so that what is counted in bytes fits long. */
    static void requireSize(int width, int height) {
        if (Math.min(width, height) < 1 || Math.max(width, height) > MAX_SIDE) {
            throw new IllegalArgumentException(
                    "a frame of " + width + " x " + height + " pixels: each side has 1 to " + MAX_SIDE);
        }
    }

    /**
     * Requires the bytes from a plane's first to its last one, of rows that do not overlap.
     *
     * @param plane as {@link #direct} or slice returns it: its position is 0
     * @param missing how many of the last bytes need not be there
     */
    static void requireBytes(String name, ByteBuffer plane, int rows, long rowBytes, int stride, int missing) {
        if (stride < rowBytes) {
            throw new IllegalArgumentException(name + ": stride " + stride + ", a row has " + rowBytes + " bytes");
        }
        long size = (rows - 1L) * stride + rowBytes - missing;
        if (plane.capacity() < size) {
            throw new IllegalArgumentException(name + ": " + rows + " rows of " + rowBytes + " bytes with stride "
                    + stride + " take " + size + " bytes, but the buffer has " + plane.capacity()
                    + " from position to limit");
        }
    }

    /**
     * Asks a buffer for its first byte: those of Android refuse that with an IllegalStateException once their owner, an
     * {@code Image} for example, has closed them. Native code would go on reading.
     */
    static void requireOpen(ByteBuffer plane) {
        plane.get(0);
    }

    /** Allocates direct memory. */
    static ByteBuffer allocate(long bytes, int width, int height) {
        if (bytes > Integer.MAX_VALUE) {
            throw new IllegalArgumentException("a frame of " + width + " x " + height + " pixels takes " + bytes
                    + " bytes, too many for a buffer");
        }
        return ByteBuffer.allocateDirect((int) bytes);
    }

    /** Copies rows, whose positions in both buffers are counted from 0. */
    static void copyRows(ByteBuffer from, int fromStride, ByteBuffer to, int toStride, int rows, int rowBytes) {
        for (int row = 0; row < rows; ++row) {
            from.limit(row * fromStride + rowBytes).position(row * fromStride);
            to.position(row * toStride);
            to.put(from);
        }
    }
}
