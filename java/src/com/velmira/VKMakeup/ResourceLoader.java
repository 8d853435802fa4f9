package com.velmira.VKMakeup;

import java.io.IOException;
import java.io.InputStream;

/**
 * Where an engine gets its data files from: assets, a folder, a download.
 *
 * <p>The only file is {@code adjust.vlk}, the colour picture. It is asked for by the first frame and by each frame
 * after a change of whitening, on a thread of the engine's, while the frame's caller waits. So a loader must not wait
 * for something that this caller holds.
 *
 * <p>What goes wrong with a file never stops a frame. Without it (null, or anything thrown by the loader or its
 * stream) the frame that asked keeps its colours, and later frames are whitened without a tint; a file that is too
 * short whitens without a tint at once. See {@link MakeupEngine#resourceFailure()}.
 */
public interface ResourceLoader {
    /**
     * Opens a file.
     *
     * @param name the file's name, without folders
     * @return its bytes, in pieces of any size; closed by the engine. Null when there is no such file
     * @throws IOException when it cannot be opened
     */
    InputStream open(String name) throws IOException;
}
