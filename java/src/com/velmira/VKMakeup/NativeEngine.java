package com.velmira.VKMakeup;

import java.io.InputStream;
import java.util.ArrayDeque;
import java.util.Deque;
import java.util.concurrent.Callable;
import java.util.concurrent.ExecutionException;
import java.util.concurrent.Future;
import java.util.concurrent.LinkedBlockingQueue;
import java.util.concurrent.ThreadPoolExecutor;
import java.util.concurrent.TimeUnit;

/**
 * A native engine and the thread it is bound to, used by one {@link MakeupEngine} after the other.
 *
 * <p>A destroyed native engine leaves its filter allocated. So engines are never destroyed: an application that is done
 * with one gives it back, emptied, and the next application gets it. There are never more of them than were open at one
 * time, and one that waits holds a thread and a few kilobytes.
 */
final class NativeEngine {
    /** The loader that the native side calls. It finds the method by name. */
    static final class LoaderAdapter {
        ResourceReader reader;

        public InputStream loadFromName(String name) {
            return reader == null ? null : reader.read(name);
        }
    }

    private static final Engine NATIVES = new Engine();
    private static final byte[] NO_FRAME = new byte[1];
    private static final Deque<NativeEngine> IDLE = new ArrayDeque<>();
    private static int created;

    private final LoaderAdapter adapter = new LoaderAdapter(); // the native side holds it weakly
    private final ThreadPoolExecutor executor;
    private final long handle;
    private Thread thread;

    /** Returns an engine that is as good as new. */
    static NativeEngine take(ResourceReader reader) {
        NativeEngine engine;
        synchronized (IDLE) {
            engine = IDLE.poll();
            if (engine == null) {
                engine = new NativeEngine(++created);
            }
        }
        engine.adapter.reader = reader;
        return engine;
    }

    private NativeEngine(int number) {
        executor = new ThreadPoolExecutor(1, 1, 0, TimeUnit.SECONDS, new LinkedBlockingQueue<>(), work -> {
            thread = new Thread(work, "VLVKMakeupEngine-" + number);
            thread.setDaemon(true);
            return thread;
        });
        handle = onThread(() -> NATIVES.Init(adapter));
        if (handle == 0) {
            executor.shutdown();
            throw new MakeupException("no memory for an engine; 64-bit processes need a free page below 2 GiB");
        }
    }

    /** Whether the caller runs inside a call to this engine, that is, is its resource loader. */
    boolean isCaller() {
        return Thread.currentThread() == thread;
    }

    /** Processes a frame with these settings; returns what the native method does. */
    int process(byte[] nv21, int width, int height, int whitening, int softening, boolean reload) {
        return onThread(() -> {
            if (reload) {
                askLoaderAgain();
            }
            NATIVES.setWhitenIntensity(handle, whitening);
            NATIVES.setSoftenSkinIntensity(handle, softening);
            return NATIVES.ProcessVideo(handle, nv21, width, height);
        });
    }

    /** Gives the engine back. The caller must not use it any more. */
    void release() {
        adapter.reader = null;
        try {
            onThread(() -> {
                // An empty frame frees the buffers of the last one; that its resource is missing, the colour table.
                askLoaderAgain();
                NATIVES.ProcessVideo(handle, NO_FRAME, 0, 0);
                askLoaderAgain();
                return null;
            });
        } finally {
            synchronized (IDLE) {
                IDLE.push(this);
            }
        }
    }

    /** Only a whitening that differs from the last one makes a frame load its resources. */
    private void askLoaderAgain() {
        NATIVES.setWhitenIntensity(handle, 0);
        NATIVES.setWhitenIntensity(handle, 1);
    }

    private <T> T onThread(Callable<T> work) {
        Future<T> result = executor.submit(work);
        boolean interrupted = false;
        try {
            while (true) {
                try {
                    return result.get();
                } catch (InterruptedException e) {
                    interrupted = true; // the frame is still being worked on
                } catch (ExecutionException e) {
                    throw new MakeupException("the native library failed", e.getCause());
                }
            }
        } finally {
            if (interrupted) {
                Thread.currentThread().interrupt();
            }
        }
    }
}
