package com.velmira.VKMakeup;

import java.util.concurrent.atomic.AtomicBoolean;

/** The path of frames in arrays: resources from a loader, and a native engine from the first frame on. */
final class ArrayPath {
    private final ResourceReader resources;
    private final AtomicBoolean reload = new AtomicBoolean();
    private volatile NativeEngine engine;

    ArrayPath(ResourceLoader loader) {
        resources = new ResourceReader(loader);
    }

    void reloadResources() {
        reload.set(true);
    }

    Throwable resourceFailure() {
        return resources.failure();
    }

    /** While the loader runs, the frame that asked for the resource waits: another, or a close, would wait for ever. */
    void refuseLoader() {
        NativeEngine running = engine;
        if (running != null && running.isCaller()) {
            throw new IllegalStateException("the engine is used by its own resource loader, on thread "
                    + Thread.currentThread().getName());
        }
    }

    /** Processes a frame. Calls take turns. */
    void process(byte[] nv21, int width, int height, int whitening, int softening) {
        if (engine == null) {
            engine = NativeEngine.take(resources);
        }
        boolean asked = reload.getAndSet(false);
        if (engine.process(nv21, width, height, whitening, softening, asked) != 0) {
            reload.compareAndSet(false, asked);
            throw new MakeupException("a frame of " + width + " x " + height
                    + " pixels was not processed: no memory for the engine's buffers or for a copy of the array");
        }
    }

    /** Gives the native engine back, whose thread is another's from then on; no frame may come any more. */
    void release() {
        NativeEngine last = engine;
        engine = null;
        if (last != null) {
            last.release();
        }
    }
}
