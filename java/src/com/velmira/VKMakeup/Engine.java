package com.velmira.VKMakeup;

import java.io.File;

/**
 * The native methods of the library, as they are. {@link MakeupEngine} is the safe way to use them.
 *
 * <p>Nothing is checked here: a handle that is 0 or was given to {@link #Uninit}, or an array shorter than its frame,
 * ends in undefined behaviour.
 *
 * <p>A handle belongs to the thread that made it: {@code Init}, {@code ProcessVideo} and {@code Uninit} of one handle
 * are called on one thread. Settings may be changed on any thread.
 *
 * <p>The library is loaded with this class: from the file that the system property {@code
 * com.velmira.VKMakeup.library} names, or else as {@code VLVKMakeupEngine} from the library path.
 */
public class Engine {
    static {
        String file = System.getProperty("com.velmira.VKMakeup.library");
        if (file != null) {
            System.load(new File(file).getAbsolutePath());
        } else {
            loadFromPath();
        }
    }

    private static void loadFromPath() {
        try {
            System.loadLibrary("VLVKMakeupEngine");
        } catch (UnsatisfiedLinkError e) {
            Error named = new UnsatisfiedLinkError(
                    e.getMessage() + ". Its file can be named with -Dcom.velmira.VKMakeup.library=FILE");
            named.initCause(e);
            throw named;
        }
    }

    /** Creates an object to call the native methods on; it has no state. */
    public Engine() {}

    /**
     * Creates a native engine.
     *
     * @param loader object with a method {@code public InputStream loadFromName(String)}, which returns null for a
     *     resource that is not there. It must not throw, neither must its streams, and one {@code read} must deliver
     *     all that is asked for. Only a weak reference is kept: the caller keeps the object alive
     * @return handle of the engine, 0 when there is no memory for it
     */
    public native long Init(Object loader);

    /**
     * Destroys a native engine. Its tables and buffers stay allocated.
     *
     * @param handle from {@link #Init}; 0 is ignored
     */
    public native void Uninit(long handle);

    /**
     * Sets the whitening from the next frame on. A changed value makes that frame load the resources again.
     *
     * @param handle from {@link #Init}
     * @param value percent, 0 to 100; initially 50
     */
    public native void setWhitenIntensity(long handle, int value);

    /**
     * Sets the smoothing of skin from the next frame on.
     *
     * @param handle from {@link #Init}
     * @param value 0, none, to 1000, full; initially 1000
     */
    public native void setSoftenSkinIntensity(long handle, int value);

    /**
     * Processes a frame in place.
     *
     * @param handle from {@link #Init}
     * @param nv21 the frame, laid out as {@link Nv21} says
     * @param width pixels of a row
     * @param height rows
     * @return 0, or -1 with the frame unchanged: negative size or no memory
     */
    public native int ProcessVideo(long handle, byte[] nv21, int width, int height);
}
