package com.velmira.VKMakeup;

import java.nio.ByteBuffer;
import java.nio.ReadOnlyBufferException;
import java.util.Objects;

/**
 * Where the samples of a frame lie and what they mean: described once, used for frame after frame.
 *
 * <pre>{@code
 * Frame source = Frame.ofYuv420(y, yStride, u, v, chromaStride, chromaStep, width, height, Colorimetry.JFIF);
 * Frame target = Frame.ofPixels(pixels, PixelFormat.RGBA, 4 * width, width, height);
 * engine.process(source, target); // a camera's memory is only read
 * }</pre>
 *
 * <p><b>Memory.</b> A frame is made of direct buffers, which are neither copied nor moved: what their owner writes is
 * what the engine sees. It takes each buffer's bytes from position to limit, as they are when the frame is made; the
 * position may change afterwards. The frame keeps the buffers reachable, but cannot keep alive what an owner takes
 * away: a frame of a camera's {@code Image} must not be used after {@code Image.close}. Buffers on the heap are
 * refused, as the collector may move them; {@link #copyOfNv21} and {@link #copyOfPixels} copy them.
 *
 * <p><b>Strides</b> are bytes from a row to the next, a row or more. What lies between the rows is neither read nor
 * written, and a plane may end with the last sample of its last row. Nothing needs to be aligned.
 *
 * <p>Sizes are 1 to 65535 on each side. A frame of odd size has chroma for its last column and row too: (width + 1) / 2
 * and (height + 1) / 2 samples.
 *
 * <p><b>Threads.</b> A frame never changes and may be used on any thread; its samples must not be written while it is
 * processed.
 */
public final class Frame {
    private static final String YUV_REMEDY = "Nv21.pack and Frame.copyOfNv21";

    final Object[] planes; // in the order of the format
    final int[] layout;
    private final boolean isReadOnly;

    private Frame(Object[] planes, int[] layout, boolean isReadOnly) {
        this.planes = planes;
        this.layout = layout;
        this.isReadOnly = isReadOnly;
    }

    /**
     * Describes three planes, as {@code YUV_420_888} of Android has them. They must be I420 (a pixel stride of 1), or
     * NV12 or NV21: a pixel stride of 2 with U and V as views of the same memory, one byte apart, of which each may end
     * one byte early. For NV12 or NV21 in one buffer, slice it twice.
     *
     * @param y luma, direct: height rows of width bytes
     * @param yStride bytes from a row of luma to the next
     * @param u chroma, direct: (height + 1) / 2 rows of (width + 1) / 2 samples
     * @param v like u
     * @param chromaStride bytes from a row to the next, of U and of V
     * @param chromaStep bytes from a sample to the next, of U and of V: 1 or 2, the pixel stride
     * @param width pixels of a row
     * @param height rows
     * @param colorimetry matrix and range; {@link Colorimetry#JFIF} for Android's cameras
     * @return the frame, read-only if one of the buffers is
     * @throws IllegalArgumentException when the planes are none of the three, a stride is shorter than a row, or a
     *     buffer is too short or on the heap, with the numbers
     */
    public static Frame ofYuv420(ByteBuffer y, int yStride, ByteBuffer u, ByteBuffer v, int chromaStride,
            int chromaStep, int width, int height, Colorimetry colorimetry) {
        Objects.requireNonNull(colorimetry, "colorimetry");
        Planes.requireSize(width, height);
        ByteBuffer luma = Planes.direct("plane Y", y, YUV_REMEDY);
        ByteBuffer uBytes = Planes.direct("plane U", u, YUV_REMEDY);
        ByteBuffer vBytes = Planes.direct("plane V", v, YUV_REMEDY);
        int format = NativeMakeup.formatOfYuv420(luma, uBytes, vBytes, chromaStep);
        if (format == 0) {
            throw noFormat(uBytes, vBytes, chromaStep);
        }
        boolean vFirst = format == NativeMakeup.NV21;
        Object[] planes = {luma, vFirst ? vBytes : uBytes, vFirst ? uBytes : vBytes};
        int[] layout = {
            format, colorimetry.matrix, colorimetry.range, width, height, yStride, chromaStride, chromaStride, 0
        };

        Planes.requireBytes("plane Y", luma, height, width, yStride, 0);
        int rows = (height + 1) / 2;
        boolean isPlanar = format == NativeMakeup.I420;
        long rowBytes = (width + 1) / 2 * (isPlanar ? 1L : 2L);
        // The engine reads and writes whole pairs from the first of two views on: where both reach the second last
        // byte, the second view, which begins a byte later, reaches the last.
        Planes.requireBytes("plane U", uBytes, rows, rowBytes, chromaStride, isPlanar ? 0 : 1);
        Planes.requireBytes("plane V", vBytes, rows, rowBytes, chromaStride, isPlanar ? 0 : 1);
        return new Frame(planes, layout, y.isReadOnly() || u.isReadOnly() || v.isReadOnly());
    }

    private static IllegalArgumentException noFormat(ByteBuffer u, ByteBuffer v, int chromaStep) {
        String reason = "a pixel stride of " + chromaStep + ", but it must be 1 (I420) or 2 (NV12, NV21)";
        if (chromaStep == 2) {
            reason = "V begins " + NativeMakeup.distance(u, v) + " bytes from U, but with a pixel stride of 2 it must"
                    + " begin 1 byte after U (NV12) or 1 byte before U (NV21)";
        }
        return new IllegalArgumentException(reason + ". Make a copy: " + YUV_REMEDY);
    }

    /**
     * Describes pixels.
     *
     * @param pixels direct: height rows of width pixels
     * @param format order of their bytes. Colours must not be multiplied by alpha, which is copied from pixels to
     *     pixels and written as 255 where the source has none
     * @param stride bytes from a row to the next
     * @param width pixels of a row
     * @param height rows
     * @return the frame, read-only if the buffer is
     * @throws IllegalArgumentException when the stride is shorter than a row, or the buffer is too short or on the
     *     heap, with the numbers
     */
    public static Frame ofPixels(ByteBuffer pixels, PixelFormat format, int stride, int width, int height) {
        return ofPlane(Planes.direct("pixels", pixels, "Frame.copyOfPixels"), format, stride, width, height);
    }

    /**
     * Describes the pixels of an {@code android.graphics.Bitmap} of the configuration ARGB_8888. They are locked while
     * the frame is processed; draw nothing into the bitmap meanwhile.
     *
     * <p>A bitmap's colours are multiplied by its alpha, which the engine does not undo: results are right for opaque
     * bitmaps.
     *
     * @param bitmap the bitmap; kept. One that is not mutable is a source only
     * @return the frame
     * @throws UnsupportedOperationException where the platform has no such class
     * @throws IllegalArgumentException for any other object, a recycled bitmap, or another configuration
     */
    public static Frame ofBitmap(Object bitmap) {
        BitmapClass.require(Objects.requireNonNull(bitmap, "bitmap"));
        int[] layout = new int[NativeMakeup.LAYOUT_SIZE];
        layout[NativeMakeup.FORMAT] = PixelFormat.RGBA.number;
        layout[NativeMakeup.IS_BITMAP] = 1;
        int format = NativeMakeup.describeBitmap(bitmap, layout);
        if (format == NativeMakeup.NO_BITMAPS_HERE) {
            throw new UnsupportedOperationException("this platform has no functions for the pixels of bitmaps");
        }
        if (format == NativeMakeup.NO_BITMAP || BitmapClass.isRecycled(bitmap)) {
            throw new IllegalArgumentException("a bitmap without pixels: it is recycled");
        }
        if (format != NativeMakeup.BITMAP_RGBA) {
            throw new IllegalArgumentException("a bitmap of the native format " + format
                    + ", but must be 1 (RGBA_8888, Bitmap.Config.ARGB_8888)");
        }
        return new Frame(new Object[] {bitmap}, layout, !BitmapClass.isMutable(bitmap));
    }

    /**
     * Makes an NV21 frame with direct memory of its own, for code that has frames in arrays: see {@link #copyFrom} and
     * {@link #copyTo}. All samples are 0.
     *
     * @param width pixels of a row
     * @param height rows
     * @param colorimetry matrix and range
     * @return the frame; rows have no padding, but for one byte in a chroma row of odd width
     * @throws IllegalArgumentException when there is no such size
     */
    public static Frame allocateNv21(int width, int height, Colorimetry colorimetry) {
        Objects.requireNonNull(colorimetry, "colorimetry");
        Planes.requireSize(width, height);
        Nv21.size(width, height); // which fits no array, cannot be copied to one
        int chromaStride = width + width % 2;
        long luma = (long) width * height;
        long bytes = luma + chromaStride * ((height + 1L) / 2);
        ByteBuffer memory = Planes.allocate(bytes, width, height);
        ByteBuffer y = memory.duplicate();
        y.limit((int) luma);
        ByteBuffer v = memory.duplicate();
        v.position((int) luma);
        ByteBuffer u = memory.duplicate();
        u.position((int) luma + 1);
        return ofYuv420(y, width, u, v, chromaStride, 2, width, height, colorimetry);
    }

    /**
     * Makes a frame of pixels with direct memory of its own, without padding. All bytes are 0.
     *
     * @param format order of the bytes of a pixel
     * @param width pixels of a row
     * @param height rows
     * @return the frame; {@link #plane plane(0)} is its memory
     * @throws IllegalArgumentException when there is no such size
     */
    public static Frame allocatePixels(PixelFormat format, int width, int height) {
        Objects.requireNonNull(format, "format");
        Planes.requireSize(width, height);
        long bytes = (long) width * height * format.bytes;
        return ofPlane(Planes.allocate(bytes, width, height), format, width * format.bytes, width, height);
    }

    /**
     * Copies an NV21 frame to direct memory. {@link #copyFrom} copies the next frame to the same memory.
     *
     * @param nv21 laid out as {@link Nv21} says
     * @param width pixels of a row
     * @param height rows
     * @param colorimetry matrix and range; Android's {@code Camera.PreviewCallback} delivers {@link Colorimetry#JFIF}
     * @return the copy
     * @throws IllegalArgumentException when there is no such size, or the array is too short for it
     */
    public static Frame copyOfNv21(byte[] nv21, int width, int height, Colorimetry colorimetry) {
        Nv21.requireFrame(nv21, width, height);
        Frame frame = allocateNv21(width, height, colorimetry);
        frame.copyFrom(nv21);
        return frame;
    }

    /**
     * Copies pixels to direct memory, without padding.
     *
     * @param pixels as {@link #ofPixels} takes them, but on the heap or not; its position stays
     * @param format order of their bytes
     * @param stride bytes from a row to the next
     * @param width pixels of a row
     * @param height rows
     * @return the copy; put the pixels of the next frame into {@link #plane plane(0)}
     * @throws IllegalArgumentException when the stride is shorter than a row, or the buffer is too short, with the
     *     numbers
     */
    public static Frame copyOfPixels(ByteBuffer pixels, PixelFormat format, int stride, int width, int height) {
        ByteBuffer from = Objects.requireNonNull(pixels, "pixels").slice();
        Objects.requireNonNull(format, "format");
        Planes.requireSize(width, height);
        int rowBytes = width * format.bytes;
        Planes.requireBytes("pixels", from, height, rowBytes, stride, 0);
        Frame frame = allocatePixels(format, width, height);
        Planes.copyRows(from, stride, frame.plane(0), rowBytes, height, rowBytes);
        return frame;
    }

    /**
     * Returns the width.
     *
     * @return pixels of a row
     */
    public int width() {
        return layout[NativeMakeup.WIDTH];
    }

    /**
     * Returns the height.
     *
     * @return rows
     */
    public int height() {
        return layout[NativeMakeup.HEIGHT];
    }

    /**
     * Returns a plane's memory, as a buffer with a position of its own: to fill a frame, or to hand on what came out.
     *
     * @param index 0 for luma or pixels, 1 for U, 2 for V
     * @return the bytes that the frame was given, or has allocated; read-only if they are. U and V of NV12 and NV21 are
     *     views of the same memory, one byte apart
     * @throws IllegalArgumentException when the frame has no such plane; a bitmap has none
     */
    public ByteBuffer plane(int index) {
        int count = layout[NativeMakeup.IS_BITMAP] != 0 ? 0 : planes.length;
        if (index < 0 || index >= count) {
            throw new IllegalArgumentException("plane " + index + " of a frame that has " + count);
        }
        boolean isSwapped = layout[NativeMakeup.FORMAT] == NativeMakeup.NV21 && index > 0;
        return ((ByteBuffer) planes[isSwapped ? 3 - index : index]).duplicate();
    }

    /**
     * Copies an array into an NV21 frame, of {@link #copyOfNv21} for example. In odd widths the last pair of a row of
     * the array has only its V; it gets the U of the pair beside it.
     *
     * @param nv21 laid out as {@link Nv21} says
     * @throws IllegalArgumentException when the array is too short
     * @throws UnsupportedOperationException when this frame is not NV21, or, as a {@link ReadOnlyBufferException}, one
     *     of its buffers is read-only; the frame is unchanged
     */
    public void copyFrom(byte[] nv21) {
        requireNv21();
        if (isReadOnly) {
            throw new ReadOnlyBufferException();
        }
        Nv21.requireFrame(nv21, width(), height());
        new Nv21Rows(this).read(nv21);
    }

    /**
     * Copies an NV21 frame into an array.
     *
     * @param nv21 written, laid out as {@link Nv21} says
     * @throws IllegalArgumentException when the array is too short; it is unchanged
     * @throws UnsupportedOperationException when this frame is not NV21
     */
    public void copyTo(byte[] nv21) {
        requireNv21();
        Nv21.requireFrame(nv21, width(), height());
        new Nv21Rows(this).write(nv21);
    }

    /** Tells format, size and strides. */
    @Override
    public String toString() {
        StringBuilder text = new StringBuilder(formatName());
        text.append(' ').append(width()).append(" x ").append(height()).append(", strides");
        for (int i = 0; i < planes.length; ++i) {
            text.append(' ').append(layout[NativeMakeup.STRIDES + i]);
        }
        return text.toString();
    }

    private String formatName() {
        int number = layout[NativeMakeup.FORMAT];
        for (PixelFormat format : PixelFormat.values()) {
            if (format.number == number) {
                return layout[NativeMakeup.IS_BITMAP] != 0 ? "Bitmap" : format.name();
            }
        }
        return number == NativeMakeup.I420 ? "I420" : number == NativeMakeup.NV12 ? "NV12" : "NV21";
    }

    int stride(int plane) {
        return layout[NativeMakeup.STRIDES + plane];
    }

    void requireTarget() {
        if (isReadOnly) {
            throw new IllegalArgumentException("the target is read-only: a buffer that may only be read, or a bitmap"
                    + " that is not mutable (" + this + ")");
        }
    }

    /** Throws IllegalStateException once a buffer's owner has closed it, as far as it says so. */
    void requireOpen() {
        if (layout[NativeMakeup.IS_BITMAP] == 0) {
            for (Object plane : planes) {
                Planes.requireOpen((ByteBuffer) plane);
            }
        }
    }

    private void requireNv21() {
        if (layout[NativeMakeup.FORMAT] != NativeMakeup.NV21) {
            throw new UnsupportedOperationException("only an NV21 frame can be copied from and to an array: " + this);
        }
    }

    private static Frame ofPlane(ByteBuffer plane, PixelFormat format, int stride, int width, int height) {
        Objects.requireNonNull(format, "format");
        Planes.requireSize(width, height);
        Planes.requireBytes("pixels", plane, height, (long) width * format.bytes, stride, 0);
        int[] layout = {format.number, 0, 0, width, height, stride, 0, 0, 0};
        return new Frame(new Object[] {plane}, layout, plane.isReadOnly());
    }
}
