package com.velmira.VKMakeup;

import java.io.IOException;
import java.io.InputStream;

/**
 * All that an engine holds: a native handle with its settings, and the path of frames in arrays. Apart from the engine,
 * so that it can be freed once nothing refers to that any more.
 *
 * <p>Who uses the handle holds one of two locks and has found the engine open under it. Who destroys it closes the
 * engine under one and then takes the other. So a change of settings never waits for a frame.
 */
final class EngineState implements Runnable {
    private final Object turn = new Object(); // held while a frame is processed
    private final Object changes = new Object(); // held while settings change
    private final int[] settings = new int[NativeMakeup.SETTINGS_SIZE];
    private final ArrayPath arrays;
    private final long handle;
    private volatile Mask mask;
    private volatile boolean closed;
    private boolean freed; // under turn

    EngineState(ResourceLoader loader) {
        arrays = new ArrayPath(loader);
        handle = NativeMakeup.create(settings);
        if (handle == 0) {
            throw new MakeupException("no memory for an engine");
        }
    }

    ArrayPath arrays() {
        return arrays;
    }

    void requireOpen() {
        if (closed) {
            throw new IllegalStateException("the engine is closed");
        }
    }

    /** Changes a setting to a value in its range. */
    void set(int setting, int value) {
        synchronized (changes) {
            requireOpen();
            int before = settings[setting];
            settings[setting] = value;
            int result = NativeMakeup.configure(handle, settings);
            if (result != NativeMakeup.OK) {
                settings[setting] = before;
                throw new MakeupException(NativeMakeup.resultText(result));
            }
        }
    }

    private int get(int setting) {
        synchronized (changes) {
            return settings[setting];
        }
    }

    void setMask(Mask wanted) {
        requireOpen();
        mask = wanted;
    }

    /** Reads a table and gives it to the native handle; null: none. */
    void setTable(InputStream table) throws IOException {
        byte[] file = table == null ? null : new byte[ResourceReader.MAX_SIZE];
        int size = table == null ? 0 : ResourceReader.readInto(table, file);
        synchronized (changes) {
            requireOpen();
            int result = NativeMakeup.setTable(handle, file, size);
            switch (result) {
                case NativeMakeup.OK:
                    return;
                case NativeMakeup.BAD_TABLE:
                    throw new IllegalArgumentException("no colour table: " + size + " bytes, of which a table takes "
                            + ResourceReader.MAX_SIZE + ", with the size of its picture in the header."
                            + " 'vlvk-makeup table convert IN adjust.vlk' makes one of a .cube file or a picture");
                case NativeMakeup.NO_MEMORY:
                    throw new MakeupException("no memory for a colour table");
                default:
                    throw new MakeupException(NativeMakeup.resultText(result));
            }
        }
    }

    void process(byte[] nv21, int width, int height) {
        arrays.refuseLoader();
        synchronized (turn) {
            requireOpen();
            arrays.process(nv21, width, height, get(NativeMakeup.WHITENING), get(NativeMakeup.SOFTENING));
        }
    }

    /** Processes a frame on the calling thread; without a target, in place. */
    void process(Frame source, Frame target) {
        arrays.refuseLoader();
        synchronized (turn) {
            requireOpen();
            source.requireOpen();
            if (target != null) {
                target.requireOpen();
            }
            Mask current = mask;
            if (current != null) {
                Planes.requireOpen(current.plane);
            }
            int result = NativeMakeup.process(handle, source.planes, source.layout,
                    target == null ? null : target.planes, target == null ? null : target.layout,
                    current == null ? null : current.plane, current == null ? null : current.layout);
            if (result != NativeMakeup.OK) {
                throw failure(result, source, target, current);
            }
        }
    }

    private static RuntimeException failure(int result, Frame source, Frame target, Mask mask) {
        String frames = (target == null ? "in place: " + source : "source: " + source + "; target: " + target)
                + (mask == null ? "" : "; mask: " + mask);
        switch (result) {
            case NativeMakeup.NO_MEMORY:
                return new MakeupException("no memory to process a frame (" + frames + ")");
            case NativeMakeup.BITMAP_CHANGED:
                return new IllegalArgumentException("a bitmap has another size or configuration than when its frame was"
                        + " made (" + frames + ")");
            case NativeMakeup.BITMAP_NOT_LOCKED:
                return new IllegalArgumentException("the pixels of a bitmap cannot be had, as of one that is recycled"
                        + " or in the memory of the graphics processor (" + frames + ")");
            case NativeMakeup.OVERLAP:
                return new IllegalArgumentException("the target's planes share memory with each other, with the mask,"
                        + " or with the source without being in place. Use a target with memory of its own (" + frames
                        + ")");
            default:
                return new IllegalArgumentException(NativeMakeup.resultText(result) + " (" + frames + ")");
        }
    }

    /**
     * Frees everything, after the frame that may be in work. Calls that come after this one are refused at once, those
     * of frames that wait for their turn included. A second call waits as well, and does nothing.
     */
    @Override
    public void run() {
        synchronized (changes) {
            closed = true;
        }
        synchronized (turn) {
            if (!freed) {
                freed = true;
                NativeMakeup.destroy(handle);
                arrays.release();
            }
        }
    }
}
