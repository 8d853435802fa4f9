package com.velmira.VKMakeup;

import static org.junit.Assert.*;

import java.io.*;
import java.util.Random;
import org.junit.function.ThrowingRunnable;

/** Frames and files of an application, and what the native methods make of them. */
final class Fixtures {
    /** Colour pictures beside random ones: the neutral one, and none. */
    static final byte[] NEUTRAL = new byte[0];
    static final byte[] MISSING = null;
    static final Class<? extends Throwable> WRONG = IllegalArgumentException.class;

    /** Noise, with chroma about that of skin, so that every stage has something to do. */
    static byte[] frame(int width, int height) {
        Random random = new Random(width);
        byte[] frame = new byte[Nv21.size(width, height)];
        for (int i = 0; i < frame.length; ++i) {
            int chroma = (i - width * height) % width % 2 == 0 ? 155 : 110;
            frame[i] = (byte) (i < width * height ? 100 + random.nextInt(60) : chroma + random.nextInt(31) - 15);
        }
        return frame;
    }

    static byte[] picture(long seed) {
        byte[] picture = new byte[512 * 512 * 4];
        new Random(seed).nextBytes(picture);
        return picture;
    }

    /** The file of a picture: 4 free bytes, the factors 2048 and 512, pairs exchanged and masked. */
    static byte[] file(byte[] picture) {
        byte[] file = new byte[12 + picture.length];
        file[5] = 8;
        file[9] = 2;
        for (int i = 0; i < picture.length; ++i) {
            file[12 + i] = (byte) (picture[i ^ 1] ^ 0x5A);
        }
        return file;
    }

    /** A stream of a file that delivers few bytes at a time, and throws at its end unless there is nothing to throw. */
    static InputStream stream(byte[] file, int piece, Throwable thrown) {
        return new FilterInputStream(new ByteArrayInputStream(file)) {
            @Override
            public int read(byte[] to, int offset, int length) throws IOException {
                int count = super.read(to, offset, Math.min(length, piece));
                return count < 0 && thrown != null ? Fixtures.<Integer, RuntimeException>rethrow(thrown) : count;
            }
        };
    }

    /** Throws anything, checked or not, as the kind that its caller may throw. */
    @SuppressWarnings("unchecked")
    static <R, T extends Throwable> R rethrow(Throwable thrown) throws T {
        throw (T) thrown;
    }

    static void assertRefused(Class<? extends Throwable> type, String message, ThrowingRunnable call) {
        assertEquals(message, assertThrows(type, call).getMessage());
    }

    /** What the bare native methods make of a frame with these settings and this picture. */
    static byte[] expected(byte[] frame, int width, int height, int whitening, int softening, byte[] picture) {
        Object loader = new Object() {
            public InputStream loadFromName(String name) {
                return picture == MISSING ? null : new ByteArrayInputStream(file(picture));
            }
        };
        byte[] result = frame.clone();
        Engine natives = new Engine();
        long handle = natives.Init(loader);
        natives.setWhitenIntensity(handle, whitening);
        natives.setSoftenSkinIntensity(handle, softening);
        assertEquals(-1, natives.ProcessVideo(handle, result, width, -1));
        assertEquals(0, natives.ProcessVideo(handle, result, width, height));
        natives.Uninit(handle);
        natives.Uninit(0);
        assertNotNull(loader); // the native side holds it weakly
        return result;
    }
}
