package com.velmira.VKMakeup;

import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.ByteBuffer;
import java.util.Objects;

/**
 * Beautifies the frames of a video: smooths skin, whitens, adjusts colours.
 *
 * <pre>{@code
 * try (MakeupEngine engine = new MakeupEngine()) {
 *     engine.setWhitening(60);
 *     engine.process(source, target); // frame after frame, without a copy
 * }
 * }</pre>
 *
 * <p><b>Two paths.</b> {@link #process(Frame, Frame)} takes frames of all formats where they are, on the calling
 * thread, and follows all settings. {@link #process(byte[], int, int)} takes NV21 arrays, which it copies, on a thread
 * of the engine's own, follows whitening and softening alone, and has a colour table from a {@link ResourceLoader}.
 * Both make the same bytes of a BT.601 limited frame whose width is a multiple of 16 and whose height is even, when
 * {@link #setContrast contrast} is absolute, the {@link #setRadius radius} 20, whitening 1 or more, and the table the
 * same ({@link #setTable}). Without one they differ: frames go through tone curves, arrays through a neutral table.
 *
 * <p><b>Threads.</b> All methods may be called on any thread. Frames of one engine take turns; different engines work
 * at the same time, and a frame's bands on several threads ({@link #setThreads}). A change of settings never waits for
 * the frame in work, which keeps those that it began with. A wait is not cut short by an interrupt, which is kept for
 * the caller. A resource loader must not use the engine that it loads for, but may change its settings.
 *
 * <p><b>Memory.</b> An engine keeps its tables, buffers and native threads from frame to frame: a frame of the size and
 * format of the one before allocates nothing. {@link #close} frees them. What arrays leave is a sleeping thread and a
 * few kilobytes, which the next engine takes over, so there are never more of these than engines that were open at one
 * time. An engine that is dropped without being closed is freed by {@code java.lang.ref.Cleaner}, from Java 9 and
 * Android 13 on, unless its resource loader refers to it; without a {@code Cleaner} it keeps its memory. There is no
 * finalizer.
 */
public final class MakeupEngine implements AutoCloseable {
    /** Whitening of a new engine, in percent. */
    public static final int DEFAULT_WHITENING = 50;

    /** Smoothing of a new engine: full. */
    public static final int DEFAULT_SOFTENING = 1000;

    /**
     * A radius that goes with the size of the frame, that of a new engine: the shorter side / 30, rounded down, then up
     * to a multiple of 8, at least 8 (24 at 1280 x 720), at most 64 up to a shorter side of 2160 and 128 above.
     */
    public static final int AUTO_RADIUS = -1;

    private static final int MAX_WHITENING = 100;
    private static final int MAX_SOFTENING = 1000;
    private static final int MAX_RADIUS = 128;
    private static final int MAX_EVEN_TONE = 1000;
    private static final int MAX_THREADS = 64;

    private final EngineState state;
    private volatile boolean isReachable; // written, never read: see processed()

    /**
     * Creates an engine without resources: arrays are whitened without a tint.
     *
     * @throws MakeupException when there is no memory for it
     */
    public MakeupEngine() {
        this(name -> new ByteArrayInputStream(new byte[0]));
    }

    /**
     * Creates an engine.
     *
     * @param loader supplies the resources for frames in arrays; others have {@link #setTable}
     * @throws MakeupException when there is no memory for it
     */
    public MakeupEngine(ResourceLoader loader) {
        state = new EngineState(Objects.requireNonNull(loader, "loader"));
        LeakGuard.watch(this, state);
    }

    /**
     * Sets the whitening from the next frame on.
     *
     * @param percent 0, colours stay, to 100
     * @throws IllegalArgumentException when it is not
     * @throws IllegalStateException when the engine is closed
     */
    public void setWhitening(int percent) {
        state.requireOpen();
        state.set(NativeMakeup.WHITENING, requireRange("whitening", percent, MAX_WHITENING));
    }

    /**
     * Sets the smoothing of skin from the next frame on.
     *
     * @param strength 0, none, to 1000, full
     * @throws IllegalArgumentException when it is not
     * @throws IllegalStateException when the engine is closed
     */
    public void setSoftening(int strength) {
        state.requireOpen();
        state.set(NativeMakeup.SOFTENING, requireRange("softening", strength, MAX_SOFTENING));
    }

    /**
     * Sets the reach of softening and evening, from the next {@link Frame} on.
     *
     * @param pixels 0, neither softening nor evening, to 128, rounded up to a multiple of 8; or {@link #AUTO_RADIUS}
     * @throws IllegalArgumentException when it is not
     * @throws IllegalStateException when the engine is closed
     */
    public void setRadius(int pixels) {
        state.requireOpen();
        if (pixels != AUTO_RADIUS) {
            if (pixels < 0 || pixels > MAX_RADIUS) {
                throw new IllegalArgumentException("radius is " + pixels + ", but must be 0 to " + MAX_RADIUS
                        + " or AUTO_RADIUS (" + AUTO_RADIUS + ")");
            }
        }
        state.set(NativeMakeup.RADIUS, pixels);
    }

    /**
     * Sets how contrast is measured, from the next {@link Frame} on.
     *
     * @param contrast relative in a new engine
     * @throws IllegalStateException when the engine is closed
     */
    public void setContrast(Contrast contrast) {
        state.set(NativeMakeup.CONTRAST, Objects.requireNonNull(contrast, "contrast").ordinal());
    }

    /**
     * Sets what whitening lifts, from the next {@link Frame} on.
     *
     * @param area all in a new engine
     * @throws IllegalStateException when the engine is closed
     */
    public void setWhitenArea(WhitenArea area) {
        state.set(NativeMakeup.WHITEN_AREA, Objects.requireNonNull(area, "area").ordinal());
    }

    /**
     * Sets the evening of skin colour, such as red spots, from the next {@link Frame} on.
     *
     * @param strength 0, none, as in a new engine, to 1000
     * @throws IllegalArgumentException when it is not
     * @throws IllegalStateException when the engine is closed
     */
    public void setEvenTone(int strength) {
        state.requireOpen();
        state.set(NativeMakeup.EVEN_TONE, requireRange("even tone", strength, MAX_EVEN_TONE));
    }

    /**
     * Sets on how many threads a {@link Frame} is worked on, of which one is the caller's. The result does not depend
     * on it.
     *
     * @param count 1 to 64; or 0, as in a new engine: as many as processors, at most 8
     * @throws IllegalArgumentException when it is not
     * @throws IllegalStateException when the engine is closed
     */
    public void setThreads(int count) {
        state.requireOpen();
        state.set(NativeMakeup.THREADS, requireRange("threads", count, MAX_THREADS));
    }

    /**
     * Sends the colours of a {@link Frame} through a table, from the next one on.
     *
     * @param table an {@code adjust.vlk}, from where the stream stands; what follows it is not read, and the stream is
     *     not closed. Null: no table, as in a new engine
     * @throws IOException when the stream throws it; the table of before stays
     * @throws IllegalArgumentException when it is no whole table; the table of before stays
     * @throws IllegalStateException when the engine is closed
     * @throws MakeupException when memory ran out; the table of before stays
     */
    public void setTable(InputStream table) throws IOException {
        state.requireOpen();
        state.setTable(table);
    }

    /**
     * Limits where skin is softened, evened and whitened as skin, from the next {@link Frame} on. {@link
     * WhitenArea#ALL} and the table reach the whole picture.
     *
     * <p>The mask is not copied: each frame reads what the buffer then holds. Write it between frames; or where frames
     * run on another thread, write another buffer and set that. It must stay as long as it is set and a frame may use
     * it; where its owner has closed it, {@code process} throws as for the buffers of a frame.
     *
     * @param mask direct, from position to limit: height rows of width values from 0, leave alone, to 255, as without a
     *     mask
     * @param stride bytes from a row to the next, the width or more
     * @param width any, 1 or more; stretched over the frame, nearest value
     * @param height any, 1 or more
     * @throws IllegalArgumentException when the rows overlap, or the buffer is too short or on the heap, with the
     *     numbers
     * @throws IllegalStateException when the engine is closed
     */
    public void setMask(ByteBuffer mask, int stride, int width, int height) {
        state.setMask(new Mask(mask, stride, width, height));
    }

    /**
     * Takes the mask away, from the next frame on.
     *
     * @throws IllegalStateException when the engine is closed
     */
    public void clearMask() {
        state.setMask(null);
    }

    /**
     * Makes the next array load the resources again, for example because they were not there yet.
     *
     * @throws IllegalStateException when the engine is closed
     */
    public void reloadResources() {
        state.requireOpen();
        state.arrays().reloadResources();
    }

    /**
     * Tells what the resource loader, or its stream, threw when it was last asked.
     *
     * @return null when nothing was thrown
     */
    public Throwable resourceFailure() {
        return state.arrays().resourceFailure();
    }

    /**
     * Processes a frame on the calling thread, and returns when the result is there.
     *
     * @param source only read
     * @param target where the result goes, in any format, matrix and range: the source itself, or a frame of the same
     *     planes, strides and meaning, for in place; or one of the same size that shares no memory with the source,
     *     counted from the first to the last byte of each plane, padding included
     * @throws IllegalArgumentException when the sizes differ, memory is shared, also with the mask, the target is
     *     read-only, or a bitmap has changed; the target is unchanged
     * @throws IllegalStateException when the engine is closed, the caller is its resource loader, or, on Android, the
     *     owner of a buffer, of the mask's too, has closed it
     * @throws MakeupException when memory ran out; the target is unchanged, and the engine can be used further
     */
    public void process(Frame source, Frame target) {
        state.requireOpen();
        Objects.requireNonNull(source, "source");
        Objects.requireNonNull(target, "target").requireTarget();
        if (source.width() != target.width() || source.height() != target.height()) {
            throw new IllegalArgumentException("source " + source.width() + " x " + source.height() + ", target "
                    + target.width() + " x " + target.height() + ": the sizes must be the same");
        }
        try {
            state.process(source, target == source ? null : target);
        } finally {
            processed();
        }
    }

    /**
     * Processes a frame in place, on the calling thread.
     *
     * <p><b>Never the planes of a camera's picture</b> on Android: they are mapped for reading, their buffers do not
     * say so, the engine cannot see it, and the write may end the whole app. Give them a target.
     *
     * @param inPlace read and written
     * @throws IllegalArgumentException when the frame is read-only, two of its planes share memory with each other or
     *     with the mask, or a bitmap has changed; the frame is unchanged
     * @throws IllegalStateException when the engine is closed, the caller is its resource loader, or, on Android, the
     *     owner of a buffer, of the mask's too, has closed it
     * @throws MakeupException when memory ran out; the frame is unchanged, and the engine can be used further
     */
    public void process(Frame inPlace) {
        process(inPlace, inPlace);
    }

    /**
     * Processes a frame in an array in place, and returns when it is done.
     *
     * @param nv21 the frame, laid out as {@link Nv21} says. Bytes past the frame are left alone. The array must
     *     not be written by others meanwhile
     * @param width pixels of a row, 1 or more; an odd last column is not processed
     * @param height rows, 1 or more; an odd last row is not processed
     * @throws IllegalArgumentException when the array is too short for the size
     * @throws IllegalStateException when the engine is closed, or the caller is its resource loader
     * @throws MakeupException when memory ran out; the frame is unchanged, and the engine can be used further
     */
    public void process(byte[] nv21, int width, int height) {
        state.requireOpen();
        Nv21.requireFrame(nv21, width, height);
        try {
            state.process(nv21, width, height);
        } finally {
            processed();
        }
    }

    /**
     * Keeps the engine reachable until a frame is done. Otherwise the Cleaner may close an engine whose last user is a
     * call that has read all its fields, before that call has had its turn.
     */
    private void processed() {
        isReachable = true;
    }

    /**
     * Closes the engine, and frees its memory, after the frame that it may be working on. Frames that wait for their
     * turn are refused. Closing again, or on several threads, does nothing but wait for that frame, too: once a close
     * has returned, memory of frames and mask is not used any more.
     *
     * @throws IllegalStateException when the caller is the engine's resource loader
     */
    @Override
    public void close() {
        state.arrays().refuseLoader();
        state.run();
    }

    private static int requireRange(String name, int value, int max) {
        if (value < 0 || value > max) {
            throw new IllegalArgumentException(name + " is " + value + ", but must be 0 to " + max);
        }
        return value;
    }
}
