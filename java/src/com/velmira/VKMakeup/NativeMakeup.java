package com.velmira.VKMakeup;

import java.nio.ByteBuffer;

/**
 * The native methods of frames and their settings, found by their exported names. Nothing is checked here but what the
 * native library checks: handles must be alive, and buffers direct, with all the bytes of their planes.
 *
 * <p>A frame is its planes, in the order of its format, and a layout: an array with the numbers below.
 */
final class NativeMakeup {
    // A frame's layout.
    static final int FORMAT = 0;
    static final int MATRIX = 1;
    static final int RANGE = 2;
    static final int WIDTH = 3;
    static final int HEIGHT = 4;
    static final int STRIDES = 5; // three
    static final int IS_BITMAP = 8; // 1: the only plane is an android.graphics.Bitmap
    static final int LAYOUT_SIZE = 9;

    // Formats beside those of PixelFormat.
    static final int NV12 = 1;
    static final int NV21 = 2;
    static final int I420 = 3;

    // Settings.
    static final int WHITENING = 0;
    static final int SOFTENING = 1;
    static final int RADIUS = 2;
    static final int CONTRAST = 3;
    static final int WHITEN_AREA = 4;
    static final int EVEN_TONE = 5;
    static final int THREADS = 6;
    static final int SETTINGS_SIZE = 7;

    // Results: those of the native library that are told apart here, and those of bitmaps.
    static final int OK = 0;
    static final int OVERLAP = -5;
    static final int BAD_TABLE = -7;
    static final int NO_MEMORY = -8;
    static final int BITMAP_CHANGED = 1;
    static final int BITMAP_NOT_LOCKED = 2;

    // What describeBitmap may return.
    static final int BITMAP_RGBA = 1;
    static final int NO_BITMAP = -1;
    static final int NO_BITMAPS_HERE = -2;

    static {
        new Engine(); // loads the library
    }

    private NativeMakeup() {}

    /** Makes an engine and fills in its settings; returns 0 when there is no memory for it. */
    static native long create(int[] settings);

    static native void destroy(long handle);

    static native int configure(long handle, int[] settings);

    /** Copies {@code size} bytes of a table; null: none. */
    static native int setTable(long handle, byte[] file, int size);

    /** Processes a frame; without a target, in place. The mask, which may be null, has {width, height, stride}. */
    static native int process(long handle, Object[] source, int[] sourceLayout, Object[] target, int[] targetLayout,
            ByteBuffer mask, int[] maskLayout);

    /** Returns the bytes from the beginning of one direct buffer to that of another. */
    static native long distance(ByteBuffer from, ByteBuffer to);

    /** Returns NV12, NV21 or I420, or 0 where planes are none of these. */
    static native int formatOfYuv420(ByteBuffer y, ByteBuffer u, ByteBuffer v, int chromaStep);

    /** Fills in width, height and first stride; returns the platform's number of the format, or one of the above. */
    static native int describeBitmap(Object bitmap, int[] layout);

    static native String resultText(int result);
}
