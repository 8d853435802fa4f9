package com.velmira.VKMakeup;

import java.nio.ByteBuffer;
import java.util.Objects;

/**
 * Frames in NV21 layout, without padding.
 *
 * <pre>
 * height rows of width bytes              Y Y Y Y Y Y     luma
 * (height + 1) / 2 rows of width bytes    V U V U V U     chroma, a pair for each 2 x 2 pixels
 * </pre>
 *
 * <p>Colours are BT.601 with limited range; 128 is no chroma. In an odd width the last pair of a row has only its V.
 */
public final class Nv21 {
    private Nv21() {}

    /** One plane of a camera picture, as {@code android.media.Image.Plane} has it. */
    public static final class Plane {
        private final ByteBuffer bytes;
        private final int rowStride;
        private final int pixelStride;

        /**
         * Describes a plane.
         *
         * @param bytes the plane, from the buffer's position to its limit, which are never changed. It may end with
         *     the last sample of the last row
         * @param rowStride bytes from a row to the next
         * @param pixelStride bytes from a sample to the next, 1 or more
         */
        public Plane(ByteBuffer bytes, int rowStride, int pixelStride) {
            this.bytes = Objects.requireNonNull(bytes, "bytes");
            this.rowStride = rowStride;
            this.pixelStride = pixelStride;
        }

        /** Bytes from the first to the last of so many samples of a row. */
        private long span(int samples) {
            return samples == 0 ? 0 : (samples - 1L) * pixelStride + 1;
        }

        private void require(String name, int rows, int samples) {
            if (samples == 0) {
                return;
            }
            String needs = "plane " + name + ": " + rows + " rows of " + samples + " samples with row stride "
                    + rowStride + " and pixel stride " + pixelStride;
            if (pixelStride < 1 || rows > 1 && rowStride < span(samples)) {
                throw new IllegalArgumentException(needs + " overlap");
            }
            long size = (rows - 1L) * rowStride + span(samples);
            if (bytes.remaining() < size) {
                throw new IllegalArgumentException(
                        needs + " take " + size + " bytes, but the buffer has " + bytes.remaining()
                                + " from position to limit");
            }
        }

        /** Returns the same plane with a buffer of its own, whose position may change. */
        private Plane reader() {
            return new Plane(bytes.slice(), rowStride, pixelStride);
        }

        /** Copies a row as it is, with all that stands between its samples. */
        private void copyRow(int row, int samples, byte[] to, int offset) {
            if (samples > 0) {
                bytes.position(row * rowStride);
                bytes.get(to, offset, (int) span(samples));
            }
        }

        /** Copies the samples of a row to every {@code step}-th byte. */
        private void copySamples(int row, int samples, byte[] to, int offset, int step, byte[] scratch) {
            copyRow(row, samples, scratch, 0);
            for (int i = 0; i < samples; ++i) {
                to[offset + i * step] = scratch[i * pixelStride];
            }
        }
    }

    /**
     * Returns the bytes of a frame.
     *
     * @param width pixels of a row, 1 or more
     * @param height rows, 1 or more
     * @return {@code width * height + width * ((height + 1) / 2)}
     * @throws IllegalArgumentException when a frame of this size does not exist or fits no array
     */
    public static int size(int width, int height) {
        if (width < 1 || height < 1) {
            throw new IllegalArgumentException("a frame of " + width + " x " + height + " pixels");
        }
        long size = (long) width * height + width * ((height + 1L) / 2);
        if (size > Integer.MAX_VALUE) {
            throw new IllegalArgumentException(
                    "a frame of " + width + " x " + height + " pixels takes " + size + " bytes, too many for an array");
        }
        return (int) size;
    }

    static void requireFrame(byte[] nv21, int width, int height) {
        Objects.requireNonNull(nv21, "nv21");
        int size = size(width, height);
        if (nv21.length < size) {
            throw new IllegalArgumentException("a frame of " + width + " x " + height + " pixels takes " + size
                    + " bytes, but the array has " + nv21.length);
        }
    }

    /**
     * Makes a frame of the three planes of a camera picture ({@code YUV_420_888} on Android). Fastest where luma has
     * pixel stride 1 and V has pixel stride 2, as cameras mostly deliver them.
     *
     * @param y luma, height rows of width samples
     * @param u (height + 1) / 2 rows of width / 2 samples
     * @param v (height + 1) / 2 rows of (width + 1) / 2 samples
     * @param width pixels of a row, 1 or more
     * @param height rows, 1 or more
     * @param nv21 where the frame goes, {@link #size} bytes or more
     * @throws IllegalArgumentException when a plane or the array is too short; the array is unchanged
     */
    public static void pack(Plane y, Plane u, Plane v, int width, int height, byte[] nv21) {
        requireFrame(nv21, width, height);
        int chromaRows = (height + 1) / 2;
        y.require("Y", height, width);
        u.require("U", chromaRows, width / 2);
        v.require("V", chromaRows, width - width / 2);
        packLuma(y.reader(), width, height, nv21);
        packChroma(u.reader(), v.reader(), width, chromaRows, nv21, width * height);
    }

    private static void packLuma(Plane y, int width, int height, byte[] nv21) {
        byte[] scratch = y.pixelStride == 1 ? null : new byte[(int) y.span(width)];
        for (int row = 0; row < height; ++row) {
            if (scratch == null) {
                y.copyRow(row, width, nv21, row * width);
            } else {
                y.copySamples(row, width, nv21, row * width, 1, scratch);
            }
        }
    }

    private static void packChroma(Plane u, Plane v, int width, int rows, byte[] nv21, int offset) {
        int uSamples = width / 2;
        int vSamples = width - uSamples;
        byte[] scratch = new byte[(int) Math.max(u.span(uSamples), v.span(vSamples))];
        for (int row = 0; row < rows; ++row) {
            int begin = offset + row * width;
            if (v.pixelStride == 2) {
                v.copyRow(row, vSamples, nv21, begin); // what it has between the samples is overwritten
            } else {
                v.copySamples(row, vSamples, nv21, begin, 2, scratch);
            }
            u.copySamples(row, uSamples, nv21, begin + 1, 2, scratch);
        }
    }
}
