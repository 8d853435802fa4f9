package com.velmira.VKMakeup;

import java.io.ByteArrayInputStream;
import java.util.Objects;
import java.util.concurrent.atomic.AtomicBoolean;

/**
 * Beautifies the frames of a video: smooths skin, whitens, adjusts colours.
 *
 * <pre>{@code
 * try (MakeupEngine engine = new MakeupEngine(name -> assets.open(name))) {
 *     engine.setWhitening(60);
 *     engine.process(nv21, width, height); // frame after frame
 * }
 * }</pre>
 *
 * <p><b>Threads.</b> All methods may be called on any thread. Frames of one engine take turns; different engines work
 * at the same time. The work itself is done on threads of the library's own: one for each engine, which also calls the
 * resource loader, and a few for the bands of a frame, while the caller waits. A wait is not cut short by an interrupt,
 * which is kept for the caller. A resource loader must not use the engine that it loads for, but may change its
 * settings.
 *
 * <p><b>Memory.</b> An engine holds a colour table of 1 MiB and up to 6 bytes for each pixel of a frame. {@link
 * #close} frees them. What is left is a sleeping thread and a few kilobytes, which the next engine takes over, so there
 * are never more of these than engines that were open at one time. An engine that is never closed keeps its memory;
 * there is no finalizer.
 */
public final class MakeupEngine implements AutoCloseable {
    /** Whitening of a new engine, in percent. */
    public static final int DEFAULT_WHITENING = 50;

    /** Smoothing of a new engine: full. */
    public static final int DEFAULT_SOFTENING = 1000;

    private static final int MAX_WHITENING = 100;
    private static final int MAX_SOFTENING = 1000;

    private final ResourceReader resources;
    private final NativeEngine engine;
    private final Object frames = new Object(); // held while a frame is processed, and to close
    private final AtomicBoolean reload = new AtomicBoolean();
    private volatile int whitening = DEFAULT_WHITENING;
    private volatile int softening = DEFAULT_SOFTENING;
    private volatile boolean closed;

    /**
     * Creates an engine without resources, which whitens without a tint.
     *
     * @throws MakeupException when there is no memory for it
     */
    public MakeupEngine() {
        this(name -> new ByteArrayInputStream(new byte[0]));
    }

    /**
     * Creates an engine.
     *
     * @param loader supplies the resources
     * @throws MakeupException when there is no memory for it
     */
    public MakeupEngine(ResourceLoader loader) {
        resources = new ResourceReader(Objects.requireNonNull(loader, "loader"));
        engine = NativeEngine.take(resources);
    }

    /**
     * Sets the whitening from the next frame on.
     *
     * @param percent 0 to 100
     * @throws IllegalArgumentException when it is not
     * @throws IllegalStateException when the engine is closed
     */
    public void setWhitening(int percent) {
        requireOpen();
        whitening = requireRange("whitening", percent, MAX_WHITENING);
    }

    /**
     * Sets the smoothing of skin from the next frame on.
     *
     * @param strength 0, none, to 1000, full
     * @throws IllegalArgumentException when it is not
     * @throws IllegalStateException when the engine is closed
     */
    public void setSoftening(int strength) {
        requireOpen();
        softening = requireRange("softening", strength, MAX_SOFTENING);
    }

    /**
     * Makes the next frame load the resources again, for example because they were not there yet.
     *
     * @throws IllegalStateException when the engine is closed
     */
    public void reloadResources() {
        requireOpen();
        reload.set(true);
    }

    /**
     * Tells what the resource loader, or its stream, threw when it was last asked.
     *
     * @return null when nothing was thrown
     */
    public Throwable resourceFailure() {
        return resources.failure();
    }

    /**
     * Processes a frame in place, and returns when it is done.
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
        requireOpen();
        Nv21.requireFrame(nv21, width, height);
        refuseLoader();
        synchronized (frames) {
            requireOpen();
            boolean asked = reload.getAndSet(false);
            if (engine.process(nv21, width, height, whitening, softening, asked) != 0) {
                reload.compareAndSet(false, asked);
                throw new MakeupException("a frame of " + width + " x " + height
                        + " pixels was not processed: no memory for the engine's buffers or for a copy of the array");
            }
        }
    }

    /**
     * Closes the engine, and frees its memory, after the frame that it may be working on. Closing again does nothing.
     *
     * @throws IllegalStateException when the caller is the engine's resource loader
     */
    @Override
    public void close() {
        if (closed) {
            return;
        }
        refuseLoader();
        synchronized (frames) {
            if (!closed) {
                closed = true;
                engine.release();
            }
        }
    }

    private void requireOpen() {
        if (closed) {
            throw new IllegalStateException("the engine is closed");
        }
    }

    /** While the loader runs, the frame that asked for the resource waits: another, or a close, would wait for ever. */
    private void refuseLoader() {
        if (engine.isCaller()) {
            throw new IllegalStateException("the engine is used by its own resource loader, on thread "
                    + Thread.currentThread().getName());
        }
    }

    private static int requireRange(String name, int value, int max) {
        if (value < 0 || value > max) {
            throw new IllegalArgumentException(name + " is " + value + ", but must be 0 to " + max);
        }
        return value;
    }
}
