package com.velmira.VKMakeup;

import java.io.ByteArrayInputStream;
import java.io.FilterInputStream;
import java.io.IOException;
import java.io.InputStream;
import java.util.Arrays;
import java.util.Random;

/** Files of an application, and streams that deliver them in ways of their own. */
final class Resources {
    private Resources() {}

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

    /** A stream of these bytes that delivers few at a time, and then goes on as told. */
    static InputStream stream(byte[] file, int size, int piece, End end) {
        return new FilterInputStream(new ByteArrayInputStream(Arrays.copyOf(file, size))) {
            @Override
            public int read(byte[] to, int offset, int length) throws IOException {
                int count = super.read(to, offset, Math.min(length, piece));
                return count < 0 ? end.read() : count;
            }
        };
    }

    /** What a stream does where its bytes end. */
    interface End {
        int read() throws IOException;
    }
}
